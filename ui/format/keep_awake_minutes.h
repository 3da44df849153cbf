#pragma once

#include <QString>

namespace kestro {

class KeepAwakeManager;

/// The whole minutes left in a session, "14m"; empty without a session, or if it has no end.
QString keepAwakeMinutes(const KeepAwakeManager& manager);

}  // namespace kestro
