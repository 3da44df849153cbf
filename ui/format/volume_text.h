#pragma once

#include "core/telemetry/disk_telemetry.h"

#include <QString>

namespace kestro {

/// The file system behind the storage figures: "/var on /dev/nvme0n1p3 (btrfs)". Empty if unknown.
QString volumeText(const DiskTelemetry& disk);

}  // namespace kestro
