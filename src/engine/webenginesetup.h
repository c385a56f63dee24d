#pragma once

#include <QString>

class QWebEngineProfile;
class QWebEngineScript;

// The engine's process-wide set-up: the program's own URL scheme, registered before
// the application object exists, and the one profile every page shares.
namespace WebEngineSetup {

// Must run before QApplication is constructed.
void registerSchemes();
// When the engine is told to do without the GPU (--disable-gpu), the windows are
// composed in software as well, not through an emulated GPU that keeps every core busy
// on each repaint. A compositing the user chose (QT_QUICK_BACKEND) is kept. Must run
// before QApplication is constructed.
void chooseCompositing(int argc, char *argv[]);
// The shared profile, storing cookies and cache under the data folder.
QWebEngineProfile *profile(const QString &dataFolder);
QWebEngineProfile *profile();

// Opens and closes the boxes of a feed page. Only windows that show a feed carry it:
// a script of the program's own costs each page that runs it a script world.
QWebEngineScript feedToggleScript();

// The program's own scheme: vantrell://welcome/ is the start page that ships with it.
QString schemeName();

// The version of Chromium inside the engine, e.g. "102.0.5005.177", for the about box.
QString chromiumVersion();

} // namespace WebEngineSetup
