#include "core/html/htmlsource.h"

#include "core/base/textcodec.h"

#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>
#include <cstring>

namespace HtmlSource {

namespace {
bool isAsciiSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f';
}

bool isLetter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

QString decodeAs(const QByteArray &label, const QByteArray &bytes, QString *name)
{
    const QByteArray lower = label.trimmed().toLower();
    static const QList<QByteArray> utf8
        = {"utf-8", "utf8", "unicode-1-1-utf-8", "utf-16", "utf-16le", "utf-16be", "unicode"};
    static const QList<QByteArray> latin = {"windows-1252", "cp1252", "x-cp1252", "iso-8859-1",
        "iso8859-1", "iso_8859-1", "latin1", "l1", "us-ascii", "ascii", "ansi_x3.4-1968",
        "iso-ir-100", "ibm819", "cp819", "csisolatin1"};
    // A meta element cannot name UTF-16 for bytes it is itself written in; browsers
    // read such files as UTF-8.
    if (utf8.contains(lower)) {
        *name = QStringLiteral("UTF-8");
        return QString::fromUtf8(bytes);
    }
    if (!latin.contains(lower)) {
        if (std::optional<QString> text = TextCodec::decodeNamed(bytes, lower, name))
            return *std::move(text);
    }
    *name = QStringLiteral("windows-1252");
    return TextCodec::decodeWindows1252(bytes);
}
} // namespace

QByteArray metaCharset(const QByteArray &bytes)
{
    const QByteArray head = bytes.left(1024);
    static const QRegularExpression charset(
        QStringLiteral("charset\\s*=\\s*[\"']?\\s*([A-Za-z0-9_:.+-]+)"),
        QRegularExpression::CaseInsensitiveOption);
    qsizetype at = 0;
    while (true) {
        at = head.indexOf('<', at);
        if (at < 0 || at + 5 > head.size())
            return {};
        if (head.mid(at + 1, 4).toLower() == "meta" && at + 5 < head.size()
            && (isAsciiSpace(head.at(at + 5)) || head.at(at + 5) == '/')) {
            qsizetype end = head.indexOf('>', at);
            if (end < 0)
                end = head.size();
            const QString tag = QString::fromLatin1(head.mid(at, end - at));
            const QRegularExpressionMatch match = charset.match(tag);
            if (match.hasMatch())
                return match.captured(1).toLatin1();
        }
        ++at;
    }
}

Decoded decode(const QByteArray &bytes)
{
    Decoded decoded;
    if (bytes.startsWith("\xEF\xBB\xBF")) {
        decoded.encoding = QStringLiteral("UTF-8");
        decoded.text = QString::fromUtf8(bytes.mid(3));
        return decoded;
    }
    if (bytes.startsWith("\xFF\xFE") || bytes.startsWith("\xFE\xFF")) {
        const bool little = bytes.startsWith("\xFF\xFE");
        QStringDecoder decoder(little ? QStringConverter::Utf16LE : QStringConverter::Utf16BE);
        decoded.encoding = little ? QStringLiteral("UTF-16LE") : QStringLiteral("UTF-16BE");
        decoded.text = decoder.decode(bytes.mid(2));
        return decoded;
    }
    const QByteArray label = metaCharset(bytes);
    if (!label.isEmpty()) {
        decoded.text = decodeAs(label, bytes, &decoded.encoding);
        return decoded;
    }
    if (TextCodec::isValidUtf8(bytes)) {
        decoded.encoding = QStringLiteral("UTF-8");
        decoded.text = QString::fromUtf8(bytes);
    } else {
        decoded.encoding = QStringLiteral("windows-1252");
        decoded.text = TextCodec::decodeWindows1252(bytes);
    }
    return decoded;
}

QByteArray toUtf8(const QByteArray &bytes, QString *encoding)
{
    const bool bom = bytes.startsWith("\xEF\xBB\xBF");
    const QByteArray label = bom ? QByteArray() : metaCharset(bytes).trimmed().toLower();
    const bool utf8 = bom || label == "utf-8" || label == "utf8"
        || (label.isEmpty() && !bytes.startsWith("\xFF\xFE") && !bytes.startsWith("\xFE\xFF")
            && TextCodec::isValidUtf8(bytes));
    if (utf8) {
        *encoding = QStringLiteral("UTF-8");
        // Invalid sequences in a file that says it is UTF-8 are the parser's to replace.
        return bom ? bytes.mid(3) : bytes;
    }
    Decoded decoded = decode(bytes);
    *encoding = decoded.encoding;
    return decoded.text.toUtf8();
}

Fit fits(const QByteArray &bytes, qint64 maxBytes, qint64 maxElements, int maxNesting)
{
    if (bytes.size() > maxBytes)
        return Fit::TooLarge;
    const Shape shape = estimateShape(bytes);
    if (shape.startTags > maxElements)
        return Fit::TooLarge;
    return shape.deepest > maxNesting ? Fit::TooDeep : Fit::Fits;
}

Shape estimateShape(const QByteArray &bytes)
{
    Shape shape;
    // Elements that never nest in themselves because the parser closes them (or has no
    // end tag for them); everything else counts one level per unclosed start tag.
    static const char *const flat[] = {"area", "base", "br", "col", "embed", "hr", "img", "input",
        "link", "meta", "param", "source", "track", "wbr", "keygen", "basefont", "bgsound", "frame",
        "image", "isindex", "p", "li", "dt", "dd", "option", "optgroup", "tr", "td", "th", "tbody",
        "thead", "tfoot", "rb", "rt", "rtc", "rp", "colgroup", "caption", "html", "head", "body",
        "h1", "h2", "h3", "h4", "h5", "h6"};
    auto isFlat = [](const char *name) {
        for (const char *candidate : flat) {
            if (candidate[0] == name[0] && std::strcmp(candidate, name) == 0)
                return true;
        }
        return false;
    };
    int depth = 0;
    int deepest = 0;
    // An anchor closes whatever was left open inside it, both at its end tag and when
    // the next anchor starts (so a "<FEED />" mark inside a title never adds up).
    int anchorDepth = -1;
    const char *data = bytes.constData();
    const qsizetype size = bytes.size();
    char name[12];
    for (qsizetype i = 0; i + 1 < size; ++i) {
        // Straight to the next tag: most of a large file is text.
        const auto *open = static_cast<const char *>(std::memchr(data + i, '<', size_t(size - i)));
        if (!open)
            break;
        i = open - data;
        if (i + 1 >= size)
            break;
        const bool end = data[i + 1] == '/';
        qsizetype at = i + (end ? 2 : 1);
        if (at >= size || !isLetter(data[at]))
            continue;
        qsizetype stop = at;
        while (stop < size && !isAsciiSpace(data[stop]) && data[stop] != '>' && data[stop] != '/')
            ++stop;
        const qsizetype length = std::min<qsizetype>(stop - at, qsizetype(sizeof name) - 1);
        for (qsizetype k = 0; k < length; ++k)
            name[k] = char(data[at + k] | 0x20); // ASCII letters and digits only matter here
        name[length] = '\0';
        i = stop - 1;
        if (!end)
            ++shape.startTags;
        if (name[0] == 'a' && name[1] == '\0') {
            if (anchorDepth >= 0)
                depth = anchorDepth;
            anchorDepth = end ? -1 : depth;
            continue;
        }
        if (isFlat(name))
            continue;
        if (end) {
            depth = std::max(0, depth - 1);
        } else {
            deepest = std::max(deepest, ++depth);
        }
    }
    shape.deepest = deepest;
    return shape;
}

} // namespace HtmlSource
