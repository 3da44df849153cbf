#pragma once

#include <QObject>

#include <vector>

namespace kestro {

class Control;

/// What the arrow keys do in a group: choose the neighbour, or only go to it where each choice asks for
/// something that costs.
enum class GroupArrows { choose, moveFocus };

/// Makes controls one choice for the keyboard: a single stop of the Tab key, at the chosen one; the arrows
/// go to the neighbour and click it, or leave that to Space and Enter. The owner tells which one is chosen.
/// Lives with its parent.
class ExclusiveGroup : public QObject {
    Q_OBJECT

public:
    /// `members` in reading order; they must live as long as `parent`.
    ExclusiveGroup(std::vector<Control*> members, QObject* parent, GroupArrows arrows = GroupArrows::choose);

    /// None when out of range: then the first one takes the Tab key's stop.
    void setChosen(int index);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool goBy(int step, const QObject* from);
    void setStop(int index);

    std::vector<Control*> members_;
    GroupArrows arrows_;
    int chosen_ = 0;
};

}  // namespace kestro
