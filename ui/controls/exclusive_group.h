#pragma once

#include <QObject>

#include <vector>

namespace kestro {

class Control;

/// Makes controls one choice for the keyboard: a single stop of the Tab key, at the chosen one; the arrows
/// go to the neighbour and click it. The owner tells which one is chosen. Lives with its parent.
class ExclusiveGroup : public QObject {
    Q_OBJECT

public:
    /// `members` in reading order; they must live as long as `parent`.
    ExclusiveGroup(std::vector<Control*> members, QObject* parent);

    /// None when out of range: then the first one takes the Tab key's stop.
    void setChosen(int index);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::vector<Control*> members_;
};

}  // namespace kestro
