#include "core/base/uitexts.h"
#include "core/model/bookediting.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace BookEditing;

class BookEditingTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { UiTexts::load(UiTexts::Language::German); }

    void newFolderNamesCountUpFromTheFirstFreeOne()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        QCOMPARE(defaultFolderName(book), QStringLiteral("Neuer Ordner"));
        addFolder(book, QStringLiteral("Neuer Ordner"), 0);
        addFolder(book, QStringLiteral("Neuer Ordner (1)"), 0);
        addFolder(book, QStringLiteral("Neuer Ordner (3)"), 0);
        QCOMPARE(defaultFolderName(book), QStringLiteral("Neuer Ordner (2)"));
    }

    void newFolderTakesTheNextSequenceAndItsFile()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        book.SequenzMax = 9;
        Thema *first = addFolder(book, QStringLiteral("Eins"), 0);
        QCOMPARE(first->Nr, 10);
        QCOMPARE(first->FileName, QStringLiteral("10.bkm"));
        QCOMPARE(book.colThema.keyAt(0), QStringLiteral(">10"));
        // A stale file of the same name must not come back as the new folder's content.
        QFile stale(dir.filePath(QStringLiteral("11.bkm")));
        QVERIFY(stale.open(QIODevice::WriteOnly));
        stale.write(QByteArray(3368, 'x'));
        stale.close();
        addFolder(book, QStringLiteral("Zwei"), 0);
        QCOMPARE(book.colThema.at(0).DirName(), QStringLiteral("Zwei"));
        QVERIFY(book.IsEdit);
        QVERIFY(book.SaveAllThema());
        QCOMPARE(QFileInfo(dir.filePath(QStringLiteral("11.bkm"))).size(), 0);
    }

    void renameRefusesEmptyAndTakenNames()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        Thema *a = addFolder(book, QStringLiteral("Alpha"), 1);
        addFolder(book, QStringLiteral("Beta"), 1);
        book.IsEdit = false;
        QCOMPARE(renameFolder(book, *a, QString()), RenameCheck::EmptyName);
        QCOMPARE(renameFolder(book, *a, QStringLiteral("  ")), RenameCheck::EmptyName);
        QCOMPARE(renameFolder(book, *a, QStringLiteral("Beta")), RenameCheck::NameTaken);
        QCOMPARE(a->DirName(), QStringLiteral("Alpha"));
        QVERIFY(!book.IsEdit);
        QCOMPARE(renameRefusalText(RenameCheck::NameTaken, QStringLiteral("Beta")),
            QStringLiteral("Der Ordner mit dem Namen 'Beta' existiert schon !\n"
                           "Bitte wählen Sie einen anderen Namen."));
        QCOMPARE(renameRefusalText(RenameCheck::EmptyName, {}),
            QStringLiteral("Der Ordner muß einen Namen haben !"));
        QCOMPARE(renameFolder(book, *a, QStringLiteral("Alpha")), RenameCheck::Accepted);
        QCOMPARE(renameFolder(book, *a, QStringLiteral("Gamma")), RenameCheck::Accepted);
        QCOMPARE(a->DirName(), QStringLiteral("Gamma"));
        QVERIFY(book.IsEdit);
    }

    void duplicateAddressIsAskedAboutBeforeAdding()
    {
        QTemporaryDir dir;
        Book book(dir.path());
        Thema *folder = addFolder(book, QStringLiteral("Web"), 0);
        const QString url = QStringLiteral("https://example.org/");
        AddBookmarkResult added
            = addBookmark(book, *folder, QStringLiteral("Ex"), url, Duplicates::Ask);
        QCOMPARE(added.status, AddBookmarkResult::Added);
        QCOMPARE(added.bookmark->Nr, 1);
        QCOMPARE(added.bookmark->Toolbar, qint16(-1));
        QCOMPARE(added.bookmark->Adresszeile, qint16(-1));
        QVERIFY(added.bookmark->Info.isEmpty());

        const AddBookmarkResult asked
            = addBookmark(book, *folder, QStringLiteral("Ex"), url, Duplicates::Ask);
        QCOMPARE(asked.status, AddBookmarkResult::DuplicateAddress);
        QCOMPARE(asked.question,
            QStringLiteral(
                "Die Url: 'https://example.org/' existiert bereits, trotzdem hinzufügen ?"));
        QCOMPARE(folder->colBookmark->count(), 1);

        const AddBookmarkResult again
            = addBookmark(book, *folder, QStringLiteral("Ex"), url, Duplicates::Allow);
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
            QStringList({QStringLiteral("Apfel"), QStringLiteral("Äpfel"), QStringLiteral("Banane"),
                QStringLiteral("Öl"), QStringLiteral("Oma"), QStringLiteral("Strasse"),
                QStringLiteral("Straße"), QStringLiteral("zebra")}));
        QVERIFY(book.SaveAllThema());
        Book again(dir.path());
        QVERIFY(again.LoadAllThema());
        QCOMPARE(again.colThema.at(1).DirName(), QStringLiteral("Äpfel"));

        Thema *folder = &again.colThema.at(0);
        for (const char *title : {"<FEED />zulu", "alpha", "Mike"})
            addBookmark(again, *folder, QString::fromUtf8(title), QString::fromUtf8(title),
                Duplicates::Ask);
        sortBookmarks(again, *folder);
        QCOMPARE(folder->colBookmark->at(0).Titel, QStringLiteral("alpha"));
        QCOMPARE(folder->colBookmark->at(2).Titel, QStringLiteral("<FEED />zulu"));
        QCOMPARE(folder->colBookmark->at(2).Order, 3);
    }
};

QTEST_GUILESS_MAIN(BookEditingTest)
#include "bookediting_test.moc"
