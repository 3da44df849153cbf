#pragma once

#include "shell/readout_service.h"

#include <QDBusArgument>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <vector>

namespace kestro {

/// The property KeepAwake, `(bx)`; −1 seconds: without an end.
struct BusKeepAwake {
    bool isActive = false;
    qint64 remainingSeconds = 0;

    friend bool operator==(const BusKeepAwake&, const BusKeepAwake&) = default;
};
QDBusArgument& operator<<(QDBusArgument& argument, const BusKeepAwake& value);
const QDBusArgument& operator>>(const QDBusArgument& argument, BusKeepAwake& value);

namespace readout_properties {

/// The value of a property on the bus. Invalid: the readout does not have it now.
template <typename Source>
struct Property {
    QString name;
    QVariant (*value)(const Source& source);
};

/// The properties that every follower receives, and those of which it chooses. Registers their types with Qt's bus
/// binding.
const std::vector<Property<SharedReadout>>& common();
const std::vector<Property<ReadoutFigures>>& figures();

bool isFigure(const QString& name);

/// Whether a follower that knows `before` should be sent `now`. The seconds of keep-awake count down by
/// themselves: only a new state and a new minute are sent.
bool isNews(const QVariant& before, const QVariant& now);

}  // namespace readout_properties

}  // namespace kestro

Q_DECLARE_METATYPE(kestro::BusKeepAwake)
