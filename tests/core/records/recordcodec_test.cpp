#include "core/base/uitexts.h"
#include "core/records/recordcodec.h"
#include "core/records/recordfile.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class RecordCodecTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void paddingIsSkippedButNothingInsideIt()
    {
        // The blanks of a wide field are skipped many at a time; a character anywhere
        // among them still counts.
        for (int at : {1, 7, 8, 9, 63, 64, 65, 1000, 2018, 2019, 2020, 2082}) {
            QByteArray field(2083, ' ');
            field[0] = 'a';
            field[at] = 'x';
            QCOMPARE(RecordCodec::decodeText(field, RecordCodec::Trim::Blanks),
                u'a' + QString(at - 1, u' ') + u'x');
        }
        // Blanks alone are trimmed, and only when asked for.
        QCOMPARE(RecordCodec::decodeText("  a b \t  ", RecordCodec::Trim::Blanks), u"a b \t"_s);
        QCOMPARE(RecordCodec::decodeText("ab   ", RecordCodec::Trim::None), u"ab   "_s);
        // Trailing NUL bytes are padding too, and a field of NULs is empty.
        QCOMPARE(
            RecordCodec::decodeText(QByteArray("ab  \0\0", 6), RecordCodec::Trim::Blanks), u"ab"_s);
        QCOMPARE(
            RecordCodec::decodeText(QByteArray(300, '\0'), RecordCodec::Trim::None), QString());
    }

    void legacyWindows1252FieldsAreRead()
    {
        // "Müller" as the Windows program wrote it: one byte per character.
        const QByteArray legacy = QByteArray("M\xfcller") + QByteArray(14, ' ');
        QCOMPARE(RecordCodec::decodeText(legacy, RecordCodec::Trim::Blanks), u"Müller"_s);
        // Bytes 0x80..0x9f are Windows-1252, not control characters.
        QCOMPARE(
            RecordCodec::decodeText(QByteArray("\x80 \x93quoted\x94"), RecordCodec::Trim::None),
            u"€ “quoted”"_s);
        // The same name in UTF-8 reads as UTF-8.
        QCOMPARE(
            RecordCodec::decodeText(u"Müller"_s.toUtf8(), RecordCodec::Trim::None), u"Müller"_s);
    }

    void integersAndDoublesAreLittleEndian()
    {
        RecordWriter writer(14);
        writer.putInt16(0, -1);
        writer.putInt32(2, 0x01020304);
        writer.putDouble(6, 1.0);
        QCOMPARE(writer.bytes().toHex(), QByteArray("ffff04030201000000000000f03f"));

        const RecordReader reader(writer.bytes(), 14);
        QCOMPARE(reader.int16(0), qint16(-1));
        QCOMPARE(reader.int32(2), 0x01020304);
        QCOMPARE(reader.float64(6), 1.0);
    }

    void shortRecordReadsAsZeros()
    {
        const RecordReader reader(QByteArray("\x05", 1), 8);
        QCOMPARE(reader.int16(0), qint16(5));
        QCOMPARE(reader.int32(4), 0);
        QCOMPARE(reader.text(2, 6, RecordCodec::Trim::Blanks), QString());
    }

    void recordFileReadsWholeRecordsAndCreatesMissingFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"x.bkm"_s);
        RecordFile::ReadResult missing = RecordFile::readAll(path, 4);
        QVERIFY(missing.ok());
        QVERIFY(missing.records.isEmpty());
        QVERIFY(QFile::exists(path));

        // More records than one block of reading holds, each handed out whole and in order.
        QList<QByteArray> records;
        for (int i = 0; i < 1000; ++i)
            records.append(QByteArray::number(i).rightJustified(300, '.'));
        QVERIFY(RecordFile::writeAll(path, records));
        QCOMPARE(RecordFile::readAll(path, 300).records, records);
        int taken = 0;
        RecordFile::readEach(path, 300, RecordFile::Missing::LeaveAbsent,
            [&](QByteArrayView record) { return record == records.at(taken++) && taken < 10; });
        QCOMPARE(taken, 10);
    }

    void fileOfWrongLengthIsMovedAsideNotDeleted()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(u"Book.bkm"_s);
        QVERIFY(RecordFile::writeBytes(path, QByteArray("abcdefg")));
        const RecordFile::ReadResult result = RecordFile::readAll(path, 4);
        QVERIFY(result.records.isEmpty());
        QVERIFY(result.movedAsidePath.startsWith(path + u".bad-"_s));
        QFile moved(result.movedAsidePath);
        QVERIFY(moved.open(QIODevice::ReadOnly));
        QCOMPARE(moved.readAll(), QByteArray("abcdefg"));
        // A second bad file in the same second gets a name of its own.
        QVERIFY(RecordFile::writeBytes(path, QByteArray("xyz")));
        const RecordFile::ReadResult again = RecordFile::readAll(path, 4);
        QVERIFY(!again.movedAsidePath.isEmpty());
        QVERIFY(again.movedAsidePath != result.movedAsidePath);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), 2);
        // The user is told in the words of the text table.
        UiTexts::load(UiTexts::Language::German);
        QCOMPARE(again.outcome(path).message(), uiText(2000).arg(path, again.movedAsidePath));
    }

    void fileThatCannotBeMovedAsideIsACodedFailure()
    {
        // A name so long that the moved-aside name would exceed what a folder allows.
        QTemporaryDir dir;
        const QString path = dir.filePath(QString(244, u'x'));
        QVERIFY(RecordFile::writeBytes(path, QByteArray("abcdefg")));
        const RecordFile::ReadResult result = RecordFile::readAll(path, 4);
        QCOMPARE(result.problem, FileOutcome::Problem::CannotMoveAside);
        QVERIFY(result.records.isEmpty());
        QCOMPARE(result.outcome(path).message(), uiText(2002).arg(path, uiText(2080)));
    }
};

QTEST_GUILESS_MAIN(RecordCodecTest)
#include "recordcodec_test.moc"
