#pragma once

#include <QObject>

#include <vector>

namespace kestro {

class Control;

/// What the arrow keys do in a group: choose the neighbour, or only move the focus where choosing is costly.
enum class GroupArrows { choose, moveFocus };

/// Groups controls into one choice: the chosen one is on and is the single Tab stop. The arrows move to the
/// neighbour and click it, or leave the click to Space and Enter. The owner sets the chosen index. Lives as long
/// as its parent.
class ExclusiveGroup : public QObject {
    Q_OBJECT

public:
    /// `members` in reading order; they must live as long as `parent`.
    ExclusiveGroup(std::vector<Control*> members, QObject* parent, GroupArrows arrows = GroupArrows::choose);

    /// Out of range: none is chosen, and the first member becomes the Tab stop.
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
