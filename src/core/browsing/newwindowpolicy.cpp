#include "core/browsing/newwindowpolicy.h"

#include "core/browsing/usercommand.h"

#include <QFile>
#include <QSaveFile>
#include <QUrl>

bool NewWindowPolicy::isOn(Switch which) const
{
    switch (which) {
    case Switch::AllowOpenWin:
        return AllowOpenWin;
    case Switch::AllowResizeWin:
        return AllowResizeWin;
    case Switch::AllowWinInBack:
        return AllowWinInBack;
    case Switch::AllowWinRef:
        return AllowWinRef;
    }
    return false;
}

void NewWindowPolicy::set(Switch which, bool on)
{
    switch (which) {
    case Switch::AllowOpenWin:
        AllowOpenWin = on;
        break;
    case Switch::AllowResizeWin:
        AllowResizeWin = on;
        break;
    case Switch::AllowWinInBack:
        AllowWinInBack = on;
        break;
    case Switch::AllowWinRef:
        AllowWinRef = on;
        break;
    }
}

QString NewWindowPolicy::siteOf(const QUrl &page)
{
    return page.host().toLower();
}

bool NewWindowPolicy::allowsSite(const QUrl &page) const
{
    const QString site = siteOf(page);
    return !site.isEmpty() && AllowedSites.contains(site);
}

NewWindowPolicy::Decision NewWindowPolicy::decide(const Request &request, qint64 nowMs) const
{
    if (request.userInitiated) {
        UserCommand::clear();
        return {request.background ? Placement::Behind : Placement::InFront, AllowWinRef, false};
    }
    const bool pending = UserCommand::pending(nowMs);
    if (pending || (!AllowOpenWin && !allowsSite(QUrl(request.opener)))) {
        UserCommand::clear();
        return {};
    }
    return {AllowWinInBack ? Placement::Behind : Placement::InFront, AllowWinRef, true};
}

void NewWindowPolicy::loadAllowedSites(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    // A host name is short; a longer line or a huge file is not ours and is skipped.
    constexpr qint64 MaxLine = 255;
    for (int lines = 0; !file.atEnd() && lines < 10000; ++lines) {
        QByteArray line = file.readLine(MaxLine + 2);
        const bool whole = line.endsWith('\n') || file.atEnd();
        for (QByteArray rest = line; !rest.endsWith('\n') && !file.atEnd();)
            rest = file.readLine(4096);
        const QString site = QString::fromUtf8(line).trimmed().toLower();
        if (whole && !site.isEmpty() && !site.contains(u' '))
            AllowedSites.insert(site);
    }
}

bool NewWindowPolicy::saveAllowedSites(const QString &path) const
{
    QStringList sites(AllowedSites.cbegin(), AllowedSites.cend());
    sites.sort();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    for (const QString &site : sites)
        file.write(site.toUtf8() + '\n');
    return file.commit();
}
