#pragma once

#include "core/model/layout.h"

#include <QByteArray>
#include <QList>
#include <QString>

// The windows of the running session, kept in a layout file so that they can be
// restored after the program ended without quitting. The file is rewritten only when
// the windows changed, and removed when there is nothing to restore.
class SessionFile final
{
public:
    static QString fileName() { return QStringLiteral("Session.wlt"); }

    explicit SessionFile(QString path);

    const QString &path() const { return m_path; }

    // Writes the windows when their records differ from what was written last; no
    // window removes the file. Returns whether the file changed on disk.
    bool store(const QList<WindowDescription> &windows, QString *problem = nullptr);

    // The windows a session left behind. A damaged file is moved aside (the outcome
    // says where) and yields none; a file without windows is removed.
    Layout::ReadResult leftBehind() const;

    // Removes the file and forgets what was written.
    void discard();

private:
    QString m_path;
    QList<QByteArray> m_written;
    bool m_known = false;
};
