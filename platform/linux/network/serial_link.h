#pragma once

#include <string>

namespace kestro {

/// Whether the PPP link `name` runs over a serial line or modem of this machine, so that no network card moves its
/// data: its daemon was started with the name of such a terminal (pppd(8)). PPPoE and VPNs (L2TP, PPTP, or a
/// program on a pseudo-terminal) have none. False also if the daemon or its arguments are not to be found.
bool isSerialLink(const std::string& root, const std::string& name);

}  // namespace kestro
