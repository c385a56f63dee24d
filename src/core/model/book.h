#pragma once

#include "core/model/thema.h"
#include "core/records/archivefiles.h"
#include "core/records/keyedlist.h"

#include <QStringList>

// The bookmark archive: the folders, in the order of the index file "Book.bkm" in the
// data folder, and the counters that hand out folder numbers.
class Book final
{
public:
    static constexpr int RecordLength = 2291;

    explicit Book(QString dataFolder);

    KeyedList<Thema> colThema;
    qint16 ItCounter = 0;
    qint32 SequenzMax = 0;
    bool IsEdit = false;

    const QString &dataFolder() const { return m_dataFolder; }
    QString indexPath() const;

    // Reads the index (a missing one is created empty); true when it named at least one
    // folder. No folder's bookmarks are read. lastOutcome() tells whether the file had
    // to be moved aside or could not be read.
    bool LoadAllThema();
    // Rewrites the index, renumbering the folders from 1, and saves every edited
    // folder. False when a file could not be written; lastOutcome() names it.
    bool SaveAllThema();
    // SequenzMax + 1, which becomes the new SequenzMax.
    qint32 GetNewKey();
    // Removes the folder at a position from 1, deletes its file in the data folder
    // and saves the archive.
    bool DeleteThema(qint16 index);

    static QString folderKey(qint16 nr);
    // The folder with a given name (exact match), or nullptr.
    Thema *folderNamed(const QString &name);
    qsizetype indexOfFolderNamed(const QString &name) const;

    // Loads a folder's bookmarks when needed; a moved-aside file is remembered in
    // movedAsideFiles().
    FileOutcome ensureLoaded(Thema &folder);

    // The outcome of the last load or save of a file that went wrong, if any.
    const FileOutcome &lastOutcome() const { return m_outcomes.last; }
    // Every invalid file moved aside since the archive was created, for the UI to show.
    const QStringList &movedAsideFiles() const { return m_outcomes.movedAside; }

    static QByteArray encodeRecord(const Thema &folder, qint32 number);

private:
    QString m_dataFolder;
    FileOutcomeLog m_outcomes;
};
