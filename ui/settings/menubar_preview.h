#pragma once

#include "core/readout/menubar_readout.h"
#include "ui/controls/view.h"
#include "ui/kestro_services.h"

#include <QRectF>

#include <vector>

namespace kestro {

/// Where items of these widths stand on the bar, the last one at its right end. Where there is not room for all
/// of them the last one, which is the readout, gives way.
std::vector<QRectF> previewItems(const QRectF& bar, std::vector<double> widths);

/// A piece of the status bar with the readout as it looks now, composed as the status item does it, and with
/// the extras that are shown, at their places left of it.
class MenubarPreview : public View {
    Q_OBJECT

public:
    static constexpr int kHeight = 48;

    explicit MenubarPreview(const KestroServices& services, QWidget* parent = nullptr);

    /// Composes again; repaints when something has changed.
    void refresh();
    const Readout& readout() const { return readout_; }

    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    KestroServices services_;
    Readout readout_;
    QString keepAwakeText_;
    QString fanText_;
    bool showsKeepAwake_ = false;
    bool showsFan_ = false;
};

}  // namespace kestro
