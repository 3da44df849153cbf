#pragma once

#include <QDBusMessage>

/// What a watcher of status items answers to the question whether it has a host.
namespace kestro::watcher_reply {

/// True also if the answer cannot be read.
bool reportsHost(const QDBusMessage& reply);

/// Whether the watcher did not answer in time.
bool isTimeout(const QDBusMessage& reply);

}  // namespace kestro::watcher_reply
