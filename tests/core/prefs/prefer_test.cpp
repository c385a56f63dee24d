#include "core/base/uitexts.h"
#include "core/prefs/prefer.h"
#include "core/records/recordcodec.h"
#include "recordbytes.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using RecordBytes::readFile;

namespace {
qint16 int16At(const QByteArray &bytes, int offset)
{
    return RecordReader(bytes, offset + 2).int16(offset);
}
} // namespace

class PreferTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString path() const { return m_dir.filePath(QStringLiteral("Pref.vtp")); }

private slots:
    void init() { QFile::remove(path()); }

    void missingFileBecomesDefaultRecord()
    {
        Prefer prefs;
        QCOMPARE(prefs.LoadPref(path()), Prefer::LoadResult::CreatedFresh);
        const QByteArray bytes = readFile(path());
        QCOMPARE(bytes.size(), 15572);
        QCOMPARE(int16At(bytes, 0), qint16(-1));
        QCOMPARE(int16At(bytes, 20), qint16(1)); // status bar: 1, not -1
        QCOMPARE(int16At(bytes, 6275), qint16(-1)); // tab strip
        QCOMPARE(int16At(bytes, 12), qint16(50)); // history rows
        QCOMPARE(int16At(bytes, 14), qint16(10485)); // frame width
        QCOMPARE(int16At(bytes, 16), qint16(7470)); // frame height
        QCOMPARE(int16At(bytes, 13459), qint16(1)); // tab placement
        QCOMPARE(int16At(bytes, 13453), qint16(5)); // mail interval
        QCOMPARE(bytes.mid(4188, 2083), QByteArray(2083, ' ')); // empty mail program, blank-padded
        QVERIFY(bytes.mid(13469, 2083).trimmed().endsWith("/search.html"));
        QVERIFY(prefs.StatusBar() && prefs.TabStrip());

        Prefer again;
        QCOMPARE(again.LoadPref(path()), Prefer::LoadResult::Loaded);
        QCOMPARE(again.HomeUrl(), Prefer::defaultHomeUrl());
        QCOMPARE(again.SearchEngine(), Prefer::defaultSearchEngine());
    }

    void everyFieldRoundTripsAtItsOffset()
    {
        Prefer prefs;
        for (const Prefer::Field &field : Prefer::fields()) {
            if (field.number)
                prefs.setValueText(field, QString::number(field.offset % 1000 + 2));
            else
                prefs.setValueText(field, QLatin1String(field.name));
        }
        QVERIFY(prefs.SavePref(path()));
        const QByteArray bytes = readFile(path());
        QCOMPARE(bytes.size(), 15572);
        for (const Prefer::Field &field : Prefer::fields()) {
            if (field.number) {
                QCOMPARE(int16At(bytes, field.offset), qint16(field.offset % 1000 + 2));
            } else if (field.kind == Prefer::Field::Kind::Text) {
                QCOMPARE(bytes.mid(field.offset, field.width),
                    RecordCodec::encodeText(QLatin1String(field.name), field.width));
            }
        }
        Prefer back;
        QCOMPARE(back.LoadPref(path()), Prefer::LoadResult::Loaded);
        for (const Prefer::Field &field : Prefer::fields())
            QCOMPARE(back.valueText(field).trimmed(), prefs.valueText(field));
    }

    void longValuesAreCutAndGroupKeepsItsBlanks()
    {
        Prefer prefs;
        prefs.setHomeUrl(QStringLiteral("http://example.org/") + QString(2981, u'a'));
        prefs.setHomeTitle(QStringLiteral("<FEED />http://example.org/feed.xml"));
        prefs.setGroup(QStringLiteral("Reise"));
        QVERIFY(prefs.SavePref(path()));
        Prefer back;
        QCOMPARE(back.LoadPref(path()), Prefer::LoadResult::Loaded);
        QCOMPARE(back.HomeUrl().size(), 2083);
        QCOMPARE(back.HomeTitle(), QStringLiteral("<FEED />http://examp"));
        QCOMPARE(back.Group(), QStringLiteral("Reise") + QString(195, u' '));
        QCOMPARE(back.GroupFile(), QString(2083, u' '));
    }

    void passwordIsShiftedInTheFile()
    {
        Prefer prefs;
        prefs.setPwd1(QStringLiteral("ab"));
        prefs.setPwd3(QStringLiteral("Geheimwort ä"));
        QVERIFY(prefs.SavePref(path()));
        QVERIFY(prefs.unstorablePasswords().isEmpty());
        const QByteArray bytes = readFile(path());
        QCOMPARE(bytes.mid(11145, 3), QByteArray("Rq "));
        Prefer back;
        QCOMPARE(back.LoadPref(path()), Prefer::LoadResult::Loaded);
        QCOMPARE(back.Pwd1(), QStringLiteral("ab"));
        QCOMPARE(back.Pwd3(), QStringLiteral("Geheimwort ä"));
    }

    void unstorablePasswordIsLeftOutNeverBreakingTheFile()
    {
        // 'ö' at an even position shifts past 255; a leading '/' shifts to a blank
        // that reading would trim away; both would make the next load fail.
        const QStringList hard = {QStringLiteral("aö"), QStringLiteral("/ä"),
            QStringLiteral("\x0e"), QStringLiteral("Привет")};
        for (const QString &password : hard) {
            Prefer prefs;
            prefs.setPwd2(password);
            prefs.setPwd4(QStringLiteral("fine"));
            QVERIFY(prefs.SavePref(path()));
            QCOMPARE(prefs.unstorablePasswords(), QList<int> {2});
            Prefer back;
            QCOMPARE(back.LoadPref(path()), Prefer::LoadResult::Loaded);
            QCOMPARE(back.Pwd2(), QString());
            QCOMPARE(back.Pwd4(), QStringLiteral("fine"));
        }
    }

    void invalidRecordIsMovedAsideAndReplacedByDefaults_data()
    {
        QTest::addColumn<int>("zeroOffset");
        QTest::newRow("marker") << 0;
        QTest::newRow("mail program") << 4188;
        QTest::newRow("search form file") << 13469;
    }

    void invalidRecordIsMovedAsideAndReplacedByDefaults()
    {
        QFETCH(int, zeroOffset);
        Prefer prefs;
        prefs.setHomeUrl(QStringLiteral("http://mine.example/"));
        QVERIFY(prefs.SavePref(path()));
        QByteArray bytes = readFile(path());
        bytes[zeroOffset] = 0;
        bytes[zeroOffset + 1] = 0;
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();

        Prefer back;
        QCOMPARE(back.LoadPref(path()), Prefer::LoadResult::ReplacedInvalid);
        QCOMPARE(back.HomeUrl(), Prefer::defaultHomeUrl());
        QCOMPARE(readFile(back.movedAsidePath()), bytes);
        QCOMPARE(readFile(path()).size(), 15572);
    }

    void olderShorterRecordIsInvalid()
    {
        Prefer prefs;
        QVERIFY(prefs.SavePref(path()));
        const QByteArray shortRecord = readFile(path()).left(13000);
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(shortRecord);
        file.close();
        Prefer back;
        QCOMPARE(back.LoadPref(path()), Prefer::LoadResult::ReplacedInvalid);
    }

    void scrambledFieldOfOtherOriginIsOldFormat()
    {
        Prefer prefs;
        QVERIFY(prefs.SavePref(path()));
        QByteArray bytes = readFile(path());
        // A character at an odd position that unscrambles beyond 255.
        bytes.replace(11145, 2, "\xf8\xf8");
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        Prefer back;
        QCOMPARE(back.LoadPref(path()), Prefer::LoadResult::OldFormat);
        QCOMPARE(readFile(path()), bytes); // nothing is written on that path
    }

    void toolShowsEveryPreferenceInTableOrder()
    {
        QProcess tool;
        tool.start(QStringLiteral(VANTRELL_TOOL_PATH),
            {QStringLiteral("--data-dir"), m_dir.path(), QStringLiteral("prefs"),
                QStringLiteral("set"), QStringLiteral("Group"), QStringLiteral("Reise")});
        QVERIFY(tool.waitForFinished());
        QCOMPARE(tool.exitCode(), 0);

        tool.start(QStringLiteral(VANTRELL_TOOL_PATH),
            {QStringLiteral("--data-dir"), m_dir.path(), QStringLiteral("prefs"),
                QStringLiteral("show")});
        QVERIFY(tool.waitForFinished());
        QCOMPARE(tool.exitCode(), 0);
        const QStringList lines
            = QString::fromUtf8(tool.readAllStandardOutput()).split(u'\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.size(), Prefer::fields().size());
        QVERIFY(lines.first().startsWith(QStringLiteral("HomeUrl=")));
        QCOMPARE(lines.last(), QStringLiteral("CheckIntervall=5"));
        QVERIFY(lines.contains(QStringLiteral("Group=Reise") + QString(195, u' ')));
        QVERIFY(lines.contains(QStringLiteral("Pwd1=***")));

        tool.start(QStringLiteral(VANTRELL_TOOL_PATH),
            {QStringLiteral("--data-dir"), m_dir.path(), QStringLiteral("prefs"),
                QStringLiteral("set"), QStringLiteral("MdiWidth"), QStringLiteral("wide")});
        QVERIFY(tool.waitForFinished());
        QCOMPARE(tool.exitCode(), 1);
    }

    void toolReportsOldFormatAndExitsWithDataError()
    {
        Prefer prefs;
        QVERIFY(prefs.SavePref(path()));
        QByteArray bytes = readFile(path());
        bytes.replace(11145, 1, "\xff");
        QFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        QProcess tool;
        tool.start(QStringLiteral(VANTRELL_TOOL_PATH),
            {QStringLiteral("--data-dir"), m_dir.path(), QStringLiteral("prefs"),
                QStringLiteral("show")});
        QVERIFY(tool.waitForFinished());
        QCOMPARE(tool.exitCode(), 2);
        const QString err = QString::fromUtf8(tool.readAllStandardError());
        QVERIFY2(err.contains(uiText(1141) + QStringLiteral(" \"") + m_dir.path() + u'"'),
            qPrintable(err));
    }
};

QTEST_GUILESS_MAIN(PreferTest)
#include "prefer_test.moc"
