#pragma once

#include "core/records/archivefiles.h"

#include <QString>

// One browser window of a web layout. Geometry is in twips.
struct FensterInfo
{
    qint16 Nr = 0;
    QString Titel;
    QString URL;
    float x = 0;
    float y = 0;
    float Breite = 0;
    float Hoehe = 0;
    qint16 WindowState = 0; // 0 normal, 1 minimised, 2 maximised
    qint16 ToolbarVisible = ArchiveFiles::True;
    qint16 AdressbarVisible = ArchiveFiles::True;
};
