#include "ui/desktop/mailprogram.h"

#include "core/base/uitexts.h"
#include "core/prefs/prefer.h"

#include <QDesktopServices>
#include <QProcess>
#include <QUrl>

namespace MailProgram {

QStringList commandOf(const QString &commandLine)
{
    return QProcess::splitCommand(commandLine.trimmed());
}

bool start()
{
    const QStringList command = commandOf(prefer().MailClient());
    if (command.isEmpty())
        return QDesktopServices::openUrl(QUrl(QStringLiteral("mailto:")));
    return QProcess::startDetached(command.first(), command.mid(1));
}

QString failureText()
{
    const QString command = prefer().MailClient().trimmed();
    return uiText(2076).arg(command);
}

} // namespace MailProgram
