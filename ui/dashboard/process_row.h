#pragma once

#include "core/telemetry/process_info_item.h"
#include "ui/controls/view.h"
#include "ui/widgets/ruled_index_row.h"

namespace kestro {

/// The content of a row in the process list.
struct ProcessRowContent {
    QString name;
    QString command;  ///< in full, for the row's help
    QString cpu;
    QString memory;
    double share = 0;  ///< 0..1: of one core, or of the total memory
    bool isSystem = false;
    bool sortsByMemory = false;

    friend bool operator==(const ProcessRowContent&, const ProcessRowContent&) = default;
};

/// `totalBytes` is the machine's memory.
ProcessRowContent processRowContent(const ProcessInfoItem& process, bool sortsByMemory, std::uint64_t totalBytes);

/// One process: its name, load and memory above a rule. The name yields to the columns; where there is room, a
/// gear after it marks a system process.
class ProcessRow : public View {
    Q_OBJECT

public:
    explicit ProcessRow(QWidget* parent = nullptr);

    /// No-op when unchanged.
    void setContent(const ProcessRowContent& content);

    /// The widths of the two columns; 0: not shown.
    void setColumns(double cpu, double memory);

    void setSpacing(RowSpacing spacing);

    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintName(QPainter& painter, const QRectF& room) const;

    ProcessRowContent content_;
    double cpuWidth_ = 0;
    double memoryWidth_ = 0;
    RowSpacing spacing_ = RowSpacing::regular;
};

}  // namespace kestro
