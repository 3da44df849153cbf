#pragma once

#include <QString>

namespace kestro {

/// A name without a trailing part in parentheses, for narrow places.
QString withoutRemark(const QString& name);

}  // namespace kestro
