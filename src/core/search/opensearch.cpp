#include "core/search/opensearch.h"

#include "core/base/uitexts.h"

#include <QRegularExpression>
#include <QUrl>
#include <QXmlStreamReader>

namespace OpenSearch {

namespace {
// Fills the parameters other than the term: {name?} is optional and left empty.
QString filledTemplate(QString address)
{
    static const QRegularExpression parameter(QStringLiteral("\\{([^{}?]*)(\\?\?)\\}"));
    QString result;
    qsizetype from = 0;
    QRegularExpressionMatchIterator it = parameter.globalMatch(address);
    while (it.hasNext()) {
        const QRegularExpressionMatch match = it.next();
        result += address.mid(from, match.capturedStart() - from);
        from = match.capturedEnd();
        const QString name = match.captured(1).section(u':', -1);
        if (name == u"searchTerms")
            result += QStringLiteral("%s");
        else if (!match.captured(2).isEmpty())
            continue;
        else if (name == u"inputEncoding" || name == u"outputEncoding")
            result += QStringLiteral("UTF-8");
        else if (name == u"language")
            result += u'*';
        else if (name == u"startIndex" || name == u"startPage")
            result += u'1';
        else if (name == u"count")
            result += QStringLiteral("20");
    }
    return result + address.mid(from);
}
} // namespace

bool isDescriptionType(const QString &type)
{
    return type.trimmed().compare(
               QStringLiteral("application/opensearchdescription+xml"), Qt::CaseInsensitive)
        == 0;
}

std::optional<SearchEngine> parse(const QByteArray &bytes, QString *error)
{
    if (bytes.size() > MaxBytes) {
        *error = uiText(2611);
        return std::nullopt;
    }
    QXmlStreamReader xml(bytes);
    SearchEngine engine;
    engine.added = true;
    engine.group = uiText(2612);
    bool root = true;
    QString address;
    while (!xml.atEnd() && xml.readNext() != QXmlStreamReader::Invalid) {
        if (xml.tokenType() == QXmlStreamReader::DTD) {
            // No entity of a document from the web is expanded.
            *error = uiText(2613);
            return std::nullopt;
        }
        if (!xml.isStartElement())
            continue;
        if (std::exchange(root, false) && xml.name() != u"OpenSearchDescription") {
            *error = uiText(2613);
            return std::nullopt;
        }
        if (xml.name() == u"ShortName" && engine.machine.isEmpty()) {
            engine.machine = xml.readElementText().simplified().left(200);
        } else if (xml.name() == u"Url" && address.isEmpty()) {
            const auto attributes = xml.attributes();
            const QString method = attributes.value(QLatin1String("method")).toString().toLower();
            const QString candidate
                = attributes.value(QLatin1String("template")).toString().trimmed();
            if (attributes.value(QLatin1String("type"))
                        .trimmed()
                        .compare(u"text/html", Qt::CaseInsensitive)
                    == 0
                && (method.isEmpty() || method == u"get")
                && candidate.contains(QStringLiteral("{searchTerms}")))
                address = filledTemplate(candidate);
        }
    }
    if (xml.hasError()) {
        *error = xml.errorString();
        return std::nullopt;
    }
    const QUrl url(address.replace(QStringLiteral("%s"), QStringLiteral("vantrell-search-term")));
    if (engine.machine.isEmpty() || address.isEmpty() || !url.isValid() || url.host().isEmpty()
        || !(url.scheme() == u"http" || url.scheme() == u"https")) {
        *error = uiText(2613);
        return std::nullopt;
    }
    engine.address = url.toString(QUrl::FullyEncoded)
                         .replace(QStringLiteral("vantrell-search-term"), QStringLiteral("%s"));
    return engine;
}

} // namespace OpenSearch
