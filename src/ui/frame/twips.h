#pragma once

#include <QtGlobal>

class QWidget;

// Sizes are stored in twips (1/1440 inch) and shown in pixels of the screen's
// logical resolution.
namespace Twips {
int toPixels(int twips, const QWidget *onScreenOf);
qint16 fromPixels(int pixels, const QWidget *onScreenOf);
} // namespace Twips
