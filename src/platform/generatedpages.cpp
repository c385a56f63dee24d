#include "generatedpages.h"

GeneratedPages &GeneratedPages::instance()
{
    static GeneratedPages pages;
    return pages;
}

QString GeneratedPages::add(const QByteArray &html)
{
    const QString id = QString::number(++m_next);
    m_pages.insert(id, html);
    return QStringLiteral("vantrell://page/") + id;
}

QByteArray GeneratedPages::take(const QString &id)
{
    return m_pages.take(id);
}
