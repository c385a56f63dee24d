#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

// Fixed-size little-endian records as every data file of the program stores them.
// Text fields hold UTF-8 bytes padded with blanks to their byte width; a value that
// is too long is cut at a character boundary, never inside a character.
namespace RecordCodec {

enum class Trim { None, Blanks };

// Encodes text into exactly `width` bytes at `out`: whole characters while they fit,
// then blanks.
void encodeTextTo(char *out, QStringView text, int width);
// The same in bytes of their own.
QByteArray encodeText(const QString &text, int width);
// Decodes a field: UTF-8 when the bytes are valid UTF-8, otherwise Windows-1252
// (files written by the Windows program). NUL bytes count as padding wherever they stand.
QString decodeText(QByteArrayView field, Trim trim);
// Writes the UTF-8 of the character at `at` (not ASCII) to `out` as QString::toUtf8
// does, a lone surrogate as '?'; advances both. At most four bytes.
void encodeUtf8(const char16_t *&at, const char16_t *end, char *&out);
// Blanks (0x20 only) removed on both sides, as the record files trim.
QString trimBlanks(const QString &text);

} // namespace RecordCodec

// Builds one record of a fixed length, zero-filled until written: in bytes of its own,
// or in place at `target`, which must hold `length` bytes (a file of many records is
// then built without a copy of each).
class RecordWriter final
{
public:
    explicit RecordWriter(int length);
    RecordWriter(char *target, int length);
    Q_DISABLE_COPY_MOVE(RecordWriter)

    void putInt16(int offset, qint16 value);
    void putInt32(int offset, qint32 value);
    void putDouble(int offset, double value);
    void putText(int offset, int width, const QString &text);

    // The record built in bytes of its own; empty when it was built in place.
    const QByteArray &bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
    char *m_data;
};

// Reads fields out of one record; reads beyond a short record yield zero bytes. A
// record of full length is read where it lies (the caller keeps its bytes alive while
// the reader is used); only a short one is copied and padded.
class RecordReader final
{
public:
    RecordReader(QByteArrayView record, int length);
    RecordReader(QByteArray record, int length);
    Q_DISABLE_COPY_MOVE(RecordReader)

    qint16 int16(int offset) const;
    qint32 int32(int offset) const;
    double float64(int offset) const;
    QString text(int offset, int width, RecordCodec::Trim trim) const;
    quint8 byteAt(int offset) const;

private:
    QByteArray m_padded;
    const char *m_data;
};
