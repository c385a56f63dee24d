#include "core/feeds/feeddocument.h"

#include "core/base/textcodec.h"
#include "core/base/uitexts.h"

#include <QRegularExpression>
#include <QStringDecoder>

namespace {

bool startsWithBytes(const QByteArray &bytes, std::initializer_list<uchar> prefix)
{
    if (bytes.size() < qsizetype(prefix.size()))
        return false;
    qsizetype at = 0;
    for (const uchar byte : prefix) {
        if (uchar(bytes.at(at++)) != byte)
            return false;
    }
    return true;
}

// The encoding of a document that starts with a byte-order mark or, without one, with
// "<" or "<?" in UTF-16 or UTF-32; how many bytes of mark to skip.
std::optional<QStringConverter::Encoding> wideEncoding(const QByteArray &bytes, int *skip)
{
    *skip = 0;
    if (startsWithBytes(bytes, {0xFF, 0xFE, 0x00, 0x00})) {
        *skip = 4;
        return QStringConverter::Utf32LE;
    }
    if (startsWithBytes(bytes, {0x00, 0x00, 0xFE, 0xFF})) {
        *skip = 4;
        return QStringConverter::Utf32BE;
    }
    if (startsWithBytes(bytes, {0xFF, 0xFE})) {
        *skip = 2;
        return QStringConverter::Utf16LE;
    }
    if (startsWithBytes(bytes, {0xFE, 0xFF})) {
        *skip = 2;
        return QStringConverter::Utf16BE;
    }
    if (startsWithBytes(bytes, {0x00, 0x00, 0x00, 0x3C}))
        return QStringConverter::Utf32BE;
    if (startsWithBytes(bytes, {0x3C, 0x00, 0x00, 0x00}))
        return QStringConverter::Utf32LE;
    // Otherwise a zero in every other byte: an ASCII character in UTF-16.
    if (bytes.size() >= 4) {
        const bool zero[4]
            = {bytes.at(0) == 0, bytes.at(1) == 0, bytes.at(2) == 0, bytes.at(3) == 0};
        if (zero[0] && !zero[1] && zero[2] && !zero[3])
            return QStringConverter::Utf16BE;
        if (!zero[0] && zero[1] && !zero[2] && zero[3])
            return QStringConverter::Utf16LE;
    }
    return std::nullopt;
}

// The encoding label of the XML declaration, lower-cased; empty without one.
QByteArray declaredEncoding(const QByteArray &bytes)
{
    qsizetype start = 0;
    while (start < bytes.size() && start < 4096 && QChar::isSpace(uchar(bytes.at(start))))
        ++start;
    if (!QByteArrayView(bytes).sliced(start).startsWith("<?xml"))
        return {};
    const qsizetype end = bytes.indexOf("?>", start);
    if (end < 0 || end - start > 1024)
        return {};
    static const QRegularExpression label(
        QStringLiteral("encoding\\s*=\\s*[\"']([A-Za-z0-9._:-]*)[\"']"));
    const QString declaration = QString::fromLatin1(bytes.mid(start, end - start));
    const QRegularExpressionMatch match = label.match(declaration);
    return match.hasMatch() ? match.captured(1).toLatin1().toLower() : QByteArray();
}

bool isWindows1252Label(const QByteArray &label)
{
    static const char *const labels[]
        = {"iso-8859-1", "iso8859-1", "iso_8859-1", "latin1", "latin-1", "l1", "cp819", "ibm819",
            "us-ascii", "ascii", "windows-1252", "cp1252", "x-cp1252"};
    for (const char *known : labels) {
        if (label == known)
            return true;
    }
    return false;
}

int countLines(QStringView text)
{
    return int(text.count(u'\n'));
}

// Walks the prolog (declaration, comments, processing instructions, document type)
// and reports the line of an entity declaration in the internal subset, or 0.
int entityDeclarationLine(const QString &text)
{
    const qsizetype size = text.size();
    qsizetype at = 0;
    auto skipPast = [&](QStringView end) {
        const qsizetype found = text.indexOf(end, at);
        at = found < 0 ? size : found + end.size();
    };
    auto skipQuoted = [&] {
        const QChar quote = text.at(at);
        const qsizetype found = text.indexOf(quote, at + 1);
        at = found < 0 ? size : found + 1;
    };
    while (at < size) {
        while (at < size && text.at(at).isSpace())
            ++at;
        const QStringView rest = QStringView(text).mid(at);
        if (rest.startsWith(u"<?")) {
            skipPast(u"?>");
        } else if (rest.startsWith(u"<!--")) {
            skipPast(u"-->");
        } else if (rest.startsWith(u"<!DOCTYPE")) {
            at += 9;
            while (at < size && text.at(at) != u'>' && text.at(at) != u'[') {
                if (text.at(at) == u'"' || text.at(at) == u'\'')
                    skipQuoted();
                else
                    ++at;
            }
            if (at >= size || text.at(at) == u'>')
                return 0;
            ++at;
            while (at < size && text.at(at) != u']') {
                const QStringView inner = QStringView(text).mid(at);
                if (inner.startsWith(u"<!ENTITY"))
                    return countLines(QStringView(text).left(at)) + 1;
                if (inner.startsWith(u"<!--"))
                    skipPast(u"-->");
                else if (inner.startsWith(u"<?"))
                    skipPast(u"?>");
                else if (text.at(at) == u'"' || text.at(at) == u'\'')
                    skipQuoted();
                else
                    ++at;
            }
            return 0;
        } else {
            return 0;
        }
    }
    return 0;
}

// Checks in one quick pass over the markup that elements nest no deeper than MaxDepth and
// number no more than MaxElements; the parser itself reports anything this pass misjudges
// in a malformed document.
bool checkStructure(const QString &text, FeedError *error)
{
    const qsizetype size = text.size();
    int depth = 0;
    int elements = 0;
    qsizetype at = 0;
    auto skipPast = [&](QStringView end) {
        const qsizetype found = text.indexOf(end, at);
        at = found < 0 ? size : found + end.size();
    };
    while ((at = text.indexOf(u'<', at)) >= 0) {
        const QStringView rest = QStringView(text).mid(at);
        if (rest.startsWith(u"</")) {
            depth = qMax(0, depth - 1);
            at += 2;
            continue;
        }
        if (rest.startsWith(u"<!--")) {
            skipPast(u"-->");
            continue;
        }
        if (rest.startsWith(u"<![CDATA[")) {
            skipPast(u"]]>");
            continue;
        }
        if (rest.startsWith(u"<?")) {
            skipPast(u"?>");
            continue;
        }
        if (rest.startsWith(u"<!")) {
            skipPast(u">");
            continue;
        }
        // A start tag; attribute values cannot hold "<", so a tag never runs past one.
        const qsizetype tagStart = at;
        ++at;
        while (at < size && text.at(at) != u'>' && text.at(at) != u'<') {
            if (text.at(at) == u'"' || text.at(at) == u'\'') {
                qsizetype close = at + 1;
                while (close < size && text.at(close) != text.at(at) && text.at(close) != u'<')
                    ++close;
                at = close < size && text.at(close) == u'<' ? close - 1 : close;
            }
            ++at;
        }
        if (at >= size || text.at(at) != u'>')
            continue;
        ++at;
        const bool tooDeep = text.at(at - 2) != u'/' && ++depth > FeedDocument::MaxDepth;
        if (tooDeep || ++elements > FeedDocument::MaxElements) {
            error->problem = tooDeep ? FeedError::Problem::TooDeep : FeedError::Problem::TooMany;
            error->reason = tooDeep ? uiText(2092).arg(FeedDocument::MaxDepth)
                                    : uiText(2093).arg(FeedDocument::MaxElements);
            error->line = countLines(QStringView(text).left(tagStart)) + 1;
            return false;
        }
    }
    return true;
}

} // namespace

QString FeedDocument::decode(const QByteArray &bytes, const QByteArray &charset)
{
    int skip = 0;
    if (const auto wide = wideEncoding(bytes, &skip)) {
        QStringDecoder decoder(*wide);
        return decoder.decode(QByteArrayView(bytes).sliced(skip));
    }
    const QByteArrayView body = startsWithBytes(bytes, {0xEF, 0xBB, 0xBF})
        ? QByteArrayView(bytes).sliced(3)
        : QByteArrayView(bytes);
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8.decode(body);
    const bool validUtf8 = !utf8.hasError();
    // The server's word on the charset comes before the document's own.
    const QByteArray label
        = charset.isEmpty() ? declaredEncoding(bytes) : charset.trimmed().toLower();
    if (label.isEmpty())
        return validUtf8 ? text : TextCodec::decodeWindows1252(body);
    if (label == "utf-8" || label == "utf8")
        return text; // invalid sequences become replacement characters
    if (isWindows1252Label(label))
        return validUtf8 ? text : TextCodec::decodeWindows1252(body);
    if (validUtf8)
        return text; // a legacy label on plain ASCII or UTF-8 text
    if (std::optional<QString> legacy = TextCodec::decodeNamed(body, label, nullptr))
        return *std::move(legacy);
    return TextCodec::decodeWindows1252(body); // a name that no decoder knows
}

bool FeedDocument::setContent(const QByteArray &bytes, FeedError *error, const QByteArray &charset)
{
    m_dom.clear();
    *error = FeedError();
    if (isTooLarge(bytes.size())) {
        *error = FeedError::tooLarge();
        error->line = 0;
        return false;
    }
    QString text = decode(bytes, charset);

    // A byte-order mark and blank lines before the declaration are skipped; line
    // numbers still count from the first line of the original.
    qsizetype start = 0;
    while (start < text.size() && (text.at(start).isSpace() || text.at(start) == u'\xFEFF'))
        ++start;
    const int skippedLines = countLines(QStringView(text).left(start));
    if (start > 0)
        text.remove(0, start);

    if (const int line = entityDeclarationLine(text)) {
        error->problem = FeedError::Problem::EntityDeclaration;
        error->reason = uiText(2094);
        error->line = line + skippedLines;
        return false;
    }

    // The document parser takes time that grows with the square of the nesting depth,
    // and memory of some hundred bytes per element.
    if (!checkStructure(text, error)) {
        error->line += skippedLines;
        return false;
    }

    QString message;
    int line = 0;
    int column = 0;
    bool parsed = m_dom.setContent(text, true, &message, &line, &column);
    if (!parsed && message.startsWith(u"Namespace prefix")) {
        // A prefix used without declaration (common in podcast feeds) is read as
        // part of the name, as in a reader without namespaces.
        QString plainMessage;
        parsed = m_dom.setContent(text, false, &plainMessage, &line, &column);
        if (!parsed)
            message = plainMessage;
    }
    if (!parsed) {
        m_dom.clear();
        error->problem = FeedError::Problem::Malformed;
        error->reason = message;
        error->line = line + skippedLines;
        return false;
    }
    return true;
}

FeedError FeedError::tooLarge()
{
    return {uiText(2091).arg(FeedDocument::MaxBytes >> 20), 0, Problem::TooLarge};
}
