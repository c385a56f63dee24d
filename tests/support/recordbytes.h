#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QtEndian>

// Record fixtures built byte by byte, independent of the program's own codec, so
// that a fault in the codec cannot hide itself in the expected bytes.
namespace RecordBytes {

inline QByteArray padded(const QByteArray &text, int width)
{
    QByteArray field = text.left(width);
    field.append(width - field.size(), ' ');
    return field;
}

inline QByteArray le16(qint16 value)
{
    QByteArray bytes(2, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

inline QByteArray le32(qint32 value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

// The whole file, or "<missing>" when it cannot be read.
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<missing>");
}

// Replaces the file's contents.
inline bool writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate)
        && file.write(bytes) == bytes.size();
}

} // namespace RecordBytes
