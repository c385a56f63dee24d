#include "recordfile.h"

#include "app/clock.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace RecordFile {

ReadResult readAll(const QString &path, int recordLength, Missing missing)
{
    ReadResult result;
    QFile file(path);
    if (!file.exists()) {
        if (missing == Missing::CreateEmpty && !writeBytes(path, {}, &result.error))
            return result;
        return result;
    }
    if (!file.open(QIODevice::ReadOnly)) {
        result.error = file.errorString();
        return result;
    }
    if (file.size() % recordLength != 0) {
        file.close();
        result.movedAsidePath = moveAside(path);
        if (result.movedAsidePath.isEmpty())
            result.error = QStringLiteral("cannot move %1 aside").arg(path);
        return result;
    }
    const QByteArray all = file.readAll();
    if (all.size() != file.size()) {
        result.error = file.errorString();
        return result;
    }
    result.records.reserve(all.size() / recordLength);
    for (qsizetype at = 0; at < all.size(); at += recordLength)
        result.records.append(all.mid(at, recordLength));
    return result;
}

bool writeBytes(const QString &path, const QByteArray &bytes, QString *error)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        if (error)
            *error = file.errorString();
        return false;
    }
    return true;
}

bool writeAll(const QString &path, const QList<QByteArray> &records, QString *error)
{
    QByteArray bytes;
    qsizetype total = 0;
    for (const QByteArray &record : records)
        total += record.size();
    bytes.reserve(total);
    for (const QByteArray &record : records)
        bytes.append(record);
    return writeBytes(path, bytes, error);
}

QString moveAside(const QString &path)
{
    const QString stamp = Clock::now().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    QString target = path + QStringLiteral(".bad-") + stamp;
    for (int n = 2; QFileInfo::exists(target); ++n)
        target = path + QStringLiteral(".bad-") + stamp + u'-' + QString::number(n);
    return QFile::rename(path, target) ? target : QString();
}

} // namespace RecordFile
