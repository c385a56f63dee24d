#include "core/inspection/structurepage.h"

#include "core/base/uitexts.h"
#include "core/inspection/inspectionhtml.h"

using namespace InspectionHtml;

namespace StructurePage {

namespace {
constexpr int MaxEntries = 5000;

QString section(int textId, qsizetype count)
{
    return u"<h2>" + text(uiText(textId)) + u" (" + QString::number(count) + u")</h2>\n";
}

QString none()
{
    return u"<p class=\"note\">" + text(uiText(2570)) + u"</p>\n";
}

QString headingTree(const QList<DocumentOutline::Heading> &headings)
{
    const QList<int> depths = headingDepths(headings);
    const int shown = qMin(int(headings.size()), MaxEntries);
    QString out;
    int open = 0; // lists open; a deeper heading opens its list inside the open item
    for (int i = 0; i < shown; ++i) {
        const int depth = depths.at(i) + 1;
        if (depth > open) {
            for (; open < depth; ++open)
                out += u"<ul>";
        } else {
            out += u"</li>";
            for (; open > depth; --open)
                out += u"</ul></li>";
        }
        const DocumentOutline::Heading &heading = headings.at(i);
        out += u"<li><span class=\"lvl\">H" + QString::number(heading.level) + u"</span> "
            + (heading.text.isEmpty() ? text(uiText(2576)) : text(heading.text)) + u'\n';
    }
    if (open > 0) {
        out += u"</li>";
        for (; open > 1; --open)
            out += u"</ul></li>";
        out += u"</ul>\n";
    }
    return out + moreNote(int(headings.size()), shown);
}

QString frameList(const QList<DocumentOutline::Frame> &frames)
{
    QString out = QStringLiteral("<ul>");
    const int shown = qMin(int(frames.size()), MaxEntries);
    for (int i = 0; i < shown; ++i) {
        const DocumentOutline::Frame &frame = frames.at(i);
        out += u"<li style=\"margin-left:" + QString::number(qBound(0, frame.depth, 20) * 20)
            + u"px\">" + link(frame.address);
        if (!frame.name.isEmpty())
            out += u" – " + text(frame.name);
        if (!frame.readable)
            out += u" <span class=\"note\">" + text(uiText(2572)) + u"</span>";
        else if (!frame.title.isEmpty())
            out += u" – <i>" + text(frame.title) + u"</i>";
        out += u"</li>\n";
    }
    return out + u"</ul>\n" + moreNote(int(frames.size()), shown);
}

QString formList(const QList<DocumentOutline::Form> &forms)
{
    QString out;
    const int shown = qMin(int(forms.size()), MaxEntries);
    for (int i = 0; i < shown; ++i) {
        const DocumentOutline::Form &form = forms.at(i);
        out += u"<p><b>" + text(form.name.isEmpty() ? QString::number(i + 1) : form.name)
            + u"</b> – " + text(uiText(2573).arg(form.action, form.method.toUpper())) + u"</p>\n";
        if (form.fields.isEmpty())
            continue;
        out += u"<table><tr><th>" + text(uiText(2577)) + u"</th><th>" + text(uiText(2578))
            + u"</th><th>" + text(uiText(2579)) + u"</th></tr>\n";
        const int fields = qMin(int(form.fields.size()), MaxEntries);
        for (int f = 0; f < fields; ++f) {
            const DocumentOutline::Field &field = form.fields.at(f);
            out += u"<tr><td>" + text(field.type) + u"</td><td>" + text(field.name) + u"</td><td>"
                + text(field.label) + u"</td></tr>\n";
        }
        out += u"</table>\n" + moreNote(int(form.fields.size()), fields);
    }
    return out + moreNote(int(forms.size()), shown);
}

QString resourceList(const QList<DocumentOutline::Resource> &resources)
{
    QString out = QStringLiteral("<ul>");
    const int shown = qMin(int(resources.size()), MaxEntries);
    for (int i = 0; i < shown; ++i) {
        const DocumentOutline::Resource &resource = resources.at(i);
        out += u"<li>"
            + (resource.address.isEmpty() ? text(uiText(2571).arg(resource.inlineSize))
                                          : link(resource.address));
        if (!resource.type.isEmpty())
            out += u" <span class=\"note\">" + text(resource.type) + u"</span>";
        out += u"</li>\n";
    }
    return out + u"</ul>\n" + moreNote(int(resources.size()), shown);
}

QString metaTable(const QList<DocumentOutline::Meta> &metas)
{
    QString out = QStringLiteral("<table>");
    const int shown = qMin(int(metas.size()), MaxEntries);
    for (int i = 0; i < shown; ++i)
        out += u"<tr><td>" + text(metas.at(i).key) + u"</td><td>" + text(metas.at(i).content, 500)
            + u"</td></tr>\n";
    return out + u"</table>\n" + moreNote(int(metas.size()), shown);
}
} // namespace

QList<int> headingDepths(const QList<DocumentOutline::Heading> &headings)
{
    QList<int> depths;
    QList<int> open; // ranks of the headings the next one may nest under
    for (const DocumentOutline::Heading &heading : headings) {
        while (!open.isEmpty() && open.last() >= heading.level)
            open.removeLast();
        depths.append(int(open.size()));
        open.append(heading.level);
    }
    return depths;
}

QString render(const DocumentOutline &outline)
{
    const QString heading = uiText(2560).arg(outline.title.isEmpty() ? outline.url : outline.title);
    QString body = u"<h1>" + text(heading) + u"</h1>\n<p>" + link(outline.url) + u"</p>\n<p><b>"
        + text(uiText(2561)) + u":</b> "
        + (outline.title.isEmpty() ? text(uiText(2576)) : text(outline.title)) + u"<br><b>"
        + text(uiText(2562)) + u":</b> " + QString::number(outline.elements) + u"<br><b>"
        + text(uiText(2566)) + u":</b> " + QString::number(outline.links) + u"</p>\n";
    body += section(2563, outline.headings.size())
        + (outline.headings.isEmpty() ? none() : headingTree(outline.headings));
    body += section(2564, outline.frames.size())
        + (outline.frames.isEmpty() ? none() : frameList(outline.frames));
    body += section(2565, outline.forms.size())
        + (outline.forms.isEmpty() ? none() : formList(outline.forms));
    body += section(2567, outline.scripts.size())
        + (outline.scripts.isEmpty() ? none() : resourceList(outline.scripts));
    body += section(2568, outline.styleSheets.size())
        + (outline.styleSheets.isEmpty() ? none() : resourceList(outline.styleSheets));
    body += section(2569, outline.metas.size())
        + (outline.metas.isEmpty() ? none() : metaTable(outline.metas));
    return page(heading, body);
}

} // namespace StructurePage
