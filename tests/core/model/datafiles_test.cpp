#include "core/exchange/netscapeimport.h"
#include "core/model/book.h"
#include "core/model/layout.h"
#include "core/model/layoutbook.h"
#include "core/records/recordfile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

// A data folder from elsewhere whose indexes name files that are not theirs: the
// preferences, the other index, the index itself, another kind's file, a file named
// twice, a link. No command may read, write, move aside or delete such a file.
class DataFilesTest : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QHash<QString, QByteArray> m_before;

    QString path(const QString &name) const { return m_dir.filePath(name); }

    void write(const QString &name, const QByteArray &bytes)
    {
        QVERIFY(RecordFile::writeBytes(path(name), bytes));
    }

    // Files that belong to something else, each with bytes no record reader accepts.
    void plantBystanders()
    {
        for (const QString &name : {QStringLiteral("Pref.vtp"), QStringLiteral("WL1.nlt"),
                 QStringLiteral("5.bkm"), QStringLiteral("outside.txt")})
            write(name, "not a record file: " + name.toUtf8());
        QVERIFY(QFile::link(path(QStringLiteral("Pref.vtp")), path(QStringLiteral("2.bkm"))));
        m_before.clear();
        const QStringList names = QDir(m_dir.path()).entryList(QDir::Files | QDir::System);
        for (const QString &name : names) {
            QFile file(path(name));
            QVERIFY(file.open(QIODevice::ReadOnly));
            m_before.insert(name, file.readAll());
        }
    }

    void verifyBystandersUntouched(const QStringList &except)
    {
        for (auto it = m_before.cbegin(); it != m_before.cend(); ++it) {
            if (except.contains(it.key()))
                continue;
            QFile file(path(it.key()));
            QVERIFY2(file.open(QIODevice::ReadOnly), qPrintable(it.key()));
            QCOMPARE(file.readAll(), it.value());
        }
        QVERIFY(QFileInfo(path(QStringLiteral("2.bkm"))).isSymLink());
        const QStringList movedAside
            = QDir(m_dir.path()).entryList({QStringLiteral("*.bad-*")}, QDir::Files);
        QCOMPARE(movedAside, QStringList());
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    void init()
    {
        QTest::failOnWarning(QRegularExpression(QStringLiteral(".*")));
        const QStringList names = QDir(m_dir.path()).entryList(QDir::Files | QDir::System);
        for (const QString &name : names)
            QFile::remove(path(name));
    }

    void bookmarkFoldersReachOnlyTheirOwnFiles()
    {
        // The first folder owns 1.bkm; every other one names what is not its own.
        const QStringList names {QStringLiteral("1.bkm"), QStringLiteral("Pref.vtp"),
            QStringLiteral("WLBook.vtp"), QStringLiteral("Book.bkm"), QStringLiteral("WL1.nlt"),
            QStringLiteral("../outside.txt"), QStringLiteral("1.bkm"), QStringLiteral("2.bkm"),
            QStringLiteral("x5.bkm")};
        QByteArray index;
        for (qsizetype i = 0; i < names.size(); ++i) {
            Thema folder(m_dir.path());
            folder.Sequenz = qint32(i + 1);
            folder.FileName = names.at(i);
            folder.initDirName(QStringLiteral("F%1").arg(i + 1));
            index += Book::encodeRecord(folder, qint32(i + 1));
        }
        write(QStringLiteral("Book.bkm"), index);
        Bookmark own;
        own.Nr = 1;
        own.Titel = QStringLiteral("own");
        own.URL = QStringLiteral("https://example.org/");
        write(QStringLiteral("1.bkm"), Thema::encodeRecord(own, 1));
        plantBystanders();

        Book book(m_dir.path());
        QVERIFY(book.LoadAllThema());
        QCOMPARE(book.colThema.count(), names.size());
        QVERIFY(book.ensureLoaded(book.colThema.at(0)).ok());
        QCOMPARE(book.colThema.at(0).colBookmark->count(), 1);
        for (qsizetype i = 1; i < names.size(); ++i) {
            Thema &folder = book.colThema.at(i);
            QVERIFY2(!book.ensureLoaded(folder).ok(), qPrintable(names.at(i)));
            QVERIFY(!folder.isLoaded());
            // Even a folder made to look loaded and edited is not saved over the name.
            folder.colBookmark.emplace();
            folder.IsEdit = true;
        }
        QVERIFY(!book.SaveAllThema());
        verifyBystandersUntouched({QStringLiteral("Book.bkm"), QStringLiteral("1.bkm")});

        // Deleting the damaged folders removes their entries, never a file.
        while (book.colThema.count() > 1)
            book.DeleteThema(qint16(book.colThema.count()));
        verifyBystandersUntouched({QStringLiteral("Book.bkm"), QStringLiteral("1.bkm")});
        QVERIFY(QFile::exists(path(QStringLiteral("1.bkm"))));

        // The own folder's file goes with its folder.
        QVERIFY(book.DeleteThema(1));
        QVERIFY(!QFile::exists(path(QStringLiteral("1.bkm"))));
    }

    void layoutsReachOnlyTheirOwnFiles()
    {
        struct Entry
        {
            QString fileName;
            qint32 sequenz;
        };
        // WL3.nlt is the first layout's; the others name another file than their own
        // (a layout is saved to "WL" & Sequenz & ".nlt") or a file of another kind.
        const QList<Entry> entries {{QStringLiteral("WL3.nlt"), 3}, {QStringLiteral("Book.bkm"), 4},
            {QStringLiteral("WL3.nlt"), 3}, {QStringLiteral("WL1.nlt"), 6},
            {QStringLiteral("Pref.vtp"), 7}, {QStringLiteral("5.bkm"), 5}};
        QList<QByteArray> index;
        for (qsizetype i = 0; i < entries.size(); ++i) {
            LayoutItem item(m_dir.path());
            item.FileName = entries.at(i).fileName;
            item.Sequenz = entries.at(i).sequenz;
            item.LayoutName = QStringLiteral("L%1").arg(i + 1);
            index.append(LayoutBook::encodeRecord(item, qint32(i + 1)));
        }
        QVERIFY(RecordFile::writeAll(path(QStringLiteral("WLBook.vtp")), index));
        write(QStringLiteral("Book.bkm"), QByteArray(Book::RecordLength, ' '));
        write(QStringLiteral("WL3.nlt"), QByteArray());
        plantBystanders();

        LayoutBook layouts(m_dir.path());
        QVERIFY(layouts.LoadAllLayouts());
        QCOMPARE(layouts.colLayout.size(), entries.size());
        QVERIFY(!layouts.UpdateAllLayouts());
        verifyBystandersUntouched({QStringLiteral("WLBook.vtp"), QStringLiteral("WL3.nlt")});
        while (layouts.colLayout.size() > 1)
            layouts.DeleteLayout(layouts.colLayout.size());
        verifyBystandersUntouched({QStringLiteral("WLBook.vtp"), QStringLiteral("WL3.nlt")});
        QVERIFY(QFile::exists(path(QStringLiteral("WL3.nlt"))));
    }

    void layoutFilesAreOnlyWltFiles()
    {
        plantBystanders();
        const Layout::ReadResult read = Layout::LoadLayout(path(QStringLiteral("Pref.vtp")));
        QVERIFY(!read.outcome.ok());
        QVERIFY(read.windows.isEmpty());
        QVERIFY(!Layout::SaveLayout(path(QStringLiteral("5.bkm")), {WindowDescription()}).ok());
        verifyBystandersUntouched({});

        const QString own = path(QStringLiteral("Windows.WLT"));
        QVERIFY(Layout::SaveLayout(own, {WindowDescription()}).ok());
        QCOMPARE(Layout::LoadLayout(own).windows.size(), 1);
    }

    void importKeepsABackupOnlyOfWhatExisted()
    {
        const QByteArray file
            = "<DL><DT><H3>Folder</H3><DL><DT><A HREF=\"https://a.example/\">A</A>"
              "</DL></DL>";
        Book empty(m_dir.path());
        empty.LoadAllThema(); // leaves an empty index behind
        const NetscapeImport::ApplyOutcome first
            = NetscapeImport::replaceArchive(empty, NetscapeImport::parse(file));
        QVERIFY(first.ok);
        QVERIFY(first.backupFolder.isEmpty());
        QVERIFY(!QDir(path(QStringLiteral("backups"))).exists());

        Book full(m_dir.path());
        full.LoadAllThema();
        const NetscapeImport::ApplyOutcome second
            = NetscapeImport::replaceArchive(full, NetscapeImport::parse(file));
        QVERIFY(second.ok);
        QVERIFY(QFile::exists(second.backupFolder + QStringLiteral("/1.bkm")));
    }
};

QTEST_GUILESS_MAIN(DataFilesTest)
#include "datafiles_test.moc"
