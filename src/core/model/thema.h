#pragma once

#include "core/model/bookmark.h"
#include "core/records/archivefiles.h"
#include "core/records/keyedlist.h"

#include <optional>

// One folder of the bookmark archive. Its bookmarks live in a file of their own in
// the data folder and are read only when the folder is first needed.
class Thema final
{
public:
    static constexpr int RecordLength = 3368;

    explicit Thema(QString dataFolder);
    Thema(Thema &&) noexcept = default;
    Thema &operator=(Thema &&) noexcept = default;

    qint16 Nr = 0;
    qint32 Sequenz = 0;
    QString FileName;
    QString FileNameNew; // kept for the tools pane's editing commands, not stored
    qint16 Order = 0; // display order of the tools pane, not stored
    qint16 ItCounter = 0;
    bool IsEdit = false;
    // The bookmarks in file order; absent until loaded.
    std::optional<KeyedList<Bookmark>> colBookmark;

    const QString &DirName() const { return m_dirName; }
    // Renaming marks the folder as edited.
    void setDirName(const QString &name);
    // Sets the name as read from the index, without marking anything.
    void initDirName(const QString &name) { m_dirName = name; }

    // The key of a bookmark of this folder: ">" folder number "|" bookmark number.
    QString bookmarkKey(qint16 bookmarkNr) const;
    static QString bookmarkKey(qint16 folderNr, qint16 bookmarkNr);

    // Reads the folder's file into a new collection. With no record read, ItCounter
    // becomes 0 and an earlier collection stays.
    FileOutcome LoadBookmarks();
    // Loads the bookmarks when that has not happened yet.
    FileOutcome ensureLoaded();
    bool isLoaded() const { return colBookmark.has_value(); }

    // Rewrites the folder's file from the loaded collection, renumbering the records
    // from 1. A folder whose bookmarks were never loaded keeps its file as it is.
    FileOutcome SaveBookmarks();

    // The next free bookmark number (ItCounter + 1, which becomes the new ItCounter),
    // or 0 when the 16-bit numbers are used up.
    qint16 GetNewKey();

    // Appends a bookmark under its number; returns nullptr when the number is taken.
    Bookmark *addBookmark(Bookmark bookmark);

    // The full path of the folder's file, empty when its name is not a plain file name.
    QString filePath() const;
    const QString &dataFolder() const { return m_dataFolder; }

    static QByteArray encodeRecord(const Bookmark &bookmark, qint16 number);
    // Encodes into the RecordLength bytes at `out`.
    static void encodeRecordTo(char *out, const Bookmark &bookmark, qint16 number);
    static Bookmark decodeRecord(QByteArrayView record);

private:
    QString m_dataFolder;
    QString m_dirName;
};
