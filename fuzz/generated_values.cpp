#include "fuzz/generated_values.h"

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusSignature>
#include <QDBusVariant>
#include <QStringList>

#include <cstring>

namespace kestro {

namespace {

constexpr int deepest = 30;
constexpr unsigned mostArguments = 7;

/// Texts that the parsers know.
constexpr const char* knownTexts[] = {"clicked",
                                      "opened",
                                      "label",
                                      "tab",
                                      "Profile",
                                      "power-saver",
                                      "balanced",
                                      "performance",
                                      "ActiveProfile",
                                      "Profiles",
                                      "org.freedesktop.appearance",
                                      "color-scheme",
                                      "Kestro",
                                      "Kestro Keep-Awake Active",
                                      "idle"};

}  // namespace

std::int32_t GeneratedValues::number() {
    std::uint32_t value = 0;
    for (int count = 0; count < 4; ++count) {
        value = value << 8U | byte();
    }
    std::int32_t number = 0;
    std::memcpy(&number, &value, sizeof number);
    return number;
}

std::int32_t GeneratedValues::identifier() {
    const std::uint8_t first = byte();
    return first < 250 ? first : number();
}

int GeneratedValues::length() {
    constexpr int firstLong = 240;
    constexpr int shortest = 80;
    const int first = byte();
    return first < firstLong ? first % 8 : first - firstLong + shortest;
}

QString GeneratedValues::text() {
    const std::uint8_t length = byte();
    if (length >= 256 - std::size(knownTexts)) {
        return QString::fromLatin1(knownTexts[length - (256 - std::size(knownTexts))]);
    }
    QByteArray utf8;
    for (int count = 0; count < length && next_ < bytes_.size(); ++count) {
        utf8.append(static_cast<char>(byte()));
    }
    // A message cannot contain a zero byte.
    return QString::fromUtf8(utf8.constData());
}

QVariantMap GeneratedValues::map(int depth) {
    QVariantMap map;
    for (int left = length(); left > 0 && next_ < bytes_.size(); --left) {
        const QString key = text();
        map.insert(key, any(depth + 1));
    }
    return map;
}

QVariant GeneratedValues::any(int depth) {
    switch (byte() % 16) {
        case 0:
            return flag();
        case 1:
            return QVariant::fromValue(byte());
        case 2:
            return QVariant::fromValue(static_cast<short>(number()));
        case 3:
            return number();
        case 4:
            return static_cast<uint>(identifier());
        case 5:
            return static_cast<qlonglong>(number()) * number();
        case 6: {
            const double parts[] = {static_cast<double>(number()), static_cast<double>(number())};
            return parts[0] / parts[1];
        }
        case 7:
            return QVariant::fromValue(QDBusObjectPath(QStringLiteral("/a/b")));
        case 8:
            return QVariant::fromValue(QDBusSignature(QStringLiteral("a{sv}")));
        case 9:
            return QVariant::fromValue(list<int>([this] { return identifier(); }));
        case 10:
            return QStringList(list<QString>([this] { return text(); }));
        case 11:
            return text().toUtf8();
        case 12:
            return depth < deepest ? QVariant(map(depth)) : QVariant(text());
        case 13: {
            QDBusArgument maps;
            maps.beginArray(QMetaType::fromType<QVariantMap>());
            for (int left = byte() % 8; left > 0 && depth < deepest; --left) {
                maps << map(depth + 1);
            }
            maps.endArray();
            return QVariant::fromValue(maps);
        }
        case 14:
            return depth < deepest ? QVariant::fromValue(QDBusVariant(any(depth + 1))) : QVariant(text());
        default:
            return text();
    }
}

QVariantList GeneratedValues::arguments() {
    QVariantList arguments;
    for (unsigned left = byte() % (mostArguments + 1); left > 0; --left) {
        arguments.append(any());
    }
    return arguments;
}

}  // namespace kestro
