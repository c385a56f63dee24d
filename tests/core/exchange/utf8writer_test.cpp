// The exports and the record files write UTF-8 themselves instead of going through
// QString::toUtf8; these tests hold them to the bytes that it gives.
#include "core/exchange/utf8writer.h"
#include "core/records/recordcodec.h"

#include <QRegularExpression>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {
QStringList samples()
{
    QStringList texts = {QString(), u"plain ascii"_s, u"Müller – Übersicht €"_s,
        u"\U0001F600 emoji \U0001F600"_s, u"ab\u00e9"_s, u"a\U0001F600"_s};
    // Lone surrogates at the start, inside and at the end, and a pair in the wrong order.
    QString lone = u"x y"_s;
    lone.prepend(QChar(0xDC00));
    lone.insert(2, QChar(0xD800));
    lone.append(QChar(0xD83D));
    texts << lone << (QString(QChar(0xDE00)) + QChar(0xD83D));
    // Long ASCII runs, taken in blocks, with one other character at every place.
    for (int i = 0; i < 40; ++i) {
        QString run = u"0123456789abcdefghijklmnopqrstuvwxyzABCD"_s;
        run[i] = i % 2 ? QChar(0x00FC) : QChar(0x20AC);
        texts << run;
    }
    texts << u"0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"_s;
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
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

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

    void fieldsAreToUtf8CutAtACharacterAndPadded()
    {
        for (const QString &text : samples()) {
            const QByteArray utf8 = text.toUtf8();
            for (int width = 0; width <= std::min<int>(text.size() * 4 + 10, 40); ++width) {
                int cut = std::min<int>(width, int(utf8.size()));
                while (cut > 0 && cut < utf8.size() && (quint8(utf8.at(cut)) & 0xC0) == 0x80)
                    --cut;
                const QByteArray expected = utf8.left(cut) + QByteArray(width - cut, ' ');
                QByteArray field(width + 2, '#');
                RecordCodec::encodeTextTo(field.data() + 1, text, width);
                QCOMPARE(field, '#' + expected + '#');
                QCOMPARE(RecordCodec::encodeText(text, width), expected);
            }
            const int whole = int(utf8.size()) + 3;
            QCOMPARE(RecordCodec::encodeText(text, whole), utf8 + "   ");
        }
    }
};

QTEST_GUILESS_MAIN(Utf8WriterTest)
#include "utf8writer_test.moc"
