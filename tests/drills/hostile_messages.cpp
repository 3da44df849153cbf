#include "tests/drills/hostile_messages.h"

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusSignature>
#include <QDBusVariant>
#include <QMetaType>
#include <QStringList>

#include <limits>

namespace kestro::drills {

namespace {

constexpr int deepest = 24;  // the bus allows 32 levels of arrays and of structures each
constexpr int mostArguments = 6;
constexpr int manyEntries = 4096;
constexpr int longText = 60'000;

QString hostileText(DrillRandom& random) {
    switch (random.below(6)) {
        case 0:
            return {};
        case 1:
            return QString(longText, QLatin1Char('x'));
        case 2:
            return QStringLiteral("<b>&amp;%s%n</b>\n\u202e\u0007");
        case 3:
            return QStringLiteral("clicked");
        case 4:
            return QStringLiteral("org.freedesktop.appearance");
        default:
            return QString::number(random.below(1000));
    }
}

QVariant hostileList(DrillRandom& random) {
    const int size = random.onceIn(8) ? manyEntries : static_cast<int>(random.below(8));
    switch (random.below(4)) {
        case 0: {
            QList<int> numbers;
            for (int index = 0; index < size; ++index) {
                numbers.append(static_cast<int>(random.below(64)) - 2);
            }
            return QVariant::fromValue(numbers);
        }
        case 1: {
            QStringList texts;
            for (int index = 0; index < size; ++index) {
                texts.append(QString::number(index));
            }
            return texts;
        }
        case 2:
            return QByteArray(size, '\xff');
        default: {
            QVariantMap map;
            for (int index = 0; index < size; ++index) {
                map.insert(QString::number(index), hostileText(random).left(64));
            }
            return map;
        }
    }
}

QVariant nested(DrillRandom& random, int depth) {
    return QVariant::fromValue(QDBusVariant(hostileValue(random, depth + 1)));
}

}  // namespace

QVariant hostileValue(DrillRandom& random, int depth) {
    // A long chain of variants now and then.
    if (depth > 0 && depth < deepest && !random.onceIn(4)) {
        return nested(random, depth);
    }
    switch (random.below(11)) {
        case 0:
            return hostileText(random);
        case 1:
            return random.onceIn(2);
        case 2:
            return std::numeric_limits<double>::quiet_NaN();
        case 3:
            return random.onceIn(2) ? std::numeric_limits<double>::infinity() : -1e300;
        case 4:
            return random.onceIn(2) ? std::numeric_limits<int>::min() : static_cast<int>(random.below(200));
        case 5:
            return std::numeric_limits<uint>::max() - random.below(2);
        case 6:
            return std::numeric_limits<qlonglong>::min();
        case 7:
            return QVariant::fromValue(QDBusObjectPath(QStringLiteral("/a/b")));
        case 8:
            return QVariant::fromValue(QDBusSignature(QStringLiteral("a{sv}")));
        case 9:
            return depth < deepest ? nested(random, depth) : QVariant(hostileText(random));
        default:
            return hostileList(random);
    }
}

QVariantList hostileArguments(DrillRandom& random) {
    QVariantList arguments;
    const auto count = random.below(mostArguments + 1);
    for (std::uint32_t index = 0; index < count; ++index) {
        arguments.append(hostileValue(random));
    }
    return arguments;
}

}  // namespace kestro::drills
