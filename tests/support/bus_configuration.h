#pragma once

#include <QString>

namespace kestro {

/// Writes the configuration of a message bus without restrictions that listens on `socket`, an absolute path. It
/// starts only the services that are described in the folder `services`; none without one. Throws when it cannot
/// be written.
void writeBusConfiguration(const QString& file, const QString& socket, const QString& services = {});

}  // namespace kestro
