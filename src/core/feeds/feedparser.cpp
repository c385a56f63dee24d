#include "core/feeds/feedparser.h"

#include "core/feeds/feeddocument.h"

#include <QTextStream>

namespace {

const QString rdfNamespace = QStringLiteral("http://www.w3.org/1999/02/22-rdf-syntax-ns#");
const QString atomNamespace = QStringLiteral("http://www.w3.org/2005/Atom");
const QString atom03Namespace = QStringLiteral("http://purl.org/atom/ns#");

QString localPart(const QString &name)
{
    const qsizetype colon = name.indexOf(u':');
    return colon < 0 ? name : name.mid(colon + 1);
}

QDomElement literalChild(const QDomNode &parent, const QString &name)
{
    for (QDomElement e = parent.firstChildElement(); !e.isNull(); e = e.nextSiblingElement()) {
        if (e.nodeName() == name)
            return e;
    }
    return {};
}

QString prefixOf(const QString &name)
{
    const qsizetype colon = name.indexOf(u':');
    return colon < 0 ? QString() : name.left(colon);
}

// Whether `e` stands for a name when no child has that literal name: same local name,
// and, when `parentPrefix` is given, the parent's prefix (the feed's own vocabulary).
bool matchesLocally(const QDomElement &e, const QString &local, const QString *parentPrefix)
{
    const QString nodeName = e.nodeName();
    return localPart(nodeName) == local && (!parentPrefix || prefixOf(nodeName) == *parentPrefix);
}

// The child elements named `name`, in document order; when there are none, those with
// that local name under the parent's prefix, then those with that local name under any.
QList<QDomElement> children(const QDomNode &parent, const QString &name, bool firstOnly = false)
{
    QList<QDomElement> found;
    for (QDomElement e = parent.firstChildElement(); !e.isNull(); e = e.nextSiblingElement()) {
        if (e.nodeName() == name) {
            found.append(e);
            if (firstOnly)
                return found;
        }
    }
    if (!found.isEmpty())
        return found;
    const QString local = localPart(name);
    const QString parentPrefix = prefixOf(parent.nodeName());
    for (const QString *prefix : {&parentPrefix, static_cast<const QString *>(nullptr)}) {
        for (QDomElement e = parent.firstChildElement(); !e.isNull(); e = e.nextSiblingElement()) {
            if (matchesLocally(e, local, prefix)) {
                found.append(e);
                if (firstOnly)
                    return found;
            }
        }
        if (!found.isEmpty())
            return found;
    }
    return found;
}

// The first child element named `name`, found as by children().
QDomElement child(const QDomNode &parent, const QString &name)
{
    const QList<QDomElement> found = children(parent, name, true);
    return found.isEmpty() ? QDomElement() : found.constFirst();
}

QString trimmedText(const QDomElement &element)
{
    return element.isNull() ? QString() : element.text().trimmed();
}

// Atom content of type "xhtml" holds markup as XML elements; it is kept as markup.
QString atomText(const QDomElement &element)
{
    if (element.isNull())
        return {};
    if (element.attribute(QStringLiteral("type")) != u"xhtml")
        return element.text().trimmed();
    QString markup;
    QTextStream stream(&markup);
    for (QDomNode node = element.firstChild(); !node.isNull(); node = node.nextSibling())
        node.save(stream, -1);
    stream.flush();
    return markup.trimmed();
}

QString atomLink(const QDomElement &entry)
{
    QString fallback;
    const QList<QDomElement> links = children(entry, QStringLiteral("link"));
    for (const QDomElement &link : links) {
        QString href = link.attribute(QStringLiteral("href"));
        if (href.isEmpty())
            href = link.text();
        href = href.trimmed();
        if (href.isEmpty())
            continue;
        const QString rel = link.attribute(QStringLiteral("rel"));
        if (rel.isEmpty() || rel == u"alternate")
            return href;
        if (fallback.isEmpty())
            fallback = href;
    }
    return fallback;
}

void readItems(const QList<QDomElement> &elements, Feed *feed, bool atom)
{
    for (const QDomElement &element : elements) {
        if (feed->items.size() >= FeedParser::MaxItems)
            break;
        FeedItem item;
        if (atom) {
            item.title = atomText(child(element, QStringLiteral("title")));
            QDomElement content = child(element, QStringLiteral("content"));
            if (content.isNull() || content.text().trimmed().isEmpty())
                content = child(element, QStringLiteral("summary"));
            item.description = atomText(content);
            item.link = atomLink(element);
        } else {
            item.title = trimmedText(child(element, QStringLiteral("title")));
            item.description = trimmedText(child(element, QStringLiteral("description")));
            if (item.description.isEmpty())
                item.description
                    = trimmedText(literalChild(element, QStringLiteral("content:encoded")));
            item.link = trimmedText(child(element, QStringLiteral("link")));
        }
        feed->items.append(item);
    }
}

std::optional<Feed::Format> formatOf(const QDomElement &root)
{
    const QString name = root.nodeName();
    if (name == u"rss")
        return Feed::Format::Rss;
    if (name == u"rdf:RDF")
        return Feed::Format::Rdf;
    if (name == u"feed")
        return Feed::Format::Atom;
    const QString local = localPart(name);
    if (local == u"rss")
        return Feed::Format::Rss;
    if (local == u"RDF" && root.namespaceURI() == rdfNamespace)
        return Feed::Format::Rdf;
    if (local == u"feed"
        && (root.namespaceURI() == atomNamespace || root.namespaceURI() == atom03Namespace))
        return Feed::Format::Atom;
    return std::nullopt;
}

} // namespace

QString Feed::formatTag(Format format)
{
    switch (format) {
    case Format::Rss:
        return QStringLiteral("[RSS]");
    case Format::Rdf:
        return QStringLiteral("[RDF]");
    case Format::Atom:
        return QStringLiteral("[ATOM]");
    }
    return {};
}

FeedParseResult FeedParser::parse(const QByteArray &bytes, const QByteArray &charset)
{
    FeedDocument document;
    FeedParseResult result;
    if (!document.setContent(bytes, &result.error, charset)) {
        result.status = FeedParseResult::Status::XmlError;
        return result;
    }
    return read(document.dom());
}

FeedParseResult FeedParser::read(const QDomDocument &document)
{
    FeedParseResult result;
    const QDomElement root = document.documentElement();
    const std::optional<Feed::Format> format = formatOf(root);
    if (!format) {
        result.status = FeedParseResult::Status::UnknownType;
        return result;
    }
    result.status = FeedParseResult::Status::Parsed;
    Feed &feed = result.feed;
    feed.format = *format;

    switch (*format) {
    case Feed::Format::Rss: {
        const QDomElement channel = child(root, QStringLiteral("channel"));
        feed.title = trimmedText(child(channel, QStringLiteral("title")));
        feed.imageUrl
            = trimmedText(child(child(channel, QStringLiteral("image")), QStringLiteral("url")));
        readItems(children(channel, QStringLiteral("item")), &feed, false);
        break;
    }
    case Feed::Format::Rdf: {
        const QDomElement channel = child(root, QStringLiteral("channel"));
        feed.title = trimmedText(child(channel, QStringLiteral("title")));
        const QDomElement image = child(channel, QStringLiteral("image"));
        feed.imageUrl = image
                            .attributeNS(rdfNamespace, QStringLiteral("resource"),
                                image.attribute(QStringLiteral("rdf:resource")))
                            .trimmed();
        if (feed.imageUrl.isEmpty())
            feed.imageUrl
                = trimmedText(child(child(root, QStringLiteral("image")), QStringLiteral("url")));
        readItems(children(root, QStringLiteral("item")), &feed, false);
        break;
    }
    case Feed::Format::Atom:
        feed.title = atomText(child(root, QStringLiteral("title")));
        readItems(children(root, QStringLiteral("entry")), &feed, true);
        break;
    }
    return result;
}
