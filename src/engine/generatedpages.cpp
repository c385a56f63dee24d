#include "engine/generatedpages.h"

GeneratedPages &GeneratedPages::instance()
{
    static GeneratedPages pages;
    return pages;
}

QString GeneratedPages::add(const QByteArray &html)
{
    const QString id = QString::number(++m_next);
    m_pages.insert(id, html);
    m_order.append(id);
    m_bytes += html.size();
    // The newest page is always kept, however large.
    while (m_bytes > BudgetBytes && m_order.size() > 1)
        m_bytes -= m_pages.take(m_order.takeFirst()).size();
    return QStringLiteral("vantrell://page/") + id;
}

QByteArray GeneratedPages::page(const QString &id) const
{
    return m_pages.value(id);
}
