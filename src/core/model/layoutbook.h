#pragma once

#include "core/model/layoutitem.h"

#include <QStringList>

// The archive of web layouts: the index "WLBook.vtp" in the data folder and one file
// of windows per layout. Unlike the bookmark archive, every layout's windows are read
// together with the index.
class LayoutBook final
{
public:
    static constexpr int RecordLength = 3370;

    explicit LayoutBook(QString dataFolder);

    QList<LayoutItem> colLayout;
    qint32 SequenzMax = 0;
    qint16 ItCounter = 0;
    bool IsEdit = false;

    const QString &dataFolder() const { return m_dataFolder; }
    QString indexPath() const;

    // True when the index named at least one layout; every layout's windows are read.
    bool LoadAllLayouts();
    // Rewrites the index and the window files of the edited layouts. False when a
    // file could not be written; lastOutcome() names it.
    bool SaveAllLayouts();
    qint32 GetNewKey();
    // Gives the layout its sequence number, name, description and file name; a
    // position below 1 appends it, otherwise it is inserted after that position.
    LayoutItem &AddLayout(
        LayoutItem item, const QString &name, const QString &info, qint32 position);
    bool IsEmpty() const { return colLayout.isEmpty(); }
    // Removes the layout at a position from 1, deletes its file in the data folder and
    // saves the archive.
    bool DeleteLayout(qsizetype index);
    // Rewrites the index and every layout's windows.
    bool UpdateAllLayouts();

    const FileOutcome &lastOutcome() const { return m_outcomes.last; }
    const QStringList &movedAsideFiles() const { return m_outcomes.movedAside; }

    static QByteArray encodeRecord(const LayoutItem &item, qint32 number);

private:
    QString m_dataFolder;
    FileOutcomeLog m_outcomes;
};
