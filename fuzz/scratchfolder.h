#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

// A data folder for one input at a time: emptied before each input, so that files
// moved aside by one input do not pile up or change what the next one sees. It lies
// in memory where the system offers a memory file system.
class ScratchFolder final
{
public:
    ScratchFolder()
        : m_dir(QDir(QStringLiteral("/dev/shm")).exists()
                ? QStringLiteral("/dev/shm/vantrell-fuzz-XXXXXX")
                : QDir::tempPath() + QStringLiteral("/vantrell-fuzz-XXXXXX"))
    { }

    QString path() const { return m_dir.path(); }
    QString file(const QString &name) const { return m_dir.filePath(name); }

    void clear() const
    {
        QDir dir(m_dir.path());
        const QStringList names = dir.entryList(QDir::Files | QDir::Hidden | QDir::System);
        for (const QString &name : names)
            dir.remove(name);
    }

    // Empties the folder and writes one file.
    QString write(const QString &name, const QByteArray &bytes) const
    {
        clear();
        return put(name, bytes);
    }

    QString put(const QString &name, const QByteArray &bytes) const
    {
        QFile out(file(name));
        if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size())
            abort();
        return out.fileName();
    }

    QByteArray read(const QString &name) const
    {
        QFile in(file(name));
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

private:
    QTemporaryDir m_dir;
};

// A property an input broke: libFuzzer keeps the input as a crash.
#define FUZZ_ASSERT(condition)                                                                     \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            fprintf(stderr, "property broken: %s (%s:%d)\n", #condition, __FILE__, __LINE__);      \
            abort();                                                                               \
        }                                                                                          \
    } while (false)
