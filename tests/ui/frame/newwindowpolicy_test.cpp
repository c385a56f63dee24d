#include "core/browsing/usercommand.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/tabstrip.h"

#include <QAction>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>

class NewWindowPolicyTest : public QObject
{
    Q_OBJECT

private:
    LocalHttpServer m_server;
    QString url(const char *path) const { return m_server.url(QLatin1String(path)).toString(); }

    static void run(frmBrowser *window, const QString &script)
    {
        bool done = false;
        window->page()->runScript(script, [&done](const QVariant &) { done = true; });
        QTRY_VERIFY_WITH_TIMEOUT(done, 15000);
    }

    static QVariant evaluate(frmBrowser *window, const QString &script)
    {
        QVariant result;
        bool done = false;
        window->page()->runScript(script, [&](const QVariant &value) {
            result = value;
            done = true;
        });
        return QTest::qWaitFor([&done] { return done; }, 15000) ? result : QVariant();
    }

    frmBrowser *openOpener(MDIForm1 &frame)
    {
        frmBrowser *window = frame.OpenNewBrowser(url("/opener"));
        return QTest::qWaitFor([window] { return window->Title == u"Opener"; }, 15000) ? window
                                                                                       : nullptr;
    }

private slots:
    void initTestCase()
    {
        m_server.setPage(QStringLiteral("/opener"),
            "<html><head><title>Opener</title></head><body>"
            "<a id='blank' href='/target' target='_blank'>new</a>"
            "</body></html>");
        m_server.setPage(QStringLiteral("/target"),
            "<html><head><title>Target</title></head><body>t</body></html>");
        m_server.setPage(QStringLiteral("/spammer"),
            "<html><head><title>Spammer</title></head><body><script>"
            "setInterval(() => { if (window.spam) window.open('/target'); }, 5);"
            "</script></body></html>");
    }

    void refusedWhileSwitchedOffOrWhileACommandIsPending()
    {
        MDIForm1 frame;
        frame.show();
        frmBrowser *opener = openOpener(frame);
        frame.menuAction(QStringLiteral("mn_DisablePopup"))->trigger();
        QVERIFY(!frame.policy().AllowOpenWin);
        QVERIFY(frame.menuAction(QStringLiteral("mn_ctxtDisablePopup"))->isChecked());
        QVERIFY(!frame.menuAction(QStringLiteral("mn_PopupToBack"))->isEnabled());
        run(opener,
            QStringLiteral("window.open('/target'); document.getElementById('blank').click();"));
        QTest::qWait(1000);
        QCOMPARE(frame.browsers().size(), 1);
        QCOMPARE(frame.tabStrip()->count(), 1);

        frame.menuAction(QStringLiteral("mn_ctxtEnablePopup"))->trigger();
        QVERIFY(frame.policy().AllowOpenWin);
        UserCommandPending = -1;
        run(opener, QStringLiteral("window.open('/target')"));
        QTRY_COMPARE_WITH_TIMEOUT(UserCommandPending, qint16(0), 15000); // the refusal clears it
        QCOMPARE(frame.browsers().size(), 1);

        // With nothing pending the next request is granted and marked as a popup.
        run(opener, QStringLiteral("document.getElementById('blank').click()"));
        QTRY_COMPARE_WITH_TIMEOUT(frame.browsers().size(), 2, 15000);
        frmBrowser *popup = frame.browsers().last();
        QVERIFY(popup->IsPopup);
        QVERIFY(!opener->IsPopup);
        QCOMPARE(frame.popupCount(), 1);
        QTRY_COMPARE_WITH_TIMEOUT(popup->Title, QStringLiteral("Target"), 15000);
        QCOMPARE(frame.activeBrowser(), popup);
    }

    void userClickInThePageIsNotHeldBackByAPendingCommand()
    {
        MDIForm1 frame;
        frame.show();
        QVERIFY(QTest::qWaitForWindowExposed(&frame));
        frmBrowser *opener = openOpener(frame);
        QVERIFY(opener);
        const QVariantList centre = evaluate(opener,
            QStringLiteral(
                "(() => { const r = document.getElementById('blank').getBoundingClientRect();"
                " return [r.left + r.width / 2, r.top + r.height / 2]; })()"))
                                        .toList();
        QCOMPARE(centre.size(), 2);
        UserCommandPending = -1;
        QWidget *view = opener->page()->focusWidget();
        const QPoint at(centre.at(0).toInt(), centre.at(1).toInt());
        QTest::mousePress(view, Qt::LeftButton, {}, at);
        QTest::mouseRelease(view, Qt::LeftButton, {}, at);
        QTRY_COMPARE_WITH_TIMEOUT(frame.browsers().size(), 2, 15000);
        QCOMPARE(UserCommandPending, qint16(0));
    }

    void backgroundWindowsLeaveTheActiveOneInFront()
    {
        MDIForm1 frame;
        frame.show();
        frmBrowser *opener = openOpener(frame);
        frame.menuAction(QStringLiteral("mn_ctxtPopupToBack"))->trigger();
        QVERIFY(frame.policy().AllowWinInBack);
        QVERIFY(frame.menuAction(QStringLiteral("mn_PopupToBack"))->isChecked());
        run(opener, QStringLiteral("window.open('/target')"));
        QTRY_COMPARE_WITH_TIMEOUT(frame.browsers().size(), 2, 15000);
        QCOMPARE(frame.tabStrip()->count(), 2);
        QCOMPARE(frame.activeBrowser(), opener);
        frame.menuAction(QStringLiteral("mn_PopupToBack"))->trigger();
        QVERIFY(!frame.menuAction(QStringLiteral("mn_ctxtPopupToBack"))->isChecked());
    }

    void referenceToTheOpenerFollowsItsSwitch()
    {
        MDIForm1 frame;
        frame.show();
        frmBrowser *opener = openOpener(frame);
        QVERIFY(!frame.policy().AllowWinRef);
        run(opener, QStringLiteral("window.open('/target')"));
        QTRY_COMPARE_WITH_TIMEOUT(frame.browsers().size(), 2, 15000);
        frmBrowser *unlinked = frame.browsers().last();
        QTRY_COMPARE_WITH_TIMEOUT(unlinked->Title, QStringLiteral("Target"), 15000);
        QCOMPARE(evaluate(unlinked, QStringLiteral("window.opener === null")).toBool(), true);

        frame.menuAction(QStringLiteral("mn_ctxtPopupReferenz"))->trigger();
        QVERIFY(frame.policy().AllowWinRef);
        run(opener, QStringLiteral("window.open('/target')"));
        QTRY_COMPARE_WITH_TIMEOUT(frame.browsers().size(), 3, 15000);
        frmBrowser *linked = frame.browsers().last();
        QTRY_COMPARE_WITH_TIMEOUT(linked->Title, QStringLiteral("Target"), 15000);
        QCOMPARE(evaluate(linked, QStringLiteral("window.opener !== null")).toBool(), true);
    }

    void pagesMaySizeButNeverMoveTheirWindow()
    {
        MDIForm1 frame;
        frame.resize(1000, 800);
        frame.show();
        frmBrowser *opener = openOpener(frame);
        frame.menuAction(QStringLiteral("mn_PopupReferenz"))->trigger();
        run(opener, QStringLiteral("window.open('/target', 'sized', 'width=400,height=300')"));
        QTRY_COMPARE_WITH_TIMEOUT(frame.browsers().size(), 2, 15000);
        frmBrowser *popup = frame.browsers().last();
        QTRY_COMPARE_WITH_TIMEOUT(popup->Title, QStringLiteral("Target"), 15000);
        auto *sub = qobject_cast<QMdiSubWindow *>(popup->parentWidget());
        sub->showNormal();
        const QPoint before = sub->pos();
        run(popup, QStringLiteral("window.resizeTo(420, 330); window.moveTo(5, 5);"));
        QTRY_VERIFY_WITH_TIMEOUT(qAbs(popup->page()->width() - 420) <= 2, 15000);
        QCOMPARE(sub->pos(), before);

        frame.menuAction(QStringLiteral("mn_PopupResize"))->trigger();
        QVERIFY(!frame.policy().AllowResizeWin);
        run(popup, QStringLiteral("window.resizeTo(600, 500)"));
        QTest::qWait(500);
        QVERIFY(qAbs(popup->page()->width() - 420) <= 2);
    }

    void closingPopupsRefusesWindowsTheyAskForMeanwhile()
    {
        MDIForm1 frame;
        frame.show();
        frmBrowser *opener = openOpener(frame);
        run(opener, QStringLiteral("window.open('/spammer')"));
        QTRY_COMPARE_WITH_TIMEOUT(frame.browsers().size(), 2, 15000);
        frmBrowser *spammer = frame.browsers().last();
        QTRY_COMPARE_WITH_TIMEOUT(spammer->Title, QStringLiteral("Spammer"), 15000);
        run(spammer, QStringLiteral("window.spam = true"));
        frame.ClosePopups();
        QVERIFY(frame.policy().AllowOpenWin); // restored after the sweep
        QCOMPARE(frame.popupCount(), 0);
        QTest::qWait(500);
        QCOMPARE(frame.browsers(), QList<frmBrowser *> {opener});
        QCOMPARE(frame.tabStrip()->count(), 1);
    }

    void fiftyPopupsAreSurvivedAndClosedTogether()
    {
        MDIForm1 frame;
        frame.show();
        frmBrowser *opener = openOpener(frame);
        run(opener, QStringLiteral("for (let i = 0; i < 50; ++i) window.open('/target?' + i);"));
        QTRY_COMPARE_WITH_TIMEOUT(frame.browsers().size(), 51, 60000);
        QCOMPARE(frame.popupCount(), 50);
        QCOMPARE(frame.tabStrip()->count(), 51);
        frame.menuAction(QStringLiteral("mn_ctxtClosePopups"))->trigger();
        QTRY_COMPARE_WITH_TIMEOUT(frame.browsers().size(), 1, 15000);
        QCOMPARE(frame.browsers().first(), opener);
        QCOMPARE(frame.tabStrip()->count(), 1);
    }

    void arrangementChecksExactlyOneEntry()
    {
        MDIForm1 frame;
        frame.resize(900, 700);
        frame.show();
        for (int i = 0; i < 3; ++i)
            frame.OpenNewBrowser(QStringLiteral("about:blank"));
        const QStringList names = {QStringLiteral("mn_Kaskadiert"),
            QStringLiteral("mn_Untereinander"), QStringLiteral("mn_Nebeneinander")};
        for (int code = 0; code < 3; ++code) {
            frame.menuAction(QStringLiteral("mn_ctxt") + names.at(code).mid(3))->trigger();
            for (int other = 0; other < 3; ++other) {
                QCOMPARE(frame.menuAction(names.at(other))->isChecked(), other == code);
                QCOMPARE(frame.menuAction(QStringLiteral("mn_ctxt") + names.at(other).mid(3))
                             ->isChecked(),
                    other == code);
            }
        }
        // Side by side: equal widths, full height, no overlap.
        const QList<QMdiSubWindow *> subs = frame.mdiArea()->subWindowList(QMdiArea::CreationOrder);
        const int area = frame.mdiArea()->viewport()->width();
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(subs.at(i)->x(), area * i / 3);
            QCOMPARE(subs.at(i)->height(), frame.mdiArea()->viewport()->height());
        }
        frame.Arrange(MDIForm1::Arrangement::OneBelowAnother);
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(subs.at(i)->width(), area);
            QCOMPARE(subs.at(i)->y(), frame.mdiArea()->viewport()->height() * i / 3);
        }
    }
};

VANTRELL_ENGINE_TEST_MAIN(NewWindowPolicyTest)
#include "newwindowpolicy_test.moc"
