#pragma once

#include <QString>

class QWidget;

// The "default browser" command: asks, makes Vantrell the default or puts the previous
// default back, and says how it went.
namespace DefaultBrowserDialog {
void run(QWidget *parent, const QString &dataFolder);
}
