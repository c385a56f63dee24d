#pragma once

#include "core/model/fensterinfo.h"
#include "core/records/archivefiles.h"

#include <QList>

// One named web layout; its windows live in "WL" & Sequenz & ".nlt" in the data folder.
class LayoutItem final
{
public:
    static constexpr int RecordLength = 2615;

    LayoutItem() = default;
    explicit LayoutItem(QString dataFolder)
        : m_dataFolder(std::move(dataFolder))
    { }

    QString LayoutName;
    QString Info;
    qint32 Sequenz = 0;
    QString FileName;
    qint16 ItCounter = 0;
    bool IsEdit = false;
    QList<FensterInfo> colFensterInfo;

    void setDataFolder(const QString &folder) { m_dataFolder = folder; }
    const QString &dataFolder() const { return m_dataFolder; }
    QString filePath() const;
    static QString fileNameFor(qint32 sequenz);

    // Recomputes the file name from Sequenz and rewrites the file, windows numbered
    // from 1.
    FileOutcome SaveAllFensterInfos();
    // Reads the windows of the file; ItCounter becomes their number.
    FileOutcome LoadAllFensterInfos();

    static QByteArray encodeRecord(const FensterInfo &window, qint16 number);
    static FensterInfo decodeRecord(const QByteArray &record);

private:
    QString m_dataFolder;
};
