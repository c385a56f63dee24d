#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>

class MDIForm1;
class frmBrowser;

// Opens every link of a window's page in windows of its own (LinksToOpen picks them).
// Before many windows open, the user is asked, unless they switched the notice off for
// this run.
class OpenAllLinks final : public QObject
{
    Q_OBJECT

public:
    explicit OpenAllLinks(MDIForm1 *frame);

    // Asks whether to open; the message is the complete notice text. *showAgain holds
    // the notice switch and takes the state of the dialog's check box.
    using Confirmation = std::function<bool(const QString &message, bool *showAgain)>;
    void setConfirmation(Confirmation confirm) { m_confirm = std::move(confirm); }
    static bool askUser(const QString &message, bool *showAgain);

    // The notice switch: while on, the notice is shown from the threshold on.
    bool noticeSwitch() const { return m_noticeSwitch; }
    void setNoticeSwitch(bool on) { m_noticeSwitch = on; }

    // Reads the links of the window's page (an HTML document only) and opens them, in
    // the order of the page.
    void run(frmBrowser *window);

    // Opens windows one after another as the links are opened: `openers` each open one
    // window. Layouts of many windows open through here too.
    using Opener = std::function<frmBrowser *()>;
    void openWindows(const QList<Opener> &openers);

    // At most this many of the new windows load at once; the next opens when one has
    // loaded, or has tried for the load time-out.
    static constexpr int MaxLoading = 4;
    void setLoadTimeoutMs(int ms) { m_loadTimeoutMs = ms; }

signals:
    // The windows of a run have been opened (none when it was declined or found no links).
    void finished(int opened);

private:
    void open(const QStringList &addresses);
    void openNext();
    void loaded(frmBrowser *window);

    MDIForm1 *m_frame;
    Confirmation m_confirm = &OpenAllLinks::askUser;
    bool m_noticeSwitch = true;
    QList<Opener> m_queue;
    int m_opened = 0;
    QList<const frmBrowser *> m_loading;
    int m_loadTimeoutMs = 20000;
};
