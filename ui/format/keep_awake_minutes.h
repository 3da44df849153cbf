#pragma once

#include <QString>

namespace kestro {

class KeepAwakeManager;

/// The whole minutes that a session has left, "14m"; empty without a session, and in one without an end.
QString keepAwakeMinutes(const KeepAwakeManager& manager);

}  // namespace kestro
