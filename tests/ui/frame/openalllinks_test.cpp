#include "core/browsing/linkstoopen.h"
#include "core/browsing/usercommand.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "ui/browser/browsertoolbar.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/framemenus.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/openalllinks.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QDate>
#include <QLabel>
#include <QMessageBox>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

namespace {
constexpr int Wait = 15000;

QByteArray anchors(const QStringList &hrefs)
{
    QByteArray html;
    for (const QString &href : hrefs)
        html += "<a href=\"" + href.toUtf8() + "\">link</a> ";
    return html;
}

QString number(int n)
{
    return QStringLiteral("%1").arg(n, 2, 10, QLatin1Char('0'));
}
} // namespace

class OpenAllLinksTest : public QObject
{
    Q_OBJECT

private:
    LocalHttpServer m_server;
    MDIForm1 *m_frame = nullptr;
    QStringList m_asked;
    bool m_answer = true;
    bool m_keepAsking = true;

    QString url(const QString &path) const { return m_server.url(path).toString(); }
    OpenAllLinks *opener() const { return m_frame->menus()->openAllLinks(); }
    int windows() const { return int(m_frame->browsers().size()); }

    frmBrowser *openOn(const QString &path, const QString &title)
    {
        frmBrowser *window = m_frame->OpenNewBrowser(url(path));
        if (!QTest::qWaitFor(
                [&] { return window->Title == title && !window->page()->isLoading(); }, Wait))
            qWarning("%s did not load", qPrintable(path));
        return window;
    }
    // True once the script finds the page complete; a page may report its end of loading
    // before its document is built.
    bool pageSays(frmBrowser *window, const QString &script)
    {
        bool yes = false;
        bool answered = false;
        window->page()->runScript(script, [&](const QVariant &value) {
            yes = value.toBool();
            answered = true;
        });
        return QTest::qWaitFor([&] { return answered; }, Wait) && yes;
    }
    bool frameLoaded(frmBrowser *window)
    {
        return pageSays(window,
            QStringLiteral(
                "(function(){var f=document.querySelector('iframe');"
                "return !!(f&&f.contentDocument&&f.contentDocument.links.length==1);})()"));
    }
    QStringList openedAddresses() const
    {
        QStringList addresses;
        const QList<frmBrowser *> all = m_frame->browsers();
        for (int i = 1; i < all.size(); ++i)
            addresses.append(all.at(i)->LastRequestUrl);
        return addresses;
    }
    // The addresses of the page "/many", as they must open.
    QStringList manyExpected() const
    {
        QStringList expected = {url(QStringLiteral("/T/14"))};
        for (int n = 1; n <= 13; ++n)
            expected.append(url(QStringLiteral("/t/") + number(n)));
        expected.append(url(QStringLiteral("/t/15")));
        return expected;
    }

private slots:
    void initTestCase()
    {
        // Fourteen addresses on the page and one in a frame of the same origin, besides a
        // repeated link, script and mail links and links to places in the page.
        QStringList many;
        for (int n = 1; n <= 13; ++n)
            many.append(QStringLiteral("/t/") + number(n));
        many << QStringLiteral("/T/14") << QStringLiteral("/t/05")
             << QStringLiteral("mailto:someone@example.org")
             << QStringLiteral("MAILTO:other@example.org") << QStringLiteral("JavaScript:void(0)")
             << QStringLiteral("#top") << QStringLiteral("/many#part");
        m_server.setPage(QStringLiteral("/many"),
            "<html><head><title>Many</title></head><body>" + anchors(many)
                + "<iframe src='/inner'></iframe></body></html>");
        m_server.setPage(QStringLiteral("/inner"),
            "<html><head><title>Inner</title></head><body>" + anchors({QStringLiteral("/t/15")})
                + "</body></html>");
        QStringList fourteen;
        for (int n = 1; n <= 14; ++n)
            fourteen.append(QStringLiteral("/u/") + number(n));
        m_server.setPage(QStringLiteral("/fourteen"),
            "<html><head><title>Fourteen</title></head><body>" + anchors(fourteen)
                + "</body></html>");
        for (int n = 1; n <= 15; ++n) {
            const QByteArray page
                = "<html><head><title>T" + number(n).toUtf8() + "</title></head></html>";
            m_server.setPage(QStringLiteral("/t/") + number(n), page);
            m_server.setPage(QStringLiteral("/u/") + number(n), page);
        }
        m_server.setPage(QStringLiteral("/T/14"), "<html><head><title>T14</title></head></html>");
        m_server.setPage(QStringLiteral("/image.png"),
            QByteArray::fromBase64("iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mP8z8B"
                                   "QDwAEhQGAhKmMIQAAAABJRU5ErkJggg=="),
            "image/png");

        m_frame = new MDIForm1;
        m_frame->resize(1000, 700);
        m_frame->show();
        opener()->setConfirmation([this](const QString &message, bool *showAgain) {
            m_asked.append(message);
            *showAgain = m_keepAsking;
            return m_answer;
        });
    }

    void init()
    {
        m_frame->CloseAll();
        QTRY_VERIFY_WITH_TIMEOUT(m_frame->browsers().isEmpty(), Wait);
        m_asked.clear();
        m_answer = true;
        m_keepAsking = true;
        opener()->setNoticeSwitch(true);
        UserCommandPending = 0;
    }

    void cleanupTestCase() { delete m_frame; }

    void fifteenLinksAndOneWindowAskThenOpenEachAddressOnceSorted()
    {
        frmBrowser *window = openOn(QStringLiteral("/many"), QStringLiteral("Many"));
        QTRY_VERIFY_WITH_TIMEOUT(frameLoaded(window), Wait);
        QSignalSpy finished(opener(), &OpenAllLinks::finished);
        window->commands()->menuClick(window->commands()->entry(QStringLiteral("OpenallA")));
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, Wait);
        QCOMPARE(finished.first().first().toInt(), 15);
        QCOMPARE(m_asked.size(), 1);
        QVERIFY2(m_asked.first().startsWith(QStringLiteral("Es werden 15 Links geöffnet.")),
            qPrintable(m_asked.first()));
        QVERIFY(
            m_asked.first().endsWith(QStringLiteral("verursachen.\n\nAlle Links jetzt öffnen ?")));
        QCOMPARE(windows(), 16);
        QTRY_COMPARE_WITH_TIMEOUT(openedAddresses(), manyExpected(), Wait);
        QVERIFY(opener()->noticeSwitch());
    }

    void fourteenLinksOpenWithoutAskingFromTheMenu()
    {
        frmBrowser *window = openOn(QStringLiteral("/fourteen"), QStringLiteral("Fourteen"));
        QTRY_VERIFY_WITH_TIMEOUT(
            pageSays(window, QStringLiteral("document.links.length == 14")), Wait);
        QSignalSpy finished(opener(), &OpenAllLinks::finished);
        QAction *entry = m_frame->menuAction(QStringLiteral("mn_OpenAllLinks"));
        QVERIFY(entry->isEnabled());
        entry->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, Wait);
        QVERIFY(m_asked.isEmpty());
        QCOMPARE(windows(), 15);
        QTRY_COMPARE_WITH_TIMEOUT(openedAddresses().last(), url(QStringLiteral("/u/14")), Wait);
        QCOMPARE(openedAddresses().first(), url(QStringLiteral("/u/01")));
    }

    void declinedNoticeOpensNothingAndItsCheckBoxSilencesIt()
    {
        frmBrowser *window = openOn(QStringLiteral("/many"), QStringLiteral("Many"));
        QTRY_VERIFY_WITH_TIMEOUT(frameLoaded(window), Wait);
        QSignalSpy finished(opener(), &OpenAllLinks::finished);
        m_answer = false;
        m_keepAsking = false;
        opener()->run(window);
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, Wait);
        QCOMPARE(finished.first().first().toInt(), 0);
        QCOMPARE(m_asked.size(), 1);
        QCOMPARE(windows(), 1);
        QVERIFY(!opener()->noticeSwitch());

        // Switched off, the notice is not shown again in this run of the program.
        m_answer = false;
        opener()->run(window);
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 2, Wait);
        QCOMPARE(m_asked.size(), 1);
        QCOMPARE(windows(), 16);
    }

    void documentThatIsNoHtmlOpensNothing()
    {
        frmBrowser *window = m_frame->OpenNewBrowser(url(QStringLiteral("/image.png")));
        QTRY_VERIFY_WITH_TIMEOUT(
            !window->LocationURL().isEmpty() && !window->page()->isLoading(), Wait);
        QSignalSpy finished(opener(), &OpenAllLinks::finished);
        opener()->run(window);
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, Wait);
        QCOMPARE(finished.first().first().toInt(), 0);
        QCOMPARE(windows(), 1);
    }

    void noticeDialogShowsTheTextAndRemembersItsCheckBox()
    {
        const QString message = LinksToOpen::noticeText(15);
        QString shown;
        QTimer::singleShot(200, this, [&shown] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (!box)
                return;
            shown = box->text();
            box->checkBox()->setChecked(false);
            box->button(QMessageBox::Yes)->click();
        });
        bool showAgain = true;
        QVERIFY(OpenAllLinks::askUser(message, &showAgain));
        QCOMPARE(shown, message);
        QVERIFY(!showAgain);

        QTimer::singleShot(200, this, [] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
                QCOMPARE(box->checkBox()->text(), QStringLiteral("Diesen Hinweis immer anzeigen."));
                QVERIFY(box->checkBox()->isChecked());
                box->button(QMessageBox::No)->click();
            }
        });
        showAgain = true;
        QVERIFY(!OpenAllLinks::askUser(message, &showAgain));
        QVERIFY(showAgain);
    }

    void zoomStepsGoFrom300To350And400()
    {
        for (const char *name : {"mn_Z100", "mn_Z125", "mn_Z300", "mn_Z350", "mn_Z400"})
            QVERIFY2(m_frame->menuAction(QLatin1String(name)), name);
        QCOMPARE(m_frame->menuAction(QStringLiteral("mn_Z350"))->text(), QStringLiteral("350%"));
        QVERIFY(!m_frame->menuAction(QStringLiteral("mn_Z325")));
        QVERIFY(!m_frame->menuAction(QStringLiteral("mn_Z375")));
    }

    void statusBarShowsTickingDateAndTimeAndHidesTheMailPicture()
    {
        auto *date = m_frame->statusBar()->findChild<QLabel *>(QStringLiteral("date"));
        auto *time = m_frame->statusBar()->findChild<QLabel *>(QStringLiteral("time"));
        auto *email = m_frame->statusBar()->findChild<QLabel *>(QStringLiteral("email"));
        QVERIFY(date && time && email
            && m_frame->statusBar()->findChild<QLabel *>(QStringLiteral("status")));
        QVERIFY(QRegularExpression(QStringLiteral("^\\d\\d\\.\\d\\d\\.\\d{4}$"))
                    .match(date->text())
                    .hasMatch());
        QVERIFY(QDate::fromString(date->text(), QStringLiteral("dd.MM.yyyy")).isValid());
        QVERIFY(QRegularExpression(QStringLiteral("^\\d\\d:\\d\\d:\\d\\d$"))
                    .match(time->text())
                    .hasMatch());
        const QString before = time->text();
        QTRY_VERIFY_WITH_TIMEOUT(time->text() != before, 5000);
        QVERIFY(email->isHidden());
        QVERIFY(!email->toolTip().isEmpty());
    }
};

VANTRELL_ENGINE_TEST_MAIN(OpenAllLinksTest)
#include "openalllinks_test.moc"
