#pragma once

#include <QString>

namespace kestro {

/// A measured value as the whole number that is shown, towards zero. What is not a number counts as 0, and
/// what no counter can reach is cut at a billion.
qint64 wholeNumber(double value);

/// The same as a text.
QString wholeText(double value);

}  // namespace kestro
