#include "core/search/searchformfile.h"

#include "core/base/uitexts.h"
#include "core/html/htmlsource.h"
#include "core/html/htmltext.h"
#include "core/html/parsearena.h"

#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <gumbo.h>
#include <memory>
#include <optional>
#include <vector>

namespace SearchFormFile {

namespace {
bool isElement(const GumboNode *node)
{
    return node->type == GUMBO_NODE_ELEMENT || node->type == GUMBO_NODE_TEMPLATE;
}

bool hasTag(const GumboNode *node, GumboTag tag)
{
    return isElement(node) && node->v.element.tag == tag;
}

const GumboNode *childAt(const GumboNode *node, unsigned int i)
{
    return static_cast<const GumboNode *>(node->v.element.children.data[i]);
}

QString attribute(const GumboNode *element, const char *name)
{
    const GumboAttribute *attr = gumbo_get_attribute(&element->v.element.attributes, name);
    return attr ? QString::fromUtf8(attr->value) : QString();
}

bool hasAttribute(const GumboNode *element, const char *name)
{
    return gumbo_get_attribute(&element->v.element.attributes, name) != nullptr;
}

// The legend of a fieldset is its first element child when that is a legend.
QString legendOf(const GumboNode *fieldset)
{
    for (unsigned int i = 0; i < fieldset->v.element.children.length; ++i) {
        const GumboNode *child = childAt(fieldset, i);
        if (isElement(child))
            return hasTag(child, GUMBO_TAG_LEGEND) ? HtmlText::innerText(child).simplified()
                                                   : QString();
    }
    return {};
}

// The elements of a form's subtree, in page order.
std::vector<const GumboNode *> elementsBelow(const GumboNode *root)
{
    std::vector<const GumboNode *> found;
    std::vector<std::pair<const GumboNode *, unsigned int>> stack {{root, 0}};
    while (!stack.empty()) {
        auto &[node, next] = stack.back();
        if (next >= node->v.element.children.length) {
            stack.pop_back();
            continue;
        }
        const GumboNode *child = childAt(node, next++);
        if (!isElement(child))
            continue;
        found.push_back(child);
        stack.emplace_back(child, 0);
    }
    return found;
}

QByteArray pair(const QString &name, const QString &value)
{
    return QUrl::toPercentEncoding(name) + '=' + QUrl::toPercentEncoding(value);
}

// The engine a form describes, or nothing when the form does not make one. As a
// browser submits a get form, the form's fields replace the query of its action.
std::optional<SearchEngine> engineOf(const GumboNode *form, const QUrl &base)
{
    SearchEngine engine;
    engine.machine = attribute(form, "title").simplified().left(200);
    const QString method = attribute(form, "method").trimmed().toLower();
    if (engine.machine.isEmpty() || !(method.isEmpty() || method == u"get"))
        return std::nullopt;
    const QUrl action = base.resolved(QUrl(attribute(form, "action").trimmed()));
    if (!action.isValid() || action.host().isEmpty()
        || !(action.scheme() == u"http" || action.scheme() == u"https"))
        return std::nullopt;
    QList<QByteArray> fields;
    bool hasTerm = false;
    for (const GumboNode *element : elementsBelow(form)) {
        if (!hasTag(element, GUMBO_TAG_INPUT))
            continue;
        const QString name = attribute(element, "name");
        const QString type = attribute(element, "type").trimmed().toLower();
        if (name.isEmpty())
            continue;
        if (type == u"hidden") {
            fields.append(pair(name, attribute(element, "value")));
        } else if (!hasTerm && (type.isEmpty() || type == u"text" || type == u"search")) {
            fields.append(QUrl::toPercentEncoding(name) + "=%s");
            hasTerm = true;
        }
    }
    if (!hasTerm)
        return std::nullopt;
    engine.address = action.toString(QUrl::FullyEncoded | QUrl::RemoveQuery | QUrl::RemoveFragment)
        + u'?' + QString::fromLatin1(fields.join('&'));
    engine.checked = hasAttribute(form, "data-checked");
    return engine;
}

struct GumboDeleter
{
    const GumboOptions *options;
    void operator()(GumboOutput *output) const { gumbo_destroy_output(options, output); }
};
} // namespace

QString Result::message(const QString &path) const
{
    switch (status) {
    case Read:
        return {};
    case Missing:
        return uiText(1510) + u' ' + path;
    case Unreadable:
        return uiText(2600).arg(path, error);
    case TooLarge:
        return uiText(2601).arg(path);
    case TooDeep:
        return uiText(2602).arg(path);
    case NoEngines:
        return uiText(2603).arg(path);
    }
    return {};
}

Result parse(const QByteArray &bytes, const QUrl &base, const Limits &limits)
{
    Result result;
    switch (HtmlSource::fits(bytes, limits.maxFileBytes, limits.maxElements, limits.maxNesting)) {
    case HtmlSource::Fit::TooLarge:
        result.status = Result::TooLarge;
        return result;
    case HtmlSource::Fit::TooDeep:
        result.status = Result::TooDeep;
        return result;
    case HtmlSource::Fit::Fits:
        break;
    }
    QString encoding;
    const QByteArray utf8 = HtmlSource::toUtf8(bytes, &encoding);
    // The arena takes back the few bytes the parser loses on some broken markup.
    ParseArena arena;
    GumboOptions options = kGumboDefaultOptions;
    options.max_errors = 0;
    options.allocator = &ParseArena::allocateIn;
    options.deallocator = &ParseArena::deallocateIn;
    options.userdata = &arena;
    const std::unique_ptr<GumboOutput, GumboDeleter> output(
        gumbo_parse_with_options(&options, utf8.constData(), size_t(utf8.size())),
        GumboDeleter {&options});
    if (!output || !output->root || !isElement(output->root)) {
        result.status = Result::NoEngines;
        return result;
    }

    // Walks the tree once; each entry carries the group of the fieldset around it.
    QSet<QString> taken;
    struct Frame
    {
        const GumboNode *node;
        unsigned int next;
        QString group;
    };
    std::vector<Frame> stack {{output->root, 0, QString()}};
    while (!stack.empty()) {
        Frame &frame = stack.back();
        if (frame.next >= frame.node->v.element.children.length) {
            stack.pop_back();
            continue;
        }
        const GumboNode *child = childAt(frame.node, frame.next++);
        if (!isElement(child))
            continue;
        if (hasTag(child, GUMBO_TAG_FORM)) {
            std::optional<SearchEngine> engine = engineOf(child, base);
            if (!engine || taken.contains(engine->machine)
                || result.engines.size() >= limits.maxEngines) {
                ++result.skipped;
                continue;
            }
            engine->group = frame.group.isEmpty() ? uiText(2604) : frame.group;
            taken.insert(engine->machine);
            result.engines.append(*engine);
            continue;
        }
        QString group = frame.group;
        if (hasTag(child, GUMBO_TAG_FIELDSET)) {
            const QString legend = legendOf(child);
            if (!legend.isEmpty())
                group = legend;
        }
        stack.push_back({child, 0, group});
    }
    if (result.engines.isEmpty())
        result.status = Result::NoEngines;
    return result;
}

Result readFile(const QString &path, const Limits &limits)
{
    Result result;
    const QFileInfo info(path);
    if (!info.exists()) {
        result.status = Result::Missing;
        return result;
    }
    QFile file(path);
    if (info.isDir() || !file.open(QIODevice::ReadOnly)) {
        result.status = Result::Unreadable;
        result.error = info.isDir() ? uiText(2605) : file.errorString();
        return result;
    }
    if (file.size() > limits.maxFileBytes) {
        result.status = Result::TooLarge;
        return result;
    }
    return parse(
        file.read(limits.maxFileBytes + 1), QUrl::fromLocalFile(info.absoluteFilePath()), limits);
}

} // namespace SearchFormFile
