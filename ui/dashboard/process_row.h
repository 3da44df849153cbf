#pragma once

#include "core/telemetry/process_info_item.h"
#include "ui/controls/view.h"

namespace kestro {

/// What a row of the process list shows.
struct ProcessRowContent {
    QString name;
    QString command;  ///< in full, as the row's help
    QString cpu;
    QString memory;
    double share = 0;  ///< 0..1: of one core, or of the memory
    bool isSystem = false;
    bool sortsByMemory = false;

    friend bool operator==(const ProcessRowContent&, const ProcessRowContent&) = default;
};

/// `totalBytes` is the machine's memory.
ProcessRowContent processRowContent(const ProcessInfoItem& process, bool sortsByMemory, std::uint64_t totalBytes);

/// One process: its name, its load and its memory over a rule. The name gives way to the columns; where
/// there is room, a gear after it marks a process of the system.
class ProcessRow : public View {
    Q_OBJECT

public:
    explicit ProcessRow(QWidget* parent = nullptr);

    /// Silent when equal.
    void setContent(const ProcessRowContent& content);

    /// The widths of the two columns; 0: not shown.
    void setColumns(double cpu, double memory);

    AccessibleInfo accessibleInfo() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintName(QPainter& painter, const QRectF& room) const;

    ProcessRowContent content_;
    double cpuWidth_ = 0;
    double memoryWidth_ = 0;
};

}  // namespace kestro
