#pragma once

#include <QIcon>
#include <QString>

// The pictures of the browser toolbar: the desktop theme's icon where the theme has
// one, else the program's own drawing (or the style's standard picture), so the bar
// looks complete on any desktop.
namespace ToolbarIcons {

QIcon icon(const QString &key);

} // namespace ToolbarIcons
