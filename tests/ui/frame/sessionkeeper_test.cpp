#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/model/sessionfile.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "ui/browser/frmbrowser.h"
#include "ui/browser/infobar.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/sessionkeeper.h"
#include "ui/frame/twips.h"

#include <QFile>
#include <QMdiSubWindow>
#include <QPushButton>

using namespace Qt::StringLiterals;
using namespace EngineTest;

// The frame keeps its windows in the session file and offers them at the next start.
class SessionKeeperTest : public QObject
{
    Q_OBJECT

    LocalHttpServer m_server;
    const QString m_path = AppInfo::dataFile(SessionFile::fileName());

    static QPushButton *button(MDIForm1 &frame, int textId)
    {
        for (auto *button : frame.infoBar()->findChildren<QPushButton *>()) {
            if (button->text() == uiText(textId))
                return button;
        }
        return nullptr;
    }

private slots:
    void initTestCase()
    {
        UiTexts::load(UiTexts::Language::German);
        m_server.setPage(u"/one"_s, titled("One"));
        m_server.setPage(u"/two"_s, titled("Two"));
        m_server.setPage(u"/three"_s, titled("Three"));
    }
    void init() { EngineTest::failOnWarnings(); }

    void windowsLeftByAnUncleanEndAreAddedOnRestore()
    {
        QRect normalTwo;
        {
            MDIForm1 frame;
            frame.resize(1000, 700);
            frame.show();
            auto *keeper = new SessionKeeper(frame, m_path);
            QCOMPARE(keeper->offerRestore(), 0);
            QVERIFY(keeper->isKeeping());
            openOn(frame, m_server.url(u"/one"_s).toString(), "One");
            auto *two = openOn(frame, m_server.url(u"/two"_s).toString(), "Two");
            auto *sub = qobject_cast<QMdiSubWindow *>(two->parentWidget());
            sub->setGeometry(40, 30, 500, 400);
            normalTwo = sub->geometry();
            sub->showMinimized();
            VERIFY_SOON(Layout::LoadLayout(m_path).windows.value(1).windowState == 1);
            // The minimised window keeps its normal geometry, read without showing it.
            const WindowDescription saved = Layout::LoadLayout(m_path).windows.at(1);
            QCOMPARE(saved.caption, u"Two"_s);
            QCOMPARE(qRound(saved.width), int(Twips::fromPixels(500, &frame)));
            QVERIFY(sub->isMinimized());
        } // gone without quitting: the file stays

        MDIForm1 frame;
        frame.resize(1000, 700);
        frame.show();
        openOn(frame, m_server.url(u"/three"_s).toString(), "Three");
        auto *keeper = new SessionKeeper(frame, m_path);
        QCOMPARE(keeper->offerRestore(), 2);
        QCOMPARE(frame.infoBar()->text(), u"Die 2 Fenster der letzten Sitzung wiederherstellen?"_s);
        // Unanswered, the old session is neither written over nor removed at quit.
        QVERIFY(!keeper->isKeeping());
        button(frame, 2502)->click();
        QCOMPARE(frame.browsers().size(), 3);
        VERIFY_SOON(frame.browsers().at(2)->Title == u"Two");
        auto *restored = qobject_cast<QMdiSubWindow *>(frame.browsers().at(2)->parentWidget());
        QVERIFY(restored->isMinimized());
        restored->showNormal();
        QCOMPARE(restored->geometry().size(), normalTwo.size());
        VERIFY_SOON(Layout::LoadLayout(m_path).windows.size() == 3);
        keeper->finish();
        QVERIFY(!QFile::exists(m_path));
    }

    void dismissRemovesTheSessionAndADamagedOneIsMovedAside()
    {
        WindowDescription blank;
        blank.address = u"about:blank"_s;
        QVERIFY(SessionFile(m_path).store({blank}));
        MDIForm1 frame;
        frame.show();
        auto *keeper = new SessionKeeper(frame, m_path);
        QCOMPARE(keeper->offerRestore(), 1);
        QCOMPARE(frame.infoBar()->text(), uiText(2501));
        button(frame, 2503)->click();
        QVERIFY(frame.browsers().isEmpty());
        QVERIFY(!QFile::exists(m_path));
        QVERIFY(keeper->isKeeping());

        QFile damaged(m_path);
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write("not a layout");
        damaged.close();
        auto *again = new SessionKeeper(frame, m_path);
        QCOMPARE(again->offerRestore(), 0);
        QVERIFY(frame.infoBar()->isHidden());
        QVERIFY(frame.statusText().contains(u".bad-"_s));
        QVERIFY(!QFile::exists(m_path));
    }
};

VANTRELL_ENGINE_TEST_MAIN(SessionKeeperTest)
#include "sessionkeeper_test.moc"
