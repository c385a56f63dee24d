#include "core/records/recordfile.h"

#include "core/base/clock.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace RecordFile {

ReadStatus readEach(const QString &path, int recordLength, Missing missing,
    const std::function<bool(QByteArrayView record)> &take)
{
    ReadStatus result;
    QFile file(path);
    if (!file.exists()) {
        if (missing == Missing::CreateEmpty && !writeBytes(path, {}, &result.error))
            result.problem = FileOutcome::Problem::CannotWrite;
        return result;
    }
    // Unbuffered: the file is read in large pieces, and QFile's own buffer would only
    // add a copy.
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        result.error = file.errorString();
        result.problem = FileOutcome::Problem::CannotRead;
        return result;
    }
    if (file.size() % recordLength != 0) {
        file.close();
        result.movedAsidePath = moveAside(path);
        if (result.movedAsidePath.isEmpty()) {
            result.error = FileOutcome::cannotMoveAsideReason();
            result.problem = FileOutcome::Problem::CannotMoveAside;
        }
        return result;
    }
    // A quarter of a megabyte: few system calls, and still in the processor's own cache
    // when the records are decoded.
    const qsizetype perBlock = std::max<qsizetype>(1, (256 * 1024) / recordLength);
    QByteArray block(std::min<qint64>(perBlock * recordLength, file.size()), Qt::Uninitialized);
    for (qint64 left = file.size(); left > 0;) {
        const qint64 want = std::min<qint64>(left, block.size());
        if (file.read(block.data(), want) != want) {
            result.error = file.errorString();
            result.problem = FileOutcome::Problem::CannotRead;
            return result;
        }
        left -= want;
        for (qsizetype at = 0; at < want; at += recordLength) {
            if (!take(QByteArrayView(block.constData() + at, recordLength)))
                return result;
        }
    }
    return result;
}

ReadResult readAll(const QString &path, int recordLength, Missing missing)
{
    ReadResult result;
    static_cast<ReadStatus &>(result)
        = readEach(path, recordLength, missing, [&result](QByteArrayView record) {
              result.records.append(record.toByteArray());
              return true;
          });
    // A file that could not be read to its end gives no records at all.
    if (!result.ok())
        result.records.clear();
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
