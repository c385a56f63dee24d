// The exports and the record files write UTF-8 themselves instead of going through
// QString::toUtf8; these tests hold them to the bytes that it gives.
#include "core/exchange/utf8writer.h"
#include "core/records/recordcodec.h"

#include <QtTest>

namespace {
QStringList samples()
{
    QStringList texts = {QString(), QStringLiteral("plain ascii"),
        QStringLiteral("Müller – Übersicht €"), QStringLiteral("\U0001F600 emoji \U0001F600"),
        QStringLiteral("ab\u00e9"), QStringLiteral("a\U0001F600")};
    // Lone surrogates at the start, inside and at the end, and a pair in the wrong order.
    QString lone = QStringLiteral("x y");
    lone.prepend(QChar(0xDC00));
    lone.insert(2, QChar(0xD800));
    lone.append(QChar(0xD83D));
    texts << lone << (QString(QChar(0xDE00)) + QChar(0xD83D));
    // Long ASCII runs, taken in blocks, with one other character at every place.
    for (int i = 0; i < 40; ++i) {
        QString run = QStringLiteral("0123456789abcdefghijklmnopqrstuvwxyzABCD");
        run[i] = i % 2 ? QChar(0x00FC) : QChar(0x20AC);
        texts << run;
    }
    texts << QStringLiteral("0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");
    // Every unit of the basic plane that is not a surrogate, in one string.
    QString all;
    for (char32_t c = 1; c < 0x10000; ++c) {
        if (c < 0xD800 || c > 0xDFFF)
            all.append(QChar(char16_t(c)));
    }
    texts << all;
    return texts;
}
} // namespace

class Utf8WriterTest : public QObject
{
    Q_OBJECT

private slots:
    void textIsWhatToUtf8Gives()
    {
        for (const QString &text : samples()) {
            Utf8Writer out(4);
            out.ascii("<");
            out.text(text);
            out.ascii(">");
            QCOMPARE(out.take(), '<' + text.toUtf8() + '>');
        }
    }

    void fieldsInPlaceAreWhatEncodeTextGives()
    {
        for (const QString &text : samples()) {
            for (int width = 0; width <= std::min<int>(text.size() * 4 + 2, 40); ++width) {
                QByteArray field(width + 2, '#');
                RecordCodec::encodeTextTo(field.data() + 1, text, width);
                QCOMPARE(field, '#' + RecordCodec::encodeText(text, width) + '#');
            }
            QByteArray wide(text.size() * 4 + 10, '\0');
            RecordCodec::encodeTextTo(wide.data(), text, int(wide.size()));
            QCOMPARE(wide, RecordCodec::encodeText(text, int(wide.size())));
        }
    }
};

QTEST_GUILESS_MAIN(Utf8WriterTest)
#include "utf8writer_test.moc"
