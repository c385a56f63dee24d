#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

// Pages the program builds itself (feed pages and the like), handed to the engine
// through the program's own scheme: vantrell://page/<id>. Recent pages stay
// available so that Back and Reload find them again; the oldest go first once the
// kept pages pass a size budget.
class GeneratedPages final
{
public:
    static constexpr qsizetype BudgetBytes = 64 * 1024 * 1024;

    static GeneratedPages &instance();

    // Stores the page and returns its address.
    QString add(const QByteArray &html);
    // The page of an address's id; empty once it has been dropped.
    QByteArray page(const QString &id) const;

private:
    QHash<QString, QByteArray> m_pages;
    QList<QString> m_order;
    qsizetype m_bytes = 0;
    quint64 m_next = 0;
};
