#include "core/model/sessionfile.h"

#include "core/records/recordfile.h"

#include <QFile>

#include <algorithm>
#include <utility>

SessionFile::SessionFile(QString path)
    : m_path(std::move(path))
{ }

bool SessionFile::store(const QList<WindowDescription> &windows, QString *problem)
{
    QList<QByteArray> records;
    records.reserve(windows.size());
    for (qsizetype i = 0; i < windows.size(); ++i)
        records.append(
            Layout::encodeRecord(windows.at(i), qint16(std::min<qsizetype>(i + 1, 32767))));
    if (m_known && records == m_written)
        return false;
    if (records.isEmpty()) {
        discard();
        m_known = true;
        return true;
    }
    QString error;
    if (!RecordFile::writeAll(m_path, records, &error)) {
        // Tried again at the next change.
        if (problem)
            *problem = error;
        return false;
    }
    m_written = records;
    m_known = true;
    return true;
}

Layout::ReadResult SessionFile::leftBehind() const
{
    if (!QFile::exists(m_path))
        return {};
    Layout::ReadResult read = Layout::LoadLayout(m_path);
    if (read.outcome.ok() && !read.outcome.wasMovedAside() && read.windows.isEmpty())
        QFile::remove(m_path);
    return read;
}

void SessionFile::discard()
{
    QFile::remove(m_path);
    m_written.clear();
    m_known = false;
}
