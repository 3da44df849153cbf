#include "ui/dashboard/cooling_section.h"

#include "core/cooling/fan_control_manager.h"
#include "core/engine/telemetry_engine.h"
#include "core/settings/user_settings.h"
#include "ui/controls/words.h"
#include "ui/format/figure_text.h"
#include "ui/format/unmeasured.h"
#include "ui/format/without_remark.h"

#include <QStringList>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

constexpr double gaugeMinimumTemp = 20;
constexpr double gaugeMaximumTemp = 105;
constexpr double fanRowHeight = 28;
constexpr double lowestFanRow = 20;
constexpr int fansInOneColumn = 4;
constexpr double columnGap = 12;
constexpr double footTop = 16;
constexpr double footLine = 14;
constexpr double footSymbol = 9;
constexpr double footGap = 5;
constexpr double footTextGap = 8;

const TextStyle profileStyle{9, footLine, QFont::DemiBold, 0, KestroTheme::textPrimary};
const TextStyle nodes{9, footLine, QFont::Medium, 0, KestroTheme::textSecondary};

/// The prefix of numbered fan names; narrow rows show only the rest.
const QString fanPrefix = QStringLiteral("Fan ");

QString fanCaption(const FanTelemetry& fan, std::optional<double> target, SectionTier tier) {
    const QString unit = isCompact(tier) ? QString() : QStringLiteral(" RPM");
    if (target) {
        return QStringLiteral("target ") + wholeText(*target) + unit;
    }
    return fan.maxRPM > 0 ? QStringLiteral("of ") + wholeText(fan.maxRPM) + unit : QString();
}

/// What the machine calls the fan, and its target.
QString fanHelp(const FanTelemetry& fan, std::optional<double> target) {
    QStringList parts;
    if (!fan.label.empty()) {
        parts << QString::fromStdString(fan.label);
    }
    if (target) {
        parts << fanCaption(fan, target, SectionTier::full);
    }
    return parts.join(QStringLiteral(", "));
}

GaugeContent fanGauge(const FanTelemetry& fan, std::optional<double> target, SectionTier tier) {
    return {Words(fan.name), fanCaption(fan, target, tier), fan.currentRPM,         0,
            fan.maxRPM,      QStringLiteral("RPM"),         KestroTheme::accentCool};
}

GaugeContent temperatureGauge(const char* title, const char* subtitle, double celsius, const Ink& ink,
                              bool isMeasured) {
    return {Words(title),     Words(subtitle),      celsius, gaugeMinimumTemp,
            gaugeMaximumTemp, QStringLiteral("°C"), ink,     isMeasured};
}

RuledIndexContent fanRow(const FanTelemetry& fan, const QString& speed) {
    RuledIndexContent content;
    content.label = Words(fan.name);
    content.compactLabel = content.label.startsWith(fanPrefix) ? content.label.mid(fanPrefix.size()) : QString();
    content.value = speed;
    content.progressFraction = fan.maxRPM > 0 ? std::clamp(fan.currentRPM / fan.maxRPM, 0.0, 1.0) : 0;
    return content;
}

}  // namespace

std::vector<GaugeContent> coolingGauges(const std::vector<FanTelemetry>& fans, const ThermalTelemetry& thermals,
                                        const MeasuredTemperatures& measured, const std::vector<double>& targets,
                                        SectionTier tier) {
    if (fans.size() > 2) {
        return {};
    }
    std::vector<GaugeContent> gauges;
    for (size_t i = 0; i < fans.size(); ++i) {
        const auto target = i < targets.size() ? std::optional(targets[i]) : std::nullopt;
        gauges.push_back(fanGauge(fans[i], target, tier));
        gauges.back().help = QString::fromStdString(fans[i].label);
    }
    if (gauges.size() < 2) {
        gauges.push_back(temperatureGauge("SoC Die", "Die Average", thermals.averageSoCTemp,
                                          averageTemperatureInk(thermals.averageSoCTemp), measured.averageSoC));
    }
    if (gauges.size() < 2) {
        gauges.push_back(temperatureGauge("Peak Die", "Hottest Core", thermals.peakDieTemp,
                                          peakTemperatureInk(thermals.peakDieTemp), measured.peakDie));
    }
    return gauges;
}

std::vector<QRectF> fanRowAreas(int fans, double width, double height) {
    std::vector<QRectF> areas;
    const int columns = fans > fansInOneColumn ? 2 : 1;
    const int wantedRows = (fans + columns - 1) / columns;
    const int fittingRows = std::max(1, static_cast<int>(height / lowestFanRow));
    const int rows = std::min(wantedRows, fittingRows);
    const double rowHeight = std::floor(std::min(fanRowHeight, height / rows));
    const double columnWidth = (width - columnGap * (columns - 1)) / columns;
    const double top = std::floor((height - rowHeight * rows) / 2);
    for (int i = 0; i < std::min(fans, rows * columns); ++i) {
        const int row = i / columns;
        areas.emplace_back((i % columns) * (columnWidth + columnGap), top + row * rowHeight, columnWidth,
                           rowHeight);
    }
    return areas;
}

CoolingSection::CoolingSection(const KestroServices& services, QWidget* parent)
    : DashboardSection(QStringLiteral("fanblades"), QStringLiteral("Cooling"), {}, parent),
      services_(services),
      gauges_{new MetricGauge(false, this), new MetricGauge(false, this)},
      profileSymbol_(new SymbolView(QString(), footSymbol, KestroTheme::accentCool, this)),
      profile_(new TextLabel(QString(), this)),
      nodes_(new TextLabel(QString(), this)) {
    for (RuledIndexRow*& row : temperatures_) {
        row = new RuledIndexRow(false, this);
    }
    profile_->setStyle(profileStyle);
    nodes_->setStyle(nodes);
    nodes_->setFit(TextFit::value);
    follow(services_.engine.fans, [this] { showFans(); });
    follow(services_.engine.thermals, [this] { showTemperatures(); });
    follow(services_.settings.fanSpeedUnit, [this] { showFans(); });
    follow(services_.fanManager.currentProfile, [this] { refresh(); });
    follow(services_.fanManager.evaluatedLeftTargetRPM, [this] { showFans(); });
    follow(services_.fanManager.evaluatedRightTargetRPM, [this] { showFans(); });
}

void CoolingSection::refresh() {
    showFans();
    showTemperatures();
    showProfile();
}

void CoolingSection::showFans() {
    const size_t fans = services_.engine.fans.get().size();
    if (fans != shownFans_) {
        shownFans_ = fans;
        while (fanRows_.size() < (fans > 2 ? fans : 0)) {
            fanRows_.push_back(new RuledIndexRow(false, this));
        }
        arrangeAgain();
    }
    setSymbol(shownFans_ > 0 ? QStringLiteral("fanblades") : QStringLiteral("leaf.fill"));
    showFanGauges();
    showFanRows();
}

void CoolingSection::showFanGauges() {
    const TelemetryEngine& engine = services_.engine;
    showGauges(gauges_, coolingGauges(engine.fans.get(), engine.thermals.get(), engine.measured().temperatures,
                                      targets(), grid().tier));
}

void CoolingSection::showFanRows() {
    const std::vector<FanTelemetry>& fans = services_.engine.fans.get();
    if (fans.size() <= 2) {
        return;
    }
    const std::vector<double> asked = targets();
    for (size_t i = 0; i < fans.size(); ++i) {
        const auto target = i < asked.size() ? std::optional(asked[i]) : std::nullopt;
        // A row has no room for the target beside the speed.
        fanRows_[i]->setHelp(fanHelp(fans[i], target));
        fanRows_[i]->setContent(fanRow(fans[i], Words(services_.engine.formatFanRPM(fans[i].currentRPM))));
    }
}

void CoolingSection::showTemperatures() {
    const ThermalTelemetry& thermals = services_.engine.thermals.get();
    const MeasuredTemperatures& measured = services_.engine.measured().temperatures;
    const auto rows = temperatureRows(thermals, measured, isCompact(grid().tier));
    for (size_t i = 0; i < rows.size(); ++i) {
        temperatures_[i]->setContent(rows[i]);
    }
    if (measured.peakDie) {
        setBadge(Words(thermals.statusSummary()), statusInk(thermals.statusSummary()),
                 QStringLiteral("Temperatures"));
    } else {
        setBadge(QStringLiteral("Not measured"), KestroTheme::textSecondary, QStringLiteral("Temperatures"),
                 unmeasuredHelp());
    }
    nodes_->setText(QStringLiteral("%1 IOHID nodes").arg(thermals.sensorCount));
    if (shownFans_ < 2) {
        showFanGauges();
    }
}

void CoolingSection::showProfile() {
    const FanProfile profile = services_.fanManager.currentProfile.get();
    profileSymbol_->setSymbol(Words(tableRow(profile).iconName));
    profileName_ = Words(rawValue(profile));
    profile_->setSpokenText(QStringLiteral("Profile, ") + profileName_);
    arrangeFoot(grid());
}

void CoolingSection::arrange(const SectionGrid& grid) {
    arrangeFans(grid);
    const auto rows = temperatureRows(services_.engine.thermals.get(), services_.engine.measured().temperatures,
                                      isCompact(grid.tier));
    double top = grid.rowsTop;
    for (size_t i = 0; i < temperatures_.size(); ++i) {
        temperatures_[i]->setContent(rows[i]);
        top = placeRow(*temperatures_[i], top, grid);
    }
    arrangeFoot(grid);
}

void CoolingSection::arrangeFans(const SectionGrid& grid) {
    const bool hasGauges = shownFans_ <= 2;
    placeGauges(gauges_, grid);
    for (MetricGauge* gauge : gauges_) {
        gauge->setVisible(hasGauges);
    }
    const auto areas =
        hasGauges ? std::vector<QRectF>() : fanRowAreas(static_cast<int>(shownFans_), grid.width, grid.heroHeight);
    for (size_t i = 0; i < fanRows_.size(); ++i) {
        fanRows_[i]->setVisible(i < areas.size());
        if (i < areas.size()) {
            fanRows_[i]->setCompact(grid.tier == SectionTier::tight);
            fanRows_[i]->setSpacing(grid.spacing == RowSpacing::dense ? RowSpacing::regular : grid.spacing);
            place(*fanRows_[i], areas[i].translated(0, SectionGrid::heroTop));
        }
    }
}

void CoolingSection::arrangeFoot(const SectionGrid& grid) {
    const bool isTight = grid.tier == SectionTier::tight;
    const double top = grid.height - footTop;
    const double nodesWidth = std::ceil(textWidth(nodes_->text(), nodes));
    profileSymbol_->setVisible(!isTight);
    profile_->setVisible(!isTight);
    nodes_->setTextAlignment(isTight ? Qt::AlignLeft : Qt::AlignRight);
    if (isTight) {
        place(*nodes_, QRectF(0, top, grid.width, footLine));
        return;
    }
    // Reserves room for the widest count, so that an additional sensor moves nothing.
    const double nodesRoom = std::max(nodesWidth, textWidth(QStringLiteral("888 IOHID nodes"), nodes));
    place(*nodes_, QRectF(grid.width - nodesRoom, top, nodesRoom, footLine));
    place(*profileSymbol_, QRectF(0, top + (footLine - footSymbol) / 2, footSymbol, footSymbol));
    const double left = footSymbol + footGap;
    const double room = grid.width - nodesRoom - footTextGap - left;
    profile_->setText(textWidth(profileName_, profileStyle) > room ? withoutRemark(profileName_) : profileName_);
    place(*profile_, QRectF(left, top, room, footLine));
}

std::vector<double> CoolingSection::targets() const {
    const FanControlManager& manager = services_.fanManager;
    if (manager.currentProfile.get() != FanProfile::custom) {
        return {};
    }
    return {manager.evaluatedLeftTargetRPM.get(), manager.evaluatedRightTargetRPM.get()};
}

}  // namespace kestro
