#include "core/prefs/prefrules.h"

#include "core/base/uitexts.h"
#include "core/mail/mailschedule.h"
#include "core/mail/mailserveraddress.h"

#include <QFileInfo>
#include <QStandardPaths>
#include <QUrl>

namespace PrefRules {

std::optional<Range> rangeOf(const QString &field)
{
    // The interval offered is the one the mail check keeps to.
    if (field == u"CheckIntervall")
        return Range {MailSchedule::clampedInterval(-32768), MailSchedule::clampedInterval(32767)};
    if (field == u"HistoryRows")
        return Range {1, 5000};
    return std::nullopt;
}

Check checkAddress(const QString &text)
{
    const QString address = text.trimmed();
    if (address.startsWith(u'/') && !address.startsWith(QStringLiteral("//")))
        return {};
    const QUrl url(address, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty() || url.isRelative())
        return Check::refused(uiText(2300));
    // "https:" alone, or "https:example.org", parses but goes nowhere.
    const bool needsHost
        = url.scheme() == u"http" || url.scheme() == u"https" || url.scheme() == u"ftp";
    if (needsHost && url.host().isEmpty())
        return Check::refused(uiText(2300));
    return {};
}

Check checkSearchTemplate(const QString &text)
{
    const QString address = text.trimmed();
    // The placeholder is not part of a valid address: check it with a term put in.
    QString filled = address;
    filled.replace(QStringLiteral("%s"), QStringLiteral("term"));
    const Check asAddress = checkAddress(filled);
    if (asAddress.level != Check::Level::Fine)
        return asAddress;
    if (!address.contains(QStringLiteral("%s")))
        return Check::warning(uiText(2301));
    return {};
}

Check checkFile(const QString &path)
{
    const QString file = path.trimmed();
    if (file.isEmpty() || QFileInfo(file).isFile())
        return {};
    return Check::warning(uiText(2303).arg(file));
}

Check checkLayoutFile(const QString &path, bool chosen)
{
    if (chosen && path.trimmed().isEmpty())
        return Check::refused(uiText(2354));
    return checkFile(path);
}

Check checkProgram(const QString &program)
{
    if (program.isEmpty() || !QStandardPaths::findExecutable(program).isEmpty())
        return {};
    const QFileInfo file(program);
    if (file.isAbsolute() && file.isExecutable())
        return {};
    return Check::warning(uiText(2304).arg(program));
}

Check checkMailServer(const QString &text, bool checkedRegularly)
{
    const QString server = text.trimmed();
    if (server.isEmpty())
        return checkedRegularly ? Check::refused(uiText(2353)) : Check();
    const MailServerAddress address = MailServerAddress::parse(server);
    if (!address.isValid())
        return Check::refused(uiText(2305));
    switch (address.security) {
    case MailServerAddress::Security::Plain:
        return Check::warning(uiText(2306));
    case MailServerAddress::Security::Opportunistic:
        return Check::warning(uiText(2307));
    case MailServerAddress::Security::Tls:
        break;
    }
    return {};
}

} // namespace PrefRules
