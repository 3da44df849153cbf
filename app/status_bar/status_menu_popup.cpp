#include "app/status_bar/status_menu_popup.h"

#include <QCoreApplication>
#include <QKeySequence>
#include <utility>

namespace kestro {

namespace {

void fill(QMenu& target, const StatusMenu& menu) {
    for (const StatusMenuEntry& entry : menu) {
        if (entry.isSeparator) {
            target.addSeparator();
            continue;
        }
        QString title = entry.title;
        title.replace(QLatin1Char('&'), QLatin1StringView("&&"));
        if (!entry.submenu.empty()) {
            fill(*target.addMenu(title), entry.submenu);
            continue;
        }
        QAction* action = target.addAction(title);
        action->setEnabled(entry.isEnabled);
        action->setCheckable(entry.isChecked);
        action->setChecked(entry.isChecked);
        QObject::connect(action, &QAction::triggered, [act = entry.action] {
            if (act) {
                QMetaObject::invokeMethod(QCoreApplication::instance(), act, Qt::QueuedConnection);
            }
        });
    }
}

}  // namespace

StatusMenuPopup::~StatusMenuPopup() {
    delete menu_;
}

void StatusMenuPopup::open(const StatusMenu& menu, QPoint position) {
    delete menu_;
    if (menu.empty()) {
        return;
    }
    menu_ = new QMenu;
    menu_->setAttribute(Qt::WA_DeleteOnClose);
    fill(*menu_, menu);
    menu_->popup(position);
}

}  // namespace kestro
