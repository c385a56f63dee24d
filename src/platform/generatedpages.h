#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

// Pages the program builds itself (feed pages and the like), handed to the engine
// through the program's own scheme: vantrell://page/<id>. A page is served once.
class GeneratedPages final
{
public:
    static GeneratedPages &instance();

    // Stores the page and returns its address.
    QString add(const QByteArray &html);
    QByteArray take(const QString &id);

private:
    QHash<QString, QByteArray> m_pages;
    quint64 m_next = 0;
};
