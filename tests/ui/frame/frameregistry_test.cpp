#include "core/base/appinfo.h"
#include "core/prefs/prefer.h"
#include "core/records/recordcodec.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/tabstrip.h"

#include <QAction>
#include <QFile>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>
#include <QVBoxLayout>

class FrameRegistryTest : public QObject
{
    Q_OBJECT

private:
    LocalHttpServer m_server;

    static QStringList tabKeys(const MDIForm1 &frame)
    {
        QStringList keys;
        for (int i = 0; i < frame.tabStrip()->count(); ++i)
            keys.append(frame.tabStrip()->keyAt(i));
        return keys;
    }

private slots:
    void initTestCase()
    {
        m_server.setPage(QStringLiteral("/amp"),
            "<html><head><title>Tom & Jerry</title></head><body>x</body></html>");
        m_server.setPage(QStringLiteral("/plain"),
            "<html><head><title>Plain</title></head><body>y</body></html>");
    }

    void tabCaptionShowsAmpersandOnce()
    {
        MDIForm1 frame;
        frame.show();
        frmBrowser *window = frame.OpenNewBrowser(m_server.url(QStringLiteral("/amp")).toString());
        QTRY_COMPARE_WITH_TIMEOUT(window->Caption(), QStringLiteral("Tom & Jerry"), 15000);
        const int index = frame.tabStrip()->indexOfKey(QStringLiteral("[1]"));
        QCOMPARE(frame.tabStrip()->tabText(index), QStringLiteral("Tom && Jerry"));
        QCOMPARE(frame.tabStrip()->tabToolTip(index), QStringLiteral("Tom & Jerry"));
        QVERIFY(frame.windowTitle().endsWith(QStringLiteral("Tom & Jerry")));
    }

    void windowNumbersAreNeverReusedAndTabsFollowTheRegistry()
    {
        MDIForm1 frame;
        frame.show();
        QList<frmBrowser *> windows;
        for (int i = 0; i < 5; ++i)
            windows.append(frame.OpenNewBrowser(QStringLiteral("about:blank")));
        QCOMPARE(
            tabKeys(frame), (QStringList {u"[1]"_qs, u"[2]"_qs, u"[3]"_qs, u"[4]"_qs, u"[5]"_qs}));

        windows.at(2)->parentWidget()->close();
        QTRY_COMPARE(frame.browsers().size(), 4);
        QCOMPARE(tabKeys(frame), (QStringList {u"[1]"_qs, u"[2]"_qs, u"[4]"_qs, u"[5]"_qs}));
        frmBrowser *sixth = frame.OpenNewBrowser(QStringLiteral("about:blank"));
        QCOMPARE(sixth->ID, 6);
        QCOMPARE(frame.browser(QStringLiteral("[6]")), sixth);
        QCOMPARE(frame.windowCounter(), 6);
        QCOMPARE(frame.openWindowCount(), 6);

        // A left click on a tab restores and activates its window.
        windows.at(0)->parentWidget()->showMinimized();
        emit frame.tabStrip()->tabLeftClicked(QStringLiteral("[1]"));
        QCOMPARE(frame.activeBrowser(), windows.at(0));
        QVERIFY(!windows.at(0)->parentWidget()->isMinimized());
        QCOMPARE(frame.tabStrip()->keyAt(frame.tabStrip()->currentIndex()), QStringLiteral("[1]"));

        // Activating another window moves the selected tab with it.
        frame.mdiArea()->setActiveSubWindow(qobject_cast<QMdiSubWindow *>(sixth->parentWidget()));
        QCOMPARE(frame.tabStrip()->keyAt(frame.tabStrip()->currentIndex()), QStringLiteral("[6]"));

        frame.CloseOtherBrowsers(sixth);
        QTRY_COMPARE(frame.browsers().size(), 1);
        QCOMPARE(tabKeys(frame), QStringList {QStringLiteral("[6]")});

        frame.CloseAll();
        QTRY_COMPARE(frame.browsers().size(), 0);
        QCOMPARE(frame.tabStrip()->count(), 0);
        QCOMPARE(frame.windowTitle(), AppInfo::frameCaption());
    }

    void cloneOpensTheActiveAddress()
    {
        MDIForm1 frame;
        frame.show();
        QVERIFY(!frame.IsCloneable());
        frmBrowser *window
            = frame.OpenNewBrowser(m_server.url(QStringLiteral("/plain")).toString());
        QTRY_COMPARE_WITH_TIMEOUT(window->Caption(), QStringLiteral("Plain"), 15000);
        frmBrowser *clone = frame.CloneActive();
        QVERIFY(clone);
        QTRY_COMPARE_WITH_TIMEOUT(
            clone->LocationURL(), m_server.url(QStringLiteral("/plain")).toString(), 15000);
        QCOMPARE(frame.browsers().size(), 2);
    }

    void tabStripPlacementKeepsItsThreeMenuCopiesEqual()
    {
        MDIForm1 frame;
        frame.show();
        frame.OpenNewBrowser(QStringLiteral("about:blank"));
        frame.menuAction(QStringLiteral("mn_ctxtRegisterUntenT"))->trigger();
        QCOMPARE(prefer().TabAlign(), qint16(3));
        for (const char *name :
            {"mn_RegisterUnten", "mn_ctxtRegisterUnten", "mn_ctxtRegisterUntenT"})
            QVERIFY2(frame.menuAction(QLatin1String(name))->isChecked(), name);
        for (const char *name : {"mn_RegisterOben", "mn_ctxtRegisterOben", "mn_ctxtRegisterObenT"})
            QVERIFY2(!frame.menuAction(QLatin1String(name))->isChecked(), name);
        // The strip now stands below the windows.
        QTRY_VERIFY(frame.tabStrip()->geometry().top() > frame.mdiArea()->geometry().top());

        frame.menuAction(QStringLiteral("mn_ctxtRegisterOben"))->trigger();
        QCOMPARE(prefer().TabAlign(), qint16(1));
        QVERIFY(frame.menuAction(QStringLiteral("mn_ctxtRegisterObenT"))->isChecked());
        QVERIFY(!frame.menuAction(QStringLiteral("mn_RegisterUnten"))->isChecked());
        QTRY_VERIFY(frame.tabStrip()->geometry().top() < frame.mdiArea()->geometry().top());

        frame.menuAction(QStringLiteral("mn_ctxtRegisterTabsT"))->trigger();
        QCOMPARE(prefer().TabButton(), qint16(0));
        QVERIFY(frame.menuAction(QStringLiteral("mn_RegisterTabs"))->isChecked());
        QVERIFY(!frame.menuAction(QStringLiteral("mn_ctxtRegisterButton"))->isChecked());
    }

    void maximisedQuitKeepsTheLastNormalSize()
    {
        const QString path = AppInfo::dataFile(QStringLiteral("Pref.vtp"));
        QFile::remove(path);
        prefer().resetToDefaults();
        {
            MDIForm1 frame;
            frame.resize(800, 600);
            frame.show();
            QVERIFY(QTest::qWaitForWindowExposed(&frame));
            frame.Unload(); // the normal size is stored
        }
        const qint16 width = prefer().MdiWidth();
        const qint16 height = prefer().MdiHeight();
        QVERIFY(width > 0 && height > 0);
        {
            MDIForm1 frame;
            frame.resize(500, 400);
            frame.showMaximized();
            QTRY_VERIFY(frame.isMaximized());
            frame.close();
        }
        QCOMPARE(prefer().MdiState(), qint16(2));
        QCOMPARE(prefer().MdiWidth(), width);
        QCOMPARE(prefer().MdiHeight(), height);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray record = file.readAll();
        QCOMPARE(record.size(), Prefer::RecordLength);
        QCOMPARE(RecordReader(record, Prefer::RecordLength).int16(18), qint16(2));
    }

    void secondInstanceFrameSavesNothing()
    {
        const QString path = AppInfo::dataFile(QStringLiteral("Pref.vtp"));
        QFile::remove(path);
        MDIForm1 frame;
        frame.SecondInstance = true;
        frame.close();
        QVERIFY(!QFile::exists(path));
    }
};

VANTRELL_ENGINE_TEST_MAIN(FrameRegistryTest)
#include "frameregistry_test.moc"
