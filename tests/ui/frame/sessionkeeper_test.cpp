#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/model/sessionfile.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/infobar.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/sessionkeeper.h"

#include <QFile>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace EngineTest;

// The frame keeps its windows in the session file and offers them at the next start.
class SessionKeeperTest : public QObject
{
    Q_OBJECT

    LocalHttpServer m_server;
    const QString m_path = AppInfo::dataFile(SessionFile::fileName());

    static void click(MDIForm1 &frame, int textId)
    {
        for (auto *button : frame.infoBar()->findChildren<QPushButton *>()) {
            if (button->text() == uiText(textId))
                button->click();
        }
    }

private slots:
    void initTestCase() { UiTexts::load(UiTexts::Language::German); }
    void init() { EngineTest::failOnWarnings(); }

    void windowsLeftByAnUncleanEndAreAddedOnRestore()
    {
        for (const char *page : {"One", "Two", "Three"})
            m_server.setPage(u'/' + QLatin1String(page), titled(page));
        {
            MDIForm1 frame;
            frame.show();
            QCOMPARE((new SessionKeeper(frame, m_path))->offerRestore(), 0);
            openOn(frame, m_server.url(u"/One"_s).toString(), "One");
            QWidget *two = openOn(frame, m_server.url(u"/Two"_s).toString(), "Two")->parentWidget();
            two->setGeometry(40, 30, 500, 400);
            waitUntil([] { return false; }, SessionKeeper::WriteDelayMs + 1000);
            // Written only when something changed: a removed file stays away until then.
            QVERIFY(QFile::remove(m_path));
            waitUntil([] { return false; }, SessionKeeper::WriteDelayMs + 1000);
            QVERIFY(!QFile::exists(m_path));
            two->showMinimized();
            // Kept minimised, with its normal size, read without showing the window.
            VERIFY_SOON(Layout::LoadLayout(m_path).windows.value(1).windowState == 1);
            QVERIFY(two->isMinimized());
        } // gone without quitting: the file stays

        MDIForm1 frame;
        frame.show();
        openOn(frame, m_server.url(u"/Three"_s).toString(), "Three");
        auto *keeper = new SessionKeeper(frame, m_path);
        QCOMPARE(keeper->offerRestore(), 2);
        QCOMPARE(frame.infoBar()->text(), u"Die 2 Fenster der letzten Sitzung wiederherstellen?"_s);
        // While the question is open, the old session is not written over.
        QVERIFY(!keeper->isKeeping());
        click(frame, 2502);
        QCOMPARE(frame.browsers().size(), 3);
        VERIFY_SOON(frame.browsers().at(2)->Title == u"Two");
        frame.browsers().at(2)->parentWidget()->showNormal();
        QCOMPARE(frame.browsers().at(2)->parentWidget()->size(), QSize(500, 400));
        VERIFY_SOON(Layout::LoadLayout(m_path).windows.size() == 3);
        keeper->finish();
        QVERIFY(!QFile::exists(m_path));
    }

    void dismissRemovesTheSessionAndADamagedOneIsMovedAside()
    {
        QVERIFY(SessionFile(m_path).store({WindowDescription()}));
        MDIForm1 frame;
        frame.show();
        QCOMPARE((new SessionKeeper(frame, m_path))->offerRestore(), 1);
        QCOMPARE(frame.infoBar()->text(), uiText(2501));
        click(frame, 2503);
        QVERIFY(frame.browsers().isEmpty());
        QVERIFY(!QFile::exists(m_path));

        QFile damaged(m_path);
        QVERIFY(damaged.open(QIODevice::WriteOnly) && damaged.write("not a layout") > 0);
        damaged.close();
        QCOMPARE((new SessionKeeper(frame, m_path))->offerRestore(), 0);
        QVERIFY(frame.infoBar()->isHidden());
        QVERIFY(frame.statusText().contains(u".bad-"_s));
        QVERIFY(!QFile::exists(m_path));
    }
};

VANTRELL_ENGINE_TEST_MAIN(SessionKeeperTest)
#include "sessionkeeper_test.moc"
