#include "platform/desktop/preference_json.h"

#include "core/base/json_text.h"
#include "core/base/text.h"
#include "platform/desktop/overflowing_numbers.h"

#include <QByteArray>

#include <cmath>
#include <limits>
#include <utility>

namespace kestro {

namespace {

constexpr auto jsonMember = "json";
constexpr auto dataMember = "data";
constexpr auto doubleMember = "double";
constexpr auto textMember = "text";

template <typename Bytes>
std::string toBase64(const Bytes& bytes) {
    const auto* data = reinterpret_cast<const char*>(bytes.data());
    return QByteArray::fromRawData(data, static_cast<qsizetype>(bytes.size())).toBase64().toStdString();
}

template <typename Bytes>
std::optional<Bytes> fromBase64(const PreferenceJson& json) {
    if (!json.is_string()) {
        return std::nullopt;
    }
    const auto decoded = QByteArray::fromBase64Encoding(QByteArray::fromStdString(json.get<std::string>()),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded) {
        return std::nullopt;
    }
    return Bytes(decoded.decoded.begin(), decoded.decoded.end());
}

struct Encoder {
    PreferenceJson operator()(bool value) const { return value; }
    PreferenceJson operator()(std::int64_t value) const { return value; }

    PreferenceJson operator()(double value) const {
        if (std::isfinite(value)) {
            return value;
        }
        const char* name = std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf";
        return PreferenceJson::object({{doubleMember, name}});
    }

    PreferenceJson operator()(const std::string& value) const {
        return isValidUtf8(value) ? PreferenceJson(value)
                                  : PreferenceJson::object({{textMember, toBase64(value)}});
    }

    PreferenceJson operator()(const PreferenceData& value) const {
        const std::string_view bytes(reinterpret_cast<const char*>(value.data()), value.size());
        auto parsed = parsePreferenceJson(bytes);
        // Write only blobs readably that round-trip byte for byte.
        if (parsed && parsed->dump() == bytes) {
            auto object = PreferenceJson::object();
            object[jsonMember] = std::move(*parsed);
            return object;
        }
        return PreferenceJson::object({{dataMember, toBase64(value)}});
    }
};

std::optional<PreferenceValue> decodeObject(const PreferenceJson& object) {
    if (object.size() != 1) {
        return std::nullopt;
    }
    const auto& name = object.begin().key();
    const auto& content = object.begin().value();
    if (name == jsonMember && !holdsOverflowingNumber(content)) {
        const std::string bytes = content.dump();
        return PreferenceData(bytes.begin(), bytes.end());
    }
    if (name == dataMember) {
        return fromBase64<PreferenceData>(content);
    }
    if (name == textMember) {
        return fromBase64<std::string>(content);
    }
    if (name == doubleMember && content == "inf") {
        return std::numeric_limits<double>::infinity();
    }
    if (name == doubleMember && content == "-inf") {
        return -std::numeric_limits<double>::infinity();
    }
    if (name == doubleMember && content == "nan") {
        return std::numeric_limits<double>::quiet_NaN();
    }
    return std::nullopt;
}

}  // namespace

bool isBoundedPreferenceText(std::string_view text) {
    if (text.size() > maximumPreferenceBytes) {
        return false;
    }
    int depth = 0;
    int elements = 0;
    bool inString = false;
    bool escaped = false;
    for (const char byte : text) {
        if (inString) {
            inString = escaped || byte != '"';
            escaped = !escaped && byte == '\\';
        } else if (byte == '"') {
            inString = true;
        } else if (byte == '{' || byte == '[') {
            ++depth;
            ++elements;
        } else if (byte == '}' || byte == ']') {
            --depth;
        } else if (byte == ',') {
            ++elements;
        }
        if (depth > maximumPreferenceDepth || elements > maximumPreferenceElements) {
            return false;
        }
    }
    return true;
}

std::optional<PreferenceJson> parsePreferenceJson(std::string_view text) {
    if (!isBoundedPreferenceText(text)) {
        return std::nullopt;
    }
    auto parsed = parsedJson<PreferenceJson>(text);
    return parsed.is_discarded() ? parseOverflowingNumbers(text) : std::optional(std::move(parsed));
}

PreferenceJson encodePreference(const PreferenceValue& value) {
    return std::visit(Encoder{}, value);
}

std::optional<PreferenceValue> decodePreference(const PreferenceJson& json) {
    switch (json.type()) {
        case PreferenceJson::value_t::boolean:
            return json.get<bool>();
        case PreferenceJson::value_t::number_integer:
            return json.get<std::int64_t>();
        case PreferenceJson::value_t::number_unsigned:
            if (json.get<std::uint64_t>() > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
                return std::nullopt;
            }
            return json.get<std::int64_t>();
        case PreferenceJson::value_t::number_float:
            return json.get<double>();
        case PreferenceJson::value_t::string:
            return json.get<std::string>();
        case PreferenceJson::value_t::object:
            return decodeObject(json);
        default:
            return std::nullopt;
    }
}

}  // namespace kestro
