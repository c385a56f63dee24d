#include "core/base/appinfo.h"
#include "core/model/book.h"
#include "core/model/bookediting.h"
#include "core/model/layout.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/twips.h"
#include "ui/frame/windowsets.h"

#include <QFile>
#include <QMdiSubWindow>
#include <QTest>

class WindowSetsTest : public QObject
{
    Q_OBJECT

private:
    LocalHttpServer m_server;
    QString url(const char *path) const { return m_server.url(QLatin1String(path)).toString(); }

private slots:
    void initTestCase()
    {
        m_server.setPage(QStringLiteral("/one"), "<html><head><title>One</title></head></html>");
        m_server.setPage(QStringLiteral("/two"), "<html><head><title>Two</title></head></html>");
    }

    void bookmarkFolderOpensOneWindowPerBookmark()
    {
        const QString data = AppInfo::dataFolderPath();
        {
            Book book(data);
            Thema *other = BookEditing::addFolder(book, QStringLiteral("Andere"), -1);
            BookEditing::addBookmark(
                book, *other, QStringLiteral("X"), url("/two"), BookEditing::Duplicates::Allow);
            Thema *travel = BookEditing::addFolder(book, QStringLiteral("Reise"), -1);
            BookEditing::addBookmark(
                book, *travel, QStringLiteral("Eins"), url("/one"), BookEditing::Duplicates::Allow);
            auto second = BookEditing::addBookmark(
                book, *travel, QStringLiteral("Zwei"), url("/two"), BookEditing::Duplicates::Allow);
            second.bookmark->Toolbar = 0;
            QVERIFY(book.SaveAllThema());
        }
        Book reread(data);
        QVERIFY(reread.LoadAllThema());
        const QString travelFile = reread.folderNamed(QStringLiteral("Reise"))->FileName;

        MDIForm1 frame;
        frame.show();
        QString problem;
        QCOMPARE(WindowSets::openBookmarkFolder(
                     frame, data, travelFile + QStringLiteral("   "), &problem),
            2);
        QCOMPARE(problem, QString());
        const QList<frmBrowser *> windows = frame.browsers();
        QCOMPARE(windows.size(), 2);
        QTRY_COMPARE_WITH_TIMEOUT(windows.at(0)->Title, QStringLiteral("One"), 15000);
        QTRY_COMPARE_WITH_TIMEOUT(windows.at(1)->Title, QStringLiteral("Two"), 15000);
        QVERIFY(windows.at(0)->toolbarVisible());
        QVERIFY(!windows.at(1)->toolbarVisible());

        QCOMPARE(
            WindowSets::openBookmarkFolder(frame, data, QStringLiteral("99.bkm"), &problem), 0);
        QVERIFY(problem.contains(QStringLiteral("99.bkm")));
        QCOMPARE(frame.browsers().size(), 2);
    }

    void layoutFileRestoresAddressesGeometryBarsAndState()
    {
        const QString path = AppInfo::dataFile(QStringLiteral("start.wlt"));
        WindowDescription first;
        first.left = 1440;
        first.top = 720;
        first.width = 7200;
        first.height = 4320;
        first.address = url("/one");
        first.toolbarVisible = 0;
        WindowDescription second = first;
        second.address = url("/two");
        second.toolbarVisible = -1;
        second.addressBarVisible = 0;
        second.windowState = 1;
        QVERIFY(Layout::SaveLayout(path, {first, second}).ok());

        MDIForm1 frame;
        frame.resize(1000, 800);
        frame.show();
        QString problem;
        QCOMPARE(WindowSets::openLayoutFile(frame, path, &problem), 2);
        QCOMPARE(problem, QString());
        const QList<frmBrowser *> windows = frame.browsers();
        QTRY_COMPARE_WITH_TIMEOUT(windows.at(0)->Title, QStringLiteral("One"), 15000);
        auto *sub = qobject_cast<QMdiSubWindow *>(windows.at(0)->parentWidget());
        QCOMPARE(sub->geometry(),
            QRect(Twips::toPixels(1440, &frame), Twips::toPixels(720, &frame),
                Twips::toPixels(7200, &frame), Twips::toPixels(4320, &frame)));
        QVERIFY(!windows.at(0)->toolbarVisible());
        QVERIFY(windows.at(0)->addressBarVisible());
        QVERIFY(windows.at(1)->parentWidget()->isMinimized());
        QVERIFY(!windows.at(1)->addressBarVisible());

        // Saving the open windows writes them back as they were read.
        const QString saved = AppInfo::dataFile(QStringLiteral("saved.wlt"));
        QString saveProblem;
        QVERIFY(WindowSets::saveLayoutFile(frame, saved, &saveProblem));
        const Layout::ReadResult back = Layout::LoadLayout(saved);
        QCOMPARE(back.windows.size(), 2);
        QCOMPARE(back.windows.at(0).address, url("/one"));
        QCOMPARE(back.windows.at(0).toolbarVisible, qint16(0));
        QCOMPARE(back.windows.at(1).windowState, qint16(1));
        QCOMPARE(back.windows.at(1).addressBarVisible, qint16(0));
        QVERIFY(qAbs(back.windows.at(0).left - 1440) <= 15
            && qAbs(back.windows.at(0).width - 7200) <= 15);
        QVERIFY(
            qAbs(back.windows.at(1).width - 7200) <= 15); // the normal size of the minimised one

        // A damaged file is moved aside and said so; it opens nothing.
        QFile damaged(path);
        QVERIFY(damaged.open(QIODevice::WriteOnly));
        damaged.write("not a layout");
        damaged.close();
        QCOMPARE(WindowSets::openLayoutFile(frame, path, &problem), 0);
        QVERIFY(problem.contains(QStringLiteral(".bad-")));
        QVERIFY(!QFile::exists(path));
    }
};

VANTRELL_ENGINE_TEST_MAIN(WindowSetsTest)
#include "windowsets_test.moc"
