#pragma once

#include "core/readout/menubar_readout.h"
#include "ui/controls/view.h"
#include "ui/kestro_services.h"

#include <QRectF>

#include <vector>

namespace kestro {

/// The areas of items of these widths on the bar, the last one at its right end. If they do not all fit, the last
/// one, which is the readout, is cut.
std::vector<QRectF> previewItems(const QRectF& bar, std::vector<double> widths);

/// A section of the status bar with the current readout, composed as in the status item, and the enabled extras at
/// its left.
class MenubarPreview : public View {
    Q_OBJECT

public:
    static constexpr int fixedHeight = 48;

    explicit MenubarPreview(const KestroServices& services, QWidget* parent = nullptr);

    /// Recomposes the readout; repaints if something has changed.
    void refresh();
    const Readout& readout() const { return content_.readout; }

    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    /// Everything that is painted.
    struct Content {
        Readout readout;
        bool showsKeepAwake = false;
        bool isAwake = false;
        QString keepAwakeText;
        bool showsFan = false;
        QString fanText;

        friend bool operator==(const Content&, const Content&) = default;
    };

    KestroServices services_;
    Content content_;
};

}  // namespace kestro
