#pragma once

#include <QIcon>
#include <QString>

namespace kestro {

/// The file of the application's icon inside the program.
QString applicationIconFile();

/// The icon that an SVG file holds; null when there is no such file. The file is read when the icon is first
/// painted, and each size is painted once. Main thread.
QIcon applicationIcon(const QString& file);

/// Makes the icon of `file` the application's, which its windows show in switchers and task bars. Without the
/// file the application keeps the icon that it has.
void loadApplicationIcon(const QString& file);

}  // namespace kestro
