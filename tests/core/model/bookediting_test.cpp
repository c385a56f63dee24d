#include "core/base/uitexts.h"
#include "core/model/bookediting.h"
#include "recordbytes.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

using namespace BookEditing;

class BookEditingTest : public QObject
{
    Q_OBJECT

private slots:
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void initTestCase() { UiTexts::load(UiTexts::Language::German); }

    void newFolderNamesCountUpFromTheFirstFreeOne()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        QCOMPARE(defaultFolderName(book), u"Neuer Ordner"_s);
        addFolder(book, u"Neuer Ordner"_s, 0);
        addFolder(book, u"Neuer Ordner (1)"_s, 0);
        addFolder(book, u"Neuer Ordner (3)"_s, 0);
        QCOMPARE(defaultFolderName(book), u"Neuer Ordner (2)"_s);
    }

    void newFolderTakesTheNextSequenceAndItsFile()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        book.SequenzMax = 9;
        Thema *first = addFolder(book, u"Eins"_s, 0);
        QCOMPARE(first->Nr, 10);
        QCOMPARE(first->FileName, u"10.bkm"_s);
        QCOMPARE(book.colThema.keyAt(0), u">10"_s);
        // A stale file of the same name must not come back as the new folder's content.
        QVERIFY(RecordBytes::writeFile(dir.filePath(u"11.bkm"_s), QByteArray(3368, 'x')));
        addFolder(book, u"Zwei"_s, 0);
        QCOMPARE(book.colThema.at(0).DirName(), u"Zwei"_s);
        QVERIFY(book.IsEdit);
        QVERIFY(book.SaveAllThema());
        QCOMPARE(QFileInfo(dir.filePath(u"11.bkm"_s)).size(), 0);
    }

    void renameRefusesEmptyAndTakenNames()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        Thema *a = addFolder(book, u"Alpha"_s, 1);
        addFolder(book, u"Beta"_s, 1);
        book.IsEdit = false;
        QCOMPARE(renameFolder(book, *a, QString()), RenameCheck::EmptyName);
        QCOMPARE(renameFolder(book, *a, u"  "_s), RenameCheck::EmptyName);
        QCOMPARE(renameFolder(book, *a, u"Beta"_s), RenameCheck::NameTaken);
        QCOMPARE(a->DirName(), u"Alpha"_s);
        QVERIFY(!book.IsEdit);
        QVERIFY(renameRefusalText(RenameCheck::NameTaken, u"Beta"_s).contains(u"'Beta'"));
        QCOMPARE(renameFolder(book, *a, u"Alpha"_s), RenameCheck::Accepted);
        QCOMPARE(renameFolder(book, *a, u"Gamma"_s), RenameCheck::Accepted);
        QCOMPARE(a->DirName(), u"Gamma"_s);
        QVERIFY(book.IsEdit);
    }

    void duplicateAddressIsAskedAboutBeforeAdding()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        Thema *folder = addFolder(book, u"Web"_s, 0);
        const QString url = u"https://example.org/"_s;
        AddBookmarkResult added = addBookmark(book, *folder, u"Ex"_s, url, Duplicates::Ask);
        QCOMPARE(added.status, AddBookmarkResult::Added);
        QCOMPARE(added.bookmark->Nr, 1);
        QCOMPARE(added.bookmark->Toolbar, qint16(-1));
        QCOMPARE(added.bookmark->Adresszeile, qint16(-1));
        QVERIFY(added.bookmark->Info.isEmpty());

        const AddBookmarkResult asked = addBookmark(book, *folder, u"Ex"_s, url, Duplicates::Ask);
        QCOMPARE(asked.status, AddBookmarkResult::DuplicateAddress);
        QVERIFY(asked.question.contains(u"'https://example.org/'"));
        QCOMPARE(folder->colBookmark->count(), 1);

        const AddBookmarkResult again = addBookmark(book, *folder, u"Ex"_s, url, Duplicates::Allow);
        QCOMPARE(again.status, AddBookmarkResult::Added);
        QCOMPARE(folder->colBookmark->keyAt(1), folder->bookmarkKey(2));
    }

    void sortingFoldsCaseAndUmlautsAndIsKeptBySaving()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        for (const char *name :
            {"zebra", "Öl", "Oma", "Äpfel", "Apfel", "Straße", "Strasse", "Banane"})
            addFolder(book, QString::fromUtf8(name), book.colThema.count());
        sortFolders(book);
        QStringList names;
        for (qsizetype i = 0; i < book.colThema.count(); ++i)
            names << book.colThema.at(i).DirName();
        QCOMPARE(names,
            QStringList({u"Apfel"_s, u"Äpfel"_s, u"Banane"_s, u"Öl"_s, u"Oma"_s, u"Strasse"_s,
                u"Straße"_s, u"zebra"_s}));
        QVERIFY(book.SaveAllThema());
        Book again(dir.path());
        QVERIFY(again.LoadAllThema());
        QCOMPARE(again.colThema.at(1).DirName(), u"Äpfel"_s);

        Thema *folder = &again.colThema.at(0);
        for (const char *title : {"<FEED />zulu", "alpha", "Mike"})
            addBookmark(again, *folder, QString::fromUtf8(title), QString::fromUtf8(title),
                Duplicates::Ask);
        sortBookmarks(again, *folder);
        QCOMPARE(folder->colBookmark->at(0).Titel, u"alpha"_s);
        QCOMPARE(folder->colBookmark->at(2).Titel, u"<FEED />zulu"_s);
        QCOMPARE(folder->colBookmark->at(2).Order, 3);
    }
};

QTEST_GUILESS_MAIN(BookEditingTest)
#include "bookediting_test.moc"
