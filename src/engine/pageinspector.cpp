#include "engine/pageinspector.h"

#include "engine/pageview.h"

#include <QVariant>

namespace {

// Pictures of the document and its same-origin frames. Background images count only on
// elements that are rendered.
const QString PicturesScript = QStringLiteral(R"js((function () {
const out = {html: false, foreign: 0, items: []};
if (String(document.contentType || '').indexOf('html') < 0) return out;
out.html = true;
function walk(doc) {
  const base = String(doc.baseURI);
  const view = doc.defaultView;
  for (const m of doc.getElementsByTagName('img')) {
    const inPicture = m.parentElement && m.parentElement.tagName === 'PICTURE';
    out.items.push([inPicture ? 1 : 0, m.getAttribute('src') === null ? '' : String(m.src),
      m.getAttribute('srcset') || '', String(m.currentSrc || ''), base,
      m.getAttribute('alt') || '', m.naturalWidth || 0, m.naturalHeight || 0]);
  }
  for (const s of doc.querySelectorAll('picture > source[srcset]'))
    out.items.push([1, '', s.getAttribute('srcset'), '', base, '', 0, 0]);
  for (const i of doc.querySelectorAll('input[type=image i][src]'))
    out.items.push([2, String(i.src), '', '', base, i.getAttribute('alt') || '', 0, 0]);
  if (view) {
    for (const e of doc.getElementsByTagName('*')) {
      const style = view.getComputedStyle(e);
      const image = style.backgroundImage;
      if (image && image.indexOf('url(') >= 0 && style.visibility !== 'hidden'
          && e.getClientRects().length > 0)
        out.items.push([3, image, '', '', base, '', 0, 0]);
    }
  }
  for (const f of doc.querySelectorAll('iframe, frame')) {
    let inner = null;
    try { inner = f.contentDocument; } catch (e) {}
    if (inner && inner.documentElement) walk(inner); else out.foreign++;
  }
}
walk(document);
return out;
})())js");

const QString StructureScript = QStringLiteral(R"js((function () {
const d = document;
const out = {html: false};
if (String(d.contentType || '').indexOf('html') < 0) return out;
const cut = (s, n) => String(s || '').replace(/\s+/g, ' ').trim().slice(0, n || 300);
out.html = true;
out.url = String(d.URL);
out.title = cut(d.title);
out.elements = d.getElementsByTagName('*').length;
out.links = d.links.length;
out.headings = [];
for (const h of d.querySelectorAll('h1, h2, h3, h4, h5, h6'))
  out.headings.push([Number(h.tagName.charAt(1)), cut(h.textContent)]);
out.frames = [];
(function frames(doc, depth) {
  for (const f of doc.querySelectorAll('iframe, frame')) {
    let inner = null;
    try { inner = f.contentDocument; } catch (e) {}
    out.frames.push([String(f.src || ''), f.getAttribute('name') || '', inner ? cut(inner.title) : '',
      inner ? 1 : 0, depth]);
    if (inner) frames(inner, depth + 1);
  }
})(d, 0);
out.forms = [];
for (const f of d.forms) {
  const fields = [];
  for (const e of f.elements) {
    const tag = e.tagName.toLowerCase();
    const type = tag === 'input' ? String(e.getAttribute('type') || 'text').toLowerCase() : tag;
    const label = e.labels && e.labels.length ? e.labels[0].textContent
      : (e.getAttribute('placeholder') || e.getAttribute('aria-label') || '');
    fields.push([type, e.getAttribute('name') || e.id || '', cut(label)]);
  }
  out.forms.push([String(f.action), String(f.method), f.getAttribute('name') || f.id || '', fields]);
}
out.scripts = [];
for (const s of d.scripts)
  out.scripts.push(s.hasAttribute('src') ? [String(s.src), 0, s.getAttribute('type') || '']
                                         : ['', s.text.length, s.getAttribute('type') || '']);
out.styles = [];
for (const s of d.querySelectorAll('link[rel~=stylesheet i], style'))
  out.styles.push(s.tagName === 'LINK' ? [String(s.href), 0, s.getAttribute('media') || '']
                                       : ['', s.textContent.length, s.getAttribute('media') || '']);
out.metas = [];
for (const m of d.getElementsByTagName('meta')) {
  let key = 'meta';
  let content = m.getAttribute('content') || '';
  for (const a of ['name', 'http-equiv', 'property', 'itemprop'])
    if (m.hasAttribute(a)) { key = a + '="' + m.getAttribute(a) + '"'; break; }
  if (m.hasAttribute('charset')) { key = 'charset'; content = m.getAttribute('charset'); }
  out.metas.push([cut(key), cut(content, 1000)]);
}
return out;
})())js");

QList<QVariantList> rows(const QVariant &value)
{
    QList<QVariantList> list;
    for (const QVariant &row : value.toList())
        list.append(row.toList());
    return list;
}

QString at(const QVariantList &row, int i)
{
    return row.value(i).toString();
}

QList<DocumentOutline::Resource> resources(const QVariant &value)
{
    QList<DocumentOutline::Resource> list;
    for (const QVariantList &row : rows(value))
        list.append({at(row, 0), row.value(1).toInt(), at(row, 2)});
    return list;
}

} // namespace

namespace PageInspector {

void pictures(PageView *view, const std::function<void(const PictureList::Page &)> &done)
{
    const QString url = view->url().toString();
    const QString title = view->title();
    view->runScript(PicturesScript, [done, url, title](const QVariant &value) {
        const QVariantMap map = value.toMap();
        PictureList::Page page;
        page.url = url;
        page.title = title;
        page.html = map.value(QStringLiteral("html")).toBool();
        page.unreadableFrames = map.value(QStringLiteral("foreign")).toInt();
        for (const QVariantList &row : rows(map.value(QStringLiteral("items")))) {
            PictureList::Element element;
            element.kind = PictureList::Element::Kind(qBound(0, row.value(0).toInt(), 3));
            element.src = at(row, 1);
            element.srcset = at(row, 2);
            element.current = at(row, 3);
            element.base = at(row, 4);
            element.alt = at(row, 5);
            element.width = row.value(6).toInt();
            element.height = row.value(7).toInt();
            page.elements.append(element);
        }
        done(page);
    });
}

void structure(PageView *view, const std::function<void(const DocumentOutline &)> &done)
{
    view->runScript(StructureScript, [done](const QVariant &value) {
        const QVariantMap map = value.toMap();
        DocumentOutline outline;
        outline.html = map.value(QStringLiteral("html")).toBool();
        outline.url = map.value(QStringLiteral("url")).toString();
        outline.title = map.value(QStringLiteral("title")).toString();
        outline.elements = map.value(QStringLiteral("elements")).toInt();
        outline.links = map.value(QStringLiteral("links")).toInt();
        for (const QVariantList &row : rows(map.value(QStringLiteral("headings"))))
            outline.headings.append({qBound(1, row.value(0).toInt(), 6), at(row, 1)});
        for (const QVariantList &row : rows(map.value(QStringLiteral("frames"))))
            outline.frames.append(
                {at(row, 0), at(row, 1), at(row, 2), row.value(3).toBool(), row.value(4).toInt()});
        for (const QVariantList &row : rows(map.value(QStringLiteral("forms")))) {
            DocumentOutline::Form form {at(row, 0), at(row, 1), at(row, 2), {}};
            for (const QVariantList &field : rows(row.value(3)))
                form.fields.append({at(field, 0), at(field, 1), at(field, 2)});
            outline.forms.append(form);
        }
        outline.scripts = resources(map.value(QStringLiteral("scripts")));
        outline.styleSheets = resources(map.value(QStringLiteral("styles")));
        for (const QVariantList &row : rows(map.value(QStringLiteral("metas"))))
            outline.metas.append({at(row, 0), at(row, 1)});
        done(outline);
    });
}

} // namespace PageInspector
