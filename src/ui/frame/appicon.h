#pragma once

#include <QIcon>

// The program's icon: the installed one, else the desktop theme's web-browser icon,
// else a drawn one, so windows never show a generic toolkit logo.
namespace AppIcon {
QIcon make();
}
