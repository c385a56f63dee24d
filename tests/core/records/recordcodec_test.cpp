#include "core/records/recordcodec.h"
#include "core/records/recordfile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class RecordCodecTest : public QObject
{
    Q_OBJECT

private slots:
    void textIsPaddedWithBlanksToItsWidth()
    {
        QCOMPARE(RecordCodec::encodeText(QStringLiteral("ab"), 5), QByteArray("ab   "));
        QCOMPARE(RecordCodec::encodeText(QString(), 3), QByteArray("   "));
    }

    void longTextIsCutAtItsWidth()
    {
        const QString url = QStringLiteral("http://example.org/") + QString(3000 - 19, u'x');
        const QByteArray field = RecordCodec::encodeText(url, 2083);
        QCOMPARE(field.size(), 2083);
        QCOMPARE(field, url.toUtf8().left(2083));
    }

    void cutNeverSplitsACharacter()
    {
        // "é" takes two bytes; with room for only one of them it is dropped whole.
        const QByteArray field = RecordCodec::encodeText(QStringLiteral("abcé"), 4);
        QCOMPARE(field, QByteArray("abc "));
        QCOMPARE(RecordCodec::decodeText(field, RecordCodec::Trim::Blanks), QStringLiteral("abc"));
        // A four-byte character at the cut goes whole too.
        const QByteArray emoji = RecordCodec::encodeText(QStringLiteral("a\U0001F600"), 4);
        QCOMPARE(emoji, QByteArray("a   "));
    }

    void legacyWindows1252FieldsAreRead()
    {
        // "Müller" as the Windows program wrote it: one byte per character.
        const QByteArray legacy = QByteArray("M\xfcller") + QByteArray(14, ' ');
        QCOMPARE(
            RecordCodec::decodeText(legacy, RecordCodec::Trim::Blanks), QStringLiteral("Müller"));
        // Bytes 0x80..0x9f are Windows-1252, not control characters.
        QCOMPARE(
            RecordCodec::decodeText(QByteArray("\x80 \x93quoted\x94"), RecordCodec::Trim::None),
            QStringLiteral("€ “quoted”"));
        // The same name in UTF-8 reads as UTF-8.
        QCOMPARE(
            RecordCodec::decodeText(QStringLiteral("Müller").toUtf8(), RecordCodec::Trim::None),
            QStringLiteral("Müller"));
    }

    void trimmingTouchesBlanksOnly()
    {
        QCOMPARE(RecordCodec::decodeText(QByteArray("  a b \t  "), RecordCodec::Trim::Blanks),
            QStringLiteral("a b \t"));
        QCOMPARE(RecordCodec::decodeText(QByteArray("ab   "), RecordCodec::Trim::None),
            QStringLiteral("ab   "));
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
        const QString path = dir.filePath(QStringLiteral("x.bkm"));
        RecordFile::ReadResult missing = RecordFile::readAll(path, 4);
        QVERIFY(missing.ok());
        QVERIFY(missing.records.isEmpty());
        QVERIFY(QFile::exists(path));

        QVERIFY(RecordFile::writeAll(path, {QByteArray("abcd"), QByteArray("efgh")}));
        const RecordFile::ReadResult two = RecordFile::readAll(path, 4);
        QCOMPARE(two.records, (QList<QByteArray> {QByteArray("abcd"), QByteArray("efgh")}));
    }

    void fileOfWrongLengthIsMovedAsideNotDeleted()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("Book.bkm"));
        QVERIFY(RecordFile::writeBytes(path, QByteArray("abcdefg")));
        const RecordFile::ReadResult result = RecordFile::readAll(path, 4);
        QVERIFY(result.records.isEmpty());
        QVERIFY(result.movedAsidePath.startsWith(path + QStringLiteral(".bad-")));
        QFile moved(result.movedAsidePath);
        QVERIFY(moved.open(QIODevice::ReadOnly));
        QCOMPARE(moved.readAll(), QByteArray("abcdefg"));
        // A second bad file in the same second gets a name of its own.
        QVERIFY(RecordFile::writeBytes(path, QByteArray("xyz")));
        const RecordFile::ReadResult again = RecordFile::readAll(path, 4);
        QVERIFY(!again.movedAsidePath.isEmpty());
        QVERIFY(again.movedAsidePath != result.movedAsidePath);
        QCOMPARE(QDir(dir.path()).entryList(QDir::Files).size(), 2);
    }
};

QTEST_GUILESS_MAIN(RecordCodecTest)
#include "recordcodec_test.moc"
