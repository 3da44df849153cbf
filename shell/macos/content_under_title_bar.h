#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <QWidget>

namespace kestro {

/// Lets the layouts of all widgets use the area under the title bar, which is transparent and empty. The toolkit
/// keeps them below it, so what is scrolled there would be squeezed. Main thread, after the application object.
class ContentUnderTitleBar final : public QObject {
public:
    ContentUnderTitleBar() { QCoreApplication::instance()->installEventFilter(this); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Polish && watched->isWidgetType()) {
            static_cast<QWidget*>(watched)->setAttribute(Qt::WA_ContentsMarginsRespectsSafeArea, false);
        }
        return QObject::eventFilter(watched, event);
    }
};

}  // namespace kestro
