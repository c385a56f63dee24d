#pragma once

#include "core/base/feedmark.h"
#include "core/records/archivefiles.h"

#include <QString>

// One entry of a bookmark folder.
struct Bookmark
{
    qint16 Nr = 0;
    QString Titel;
    QString URL;
    QString Info; // may hold line breaks (CR LF)
    qint16 Order = 0; // display order of the tools pane, not stored
    qint16 Toolbar = ArchiveFiles::False;
    qint16 Adresszeile = ArchiveFiles::False;
};
