#include "core/prefs/prefer.h"
#include "core/records/recordcodec.h"
#include "recordbytes.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

using RecordBytes::readFile;
using RecordBytes::writeFile;

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
    QString path() const { return m_dir.filePath(u"Pref.vtp"_s); }

private slots:
    void init()
    {
        QTest::failOnWarning(QRegularExpression(u".*"_s));
        QFile::remove(path());
    }

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

        Prefer again;
        QCOMPARE(again.LoadPref(path()), Prefer::LoadResult::Loaded);
        QCOMPARE(again.HomeUrl(), Prefer::defaultHomeUrl());
        QCOMPARE(again.SearchEngine(), Prefer::defaultSearchEngine());
    }

    void everyFieldRoundTrips()
    {
        Prefer prefs;
        int n = 0;
        for (const Prefer::Field &field : Prefer::fields()) {
            ++n;
            prefs.setValueText(
                field, field.number ? QString::number(n + 1) : u"Wert %1 ä"_s.arg(n));
        }
        QVERIFY(prefs.SavePref(path()));
        Prefer back;
        QCOMPARE(back.LoadPref(path()), Prefer::LoadResult::Loaded);
        for (const Prefer::Field &field : Prefer::fields())
            QCOMPARE(back.valueText(field).trimmed(), prefs.valueText(field));
        // Two fields at the places the file format gives them.
        const QByteArray bytes = readFile(path());
        QCOMPARE(int16At(bytes, 12), back.HistoryRows());
        QCOMPARE(bytes.mid(4188, 2083).trimmed(), back.MailClient().toUtf8());
    }

    void longValuesAreCutAndGroupKeepsItsBlanks()
    {
        Prefer prefs;
        prefs.setHomeUrl(u"http://example.org/"_s + QString(2981, u'a'));
        prefs.setHomeTitle(u"<FEED />http://example.org/feed.xml"_s);
        prefs.setGroup(u"Reise"_s);
        QVERIFY(prefs.SavePref(path()));
        Prefer back;
        QCOMPARE(back.LoadPref(path()), Prefer::LoadResult::Loaded);
        QCOMPARE(back.HomeUrl().size(), 2083);
        QCOMPARE(back.HomeTitle(), u"<FEED />http://examp"_s);
        QCOMPARE(back.Group(), u"Reise"_s + QString(195, u' '));
        QCOMPARE(back.GroupFile(), QString(2083, u' '));
    }

    void passwordIsShiftedInTheFile()
    {
        Prefer prefs;
        prefs.setPwd1(u"ab"_s);
        prefs.setPwd3(u"Geheimwort ä"_s);
        QVERIFY(prefs.SavePref(path()));
        QVERIFY(prefs.unstorablePasswords().isEmpty());
        const QByteArray bytes = readFile(path());
        QCOMPARE(bytes.mid(11145, 3), QByteArray("Rq "));
        Prefer back;
        QCOMPARE(back.LoadPref(path()), Prefer::LoadResult::Loaded);
        QCOMPARE(back.Pwd1(), u"ab"_s);
        QCOMPARE(back.Pwd3(), u"Geheimwort ä"_s);
    }

    void unstorablePasswordIsLeftOutNeverBreakingTheFile()
    {
        // 'ö' at an even position shifts past 255; a leading '/' shifts to a blank
        // that reading would trim away; both would make the next load fail.
        const QStringList hard = {u"aö"_s, u"/ä"_s, u"\x0e"_s, u"Привет"_s};
        for (const QString &password : hard) {
            Prefer prefs;
            prefs.setPwd2(password);
            prefs.setPwd4(u"fine"_s);
            QVERIFY(prefs.SavePref(path()));
            QCOMPARE(prefs.unstorablePasswords(), QList<int> {2});
            Prefer back;
            QCOMPARE(back.LoadPref(path()), Prefer::LoadResult::Loaded);
            QCOMPARE(back.Pwd2(), QString());
            QCOMPARE(back.Pwd4(), u"fine"_s);
        }
    }

    void invalidRecordIsMovedAsideAndReplacedByDefaults_data()
    {
        // Two bytes zeroed at an offset, or (negative) the record cut to that length.
        QTest::addColumn<int>("damage");
        QTest::newRow("marker") << 0;
        QTest::newRow("mail program") << 4188;
        QTest::newRow("search form file") << 13469;
        QTest::newRow("older, shorter record") << -13000;
    }

    void invalidRecordIsMovedAsideAndReplacedByDefaults()
    {
        QFETCH(int, damage);
        Prefer prefs;
        prefs.setHomeUrl(u"http://mine.example/"_s);
        QVERIFY(prefs.SavePref(path()));
        QByteArray bytes = readFile(path());
        if (damage < 0)
            bytes.truncate(-damage);
        else
            bytes.replace(damage, 2, QByteArray(2, '\0'));
        QVERIFY(writeFile(path(), bytes));

        Prefer back;
        QCOMPARE(back.LoadPref(path()), Prefer::LoadResult::ReplacedInvalid);
        QCOMPARE(back.HomeUrl(), Prefer::defaultHomeUrl());
        QCOMPARE(readFile(back.movedAsidePath()), bytes);
        QCOMPARE(readFile(path()).size(), 15572);
    }

    void scrambledFieldOfOtherOriginIsOldFormat()
    {
        Prefer prefs;
        QVERIFY(prefs.SavePref(path()));
        QByteArray bytes = readFile(path());
        // A character at an odd position that unscrambles beyond 255.
        bytes.replace(11145, 2, "\xf8\xf8");
        QVERIFY(writeFile(path(), bytes));
        Prefer back;
        QCOMPARE(back.LoadPref(path()), Prefer::LoadResult::OldFormat);
        QCOMPARE(readFile(path()), bytes); // nothing is written on that path
    }
};

QTEST_GUILESS_MAIN(PreferTest)
#include "prefer_test.moc"
