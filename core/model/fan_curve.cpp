#include "core/model/fan_curve.h"

#include "core/base/json_text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cmath>

namespace kestro {

namespace {

// Writing preserves the field order. Reading does not need it, so lookup stays cheap however many fields there
// are.
using OrderedJson = nlohmann::ordered_json;
using Json = nlohmann::json;

/// The fraction of the speed range at position `t` between the two temperatures, both 0..1.
double shapedFraction(CurveShape shape, double t) {
    switch (shape) {
        case CurveShape::sCurve:
            return t * t * (3 - 2 * t);
        case CurveShape::linear:
            return t;
        case CurveShape::stepped:
            if (t >= 0.8) {
                return 1.0;
            }
            if (t >= 0.5) {
                return 0.66;
            }
            return t >= 0.25 ? 0.33 : 0.0;
    }
    return 0.0;
}

/// Calls `visit` with the name and the member of every field, in the stored order.
template <typename Config, typename Visit>
void forEachField(Config& config, Visit visit) {
    visit("sensorSource", config.sensorSource);
    visit("curveShape", config.curveShape);
    visit("lowTemp", config.lowTemp);
    visit("highTemp", config.highTemp);
    visit("minRPM", config.minRPM);
    visit("maxRPM", config.maxRPM);
    visit("isFixedRPM", config.isFixedRPM);
    visit("fixedRPM", config.fixedRPM);
    visit("acousticCeilingEnabled", config.acousticCeilingEnabled);
    visit("acousticCeilingRPM", config.acousticCeilingRPM);
}

bool store(OrderedJson& json, bool flag) {
    json = flag;
    return true;
}

bool store(OrderedJson& json, double number) {
    json = number;
    return std::isfinite(number);
}

template <ClosedEnumeration E>
bool store(OrderedJson& json, E value) {
    json = std::string(rawValue(value));
    return true;
}

bool fetch(const Json& json, bool& flag) {
    if (!json.is_boolean()) {
        return false;
    }
    flag = json.get<bool>();
    return true;
}

bool fetch(const Json& json, double& number) {
    if (!json.is_number()) {
        return false;
    }
    number = json.get<double>();
    return true;
}

template <ClosedEnumeration E>
bool fetch(const Json& json, E& value) {
    const auto* text = json.get_ptr<const Json::string_t*>();
    const auto found = text ? fromRawValue<E>(*text) : std::nullopt;
    value = found.value_or(value);
    return found.has_value();
}

}  // namespace

double FanCurveConfig::evaluateRPM(double temperature) const {
    if (isFixedRPM) {
        return std::max(minRPM, std::min(fixedRPM, maxRPM));
    }
    const double ceiling = acousticCeilingEnabled ? std::min(acousticCeilingRPM, maxRPM) : maxRPM;
    // Negated comparisons, so that a NaN bound takes the safe branch.
    if (!(minRPM < ceiling) || temperature <= lowTemp) {
        return minRPM;
    }
    if (temperature >= highTemp) {
        return ceiling;
    }
    if (!(highTemp - lowTemp > 0)) {
        return minRPM;
    }
    const double t = (temperature - lowTemp) / (highTemp - lowTemp);
    const double speed = minRPM + (ceiling - minRPM) * shapedFraction(curveShape, t);
    return std::max(minRPM, std::min(speed, ceiling));
}

FanCurveConfig applyTo(CurvePreset preset, double minRPM, double maxRPM) {
    const auto& row = tableRow(preset);
    FanCurveConfig config;
    config.sensorSource = row.sensorSource;
    config.curveShape = row.curveShape;
    config.lowTemp = row.lowTemp;
    config.highTemp = row.highTemp;
    config.minRPM = minRPM;
    config.maxRPM = maxRPM;
    config.isFixedRPM = false;
    config.fixedRPM = minRPM;
    config.acousticCeilingEnabled = row.acousticCeiling.has_value();
    config.acousticCeilingRPM = row.acousticCeiling ? std::min(maxRPM, *row.acousticCeiling) : maxRPM;
    return config;
}

std::optional<std::string> encodeFanCurve(const FanCurveConfig& config) {
    auto json = OrderedJson::object();
    bool representable = true;
    forEachField(config, [&](const char* name, const auto& field) {
        representable = store(json[name], field) && representable;
    });
    return representable ? std::optional(json.dump()) : std::nullopt;
}

std::optional<FanCurveConfig> decodeFanCurve(std::string_view text) {
    const auto json = parsedJson(text);
    if (!json.is_object()) {
        return std::nullopt;
    }
    FanCurveConfig config;
    bool complete = true;
    forEachField(config, [&](const char* name, auto& field) {
        const auto found = json.find(name);
        complete = complete && found != json.end() && fetch(*found, field);
    });
    return complete ? std::optional(config) : std::nullopt;
}

}  // namespace kestro
