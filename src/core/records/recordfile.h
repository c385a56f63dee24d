#pragma once

#include "core/records/fileoutcome.h"

#include <QByteArray>
#include <QList>
#include <QString>

#include <functional>

// Whole-file access to fixed-length record files. Every rewrite is atomic; a file
// that cannot hold whole records is moved aside, never deleted.
namespace RecordFile {

enum class Missing { CreateEmpty, LeaveAbsent };

// What became of a file that was read.
struct ReadStatus
{
    // Set when the file was not a whole number of records and was moved aside.
    QString movedAsidePath;
    // Set when the file could not be opened or read.
    QString error;
    FileOutcome::Problem problem = FileOutcome::Problem::None;

    bool ok() const { return error.isEmpty(); }
    // The same as the outcome for the file at `path`.
    FileOutcome outcome(const QString &path) const
    {
        return {path, movedAsidePath, error, problem};
    }
};

// Reads a block of records at a time into one small buffer that is used again for the
// next block, and hands each record in file order to `take`, which returns false to
// read no further. A record's bytes are only valid during the call. A missing file is
// created empty (or left absent); a file that is not a whole number of records is moved
// aside and gives no record. When the file cannot be read to its end, records before
// the failure may already have been handed out.
ReadStatus readEach(const QString &path, int recordLength, Missing missing,
    const std::function<bool(QByteArrayView record)> &take);

struct ReadResult : ReadStatus
{
    QList<QByteArray> records;
};

// Every record of the file, each in bytes of its own, as readEach reads them.
ReadResult readAll(const QString &path, int recordLength, Missing missing = Missing::CreateEmpty);

// Writes the records in order, replacing the file atomically. Returns false and
// sets *error when the file could not be written; the old file then stays.
bool writeAll(const QString &path, const QList<QByteArray> &records, QString *error = nullptr);

// Atomically replaces the file with the given bytes.
bool writeBytes(const QString &path, const QByteArray &bytes, QString *error = nullptr);

// Renames the file to NAME.bad-YYYYMMDD-hhmmss beside it and returns the new path,
// or an empty string when it could not be moved.
QString moveAside(const QString &path);

} // namespace RecordFile
