#include "core/base/uitexts.h"
#include "core/browsing/refreshinterval.h"
#include "core/model/sessionfile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

// The session file behind crash restore, and the rules of refresh intervals.
class SessionFileTest : public QObject
{
    Q_OBJECT

    static WindowDescription window(const QString &address, const QString &caption)
    {
        WindowDescription w;
        w.left = 120;
        w.top = 240;
        w.width = 9000;
        w.height = 6000;
        w.address = address;
        w.caption = caption;
        return w;
    }

private slots:
    void initTestCase() { UiTexts::load(UiTexts::Language::English); }

    void writesOnlyWhenTheWindowsChangeAndRemovesAnEmptySession()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(SessionFile::fileName());
        SessionFile session(path);
        QList<WindowDescription> windows
            = {window(u"http://a.test/"_s, u"A"_s), window(u"http://b.test/"_s, u"B"_s)};
        QVERIFY(session.store(windows));
        QCOMPARE(QFileInfo(path).size(), 2 * Layout::RecordLength);
        // The same windows again: the file is left alone, even when it was replaced.
        QFile::remove(path);
        QVERIFY(!session.store(windows));
        QVERIFY(!QFile::exists(path));
        windows[1].caption = u"B, loaded"_s;
        QVERIFY(session.store(windows));

        const Layout::ReadResult read = SessionFile(path).leftBehind();
        QVERIFY(read.outcome.ok());
        QCOMPARE(read.windows.size(), 2);
        QCOMPARE(read.windows.at(1).address, u"http://b.test/"_s);
        QCOMPARE(read.windows.at(1).caption, u"B, loaded"_s);
        QCOMPARE(read.windows.at(0).width, 9000.0);

        QVERIFY(session.store({}));
        QVERIFY(!QFile::exists(path));
    }

    void damagedOrEmptySessionIsNotOffered()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(SessionFile::fileName());
        QVERIFY(SessionFile(path).leftBehind().windows.isEmpty());

        QFile empty(path);
        QVERIFY(empty.open(QIODevice::WriteOnly));
        empty.close();
        QVERIFY(SessionFile(path).leftBehind().outcome.ok());
        QVERIFY(!QFile::exists(path));

        QVERIFY(SessionFile(path).store({window(u"http://a.test/"_s, u"A"_s)}));
        QFile torn(path);
        QVERIFY(torn.open(QIODevice::Append));
        torn.write("half a record");
        torn.close();
        const Layout::ReadResult read = SessionFile(path).leftBehind();
        QVERIFY(read.windows.isEmpty());
        QVERIFY(read.outcome.wasMovedAside());
        QVERIFY(!QFile::exists(path));
        QCOMPARE(QFileInfo(read.outcome.movedAsidePath).size(), Layout::RecordLength + 13);
        QVERIFY(read.outcome.message().contains(read.outcome.movedAsidePath));
    }

    void refreshIntervalsStayInBoundsAndReadAsTimes()
    {
        QCOMPARE(RefreshInterval::bounded(0), 0);
        QCOMPARE(RefreshInterval::bounded(-3), 0);
        QCOMPARE(RefreshInterval::bounded(1), RefreshInterval::MinimumSeconds);
        QCOMPARE(RefreshInterval::bounded(10'000'000), 86400);
        QCOMPARE(RefreshInterval::label(30), u"30 s"_s);
        QCOMPARE(RefreshInterval::label(3600), u"60 min"_s);
        QCOMPARE(RefreshInterval::label(90), u"1 min 30 s"_s);
        QCOMPARE(RefreshInterval::label(0), u"Off"_s);
        QCOMPARE(RefreshInterval::presets(), (QList<int> {30, 60, 300, 900, 3600}));
    }
};

QTEST_GUILESS_MAIN(SessionFileTest)
#include "sessionfile_test.moc"
