#pragma once

#include <QIcon>
#include <QString>

namespace kestro {

/// The resource path of the application's icon file.
QString applicationIconFile();

/// The icon in an SVG file; null if the file does not exist. The file is read when the icon is first painted,
/// and each size is painted once. Main thread.
QIcon applicationIcon(const QString& file);

/// Makes the icon in `file` the application's icon, which its windows show in switchers and task bars. Keeps the
/// current icon if the file does not exist.
void loadApplicationIcon(const QString& file);

}  // namespace kestro
