#pragma once

#include <QSet>
#include <QString>

class QUrl;

// The four switches by which pages may open windows, and the decisions they give.
struct NewWindowPolicy
{
    bool AllowOpenWin = true;
    bool AllowResizeWin = true;
    bool AllowWinInBack = false;
    bool AllowWinRef = false;
    // Hosts whose pages may open windows while the switch says no.
    QSet<QString> AllowedSites;

    enum class Switch { AllowOpenWin, AllowResizeWin, AllowWinInBack, AllowWinRef };
    bool isOn(Switch which) const;
    void set(Switch which, bool on);

    // The host by which a page is allowed (empty for pages without one).
    static QString siteOf(const QUrl &page);
    bool allowsSite(const QUrl &page) const;
    // The allowed hosts are kept one per line in a file of the data folder.
    static QString allowedSitesFileName() { return QStringLiteral("PopupSites.txt"); }
    void loadAllowedSites(const QString &path);
    bool saveAllowedSites(const QString &path) const;

    struct Request
    {
        // The user asked for the window: a click on a link, the middle button, a key
        // held while clicking, "open in new window" from the page's menu.
        bool userInitiated = false;
        // The user asked for it to open behind (middle-click, Ctrl+click).
        bool background = false;
        // Address of the page that asks.
        QString opener;
    };

    enum class Placement { Refuse, InFront, Behind };
    struct Decision
    {
        Placement placement = Placement::Refuse;
        // The new page keeps its reference to the page that opened it.
        bool keepOpener = false;
        // A window a page opened on its own: "close popups" closes it.
        bool popup = false;
    };

    // A window the user asks for is always opened, and clears a pending toolbar
    // command. A window a page opens on its own is refused while a user command is
    // pending (which the refusal clears) or while pages may not open windows and
    // its site is not allowed.
    Decision decide(const Request &request, qint64 nowMs) const;

    // A page asks to size its window; a maximised window keeps its size.
    bool maySize(bool maximised) const { return AllowResizeWin && !maximised; }
};
