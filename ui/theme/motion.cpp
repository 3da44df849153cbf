#include "ui/theme/motion.h"

#include <QApplication>
#include <QStyle>

namespace kestro::motion {

namespace {

bool reducedByDesktop = false;

}  // namespace

void setReduced(bool isReduced) {
    reducedByDesktop = isReduced;
}

bool isReduced() {
    return reducedByDesktop ||
           (qApp && QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) == 0);
}

int duration(std::chrono::milliseconds full) {
    return isReduced() ? 0 : static_cast<int>(full.count());
}

}  // namespace kestro::motion
