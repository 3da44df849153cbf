#pragma once

#include "core/base/subscription.h"
#include "ui/kestro_services.h"

#include <QString>
#include <QWidget>

#include <vector>

namespace kestro {

/// A title and a few live values on the palette's ground. Main thread.
class SummaryView final : public QWidget {
public:
    SummaryView(const KestroServices& services, const QString& title, QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString values() const;

    const KestroServices services_;
    const QString title_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace kestro
