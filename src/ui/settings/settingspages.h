#pragma once

#include <QString>

class QWidget;

// The pages of the settings dialog. Every editor is named like the preference it edits
// ("HomeUrl", "TabAlign", ...); a label named after it plus "Note" shows what the
// dialog thinks of the value. The dialog fills and reads them by these names.
namespace SettingsPages {

QWidget *start(QWidget *parent, const QString &dataFolder);
QWidget *windows(QWidget *parent);
QWidget *popups(QWidget *parent);
QWidget *history(QWidget *parent);
QWidget *search(QWidget *parent);
QWidget *mail(QWidget *parent);
QWidget *programs(QWidget *parent);

} // namespace SettingsPages
