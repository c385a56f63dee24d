#pragma once

#include <QIcon>

// The program's icon: the desktop theme's web-browser icon when there is one,
// otherwise a drawn one, so windows never show a generic toolkit logo.
namespace AppIcon {
QIcon make();
}
