#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "core/model/book.h"
#include "core/model/bookediting.h"
#include "core/prefs/prefer.h"
#include "engineenvironment.h"
#include "localhttpserver.h"
#include "scriptedpop3server.h"
#include "ui/browser/frmbrowser.h"
#include "ui/desktop/passwordstore.h"
#include "ui/frame/mdiform1.h"
#include "ui/frame/tabstrip.h"
#include "ui/settings/mailaccountpage.h"
#include "ui/settings/settingsdialog.h"

#include <QAction>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStatusBar>
#include <QTest>

using namespace Qt::StringLiterals;
using Level = PrefRules::Check::Level;

namespace {
// Sets an editor as a user would: text, tick ("on"/"off"), number, option or list entry.
void setEditor(SettingsDialog &dialog, const QString &field, const QString &input)
{
    QObject *editor = dialog.findChild<QObject *>(field == u"Group" ? u"GroupFile"_s : field);
    QVERIFY2(editor, qPrintable(field + u" has no editor"_s));
    if (auto *edit = qobject_cast<QLineEdit *>(editor))
        edit->setText(input);
    else if (auto *box = qobject_cast<QCheckBox *>(editor))
        box->setChecked(input == u"on");
    else if (auto *spin = qobject_cast<QSpinBox *>(editor))
        spin->setValue(input.toInt());
    else if (auto *group = qobject_cast<QButtonGroup *>(editor))
        group->button(input.toInt())->click();
    else if (auto *combo = qobject_cast<QComboBox *>(editor))
        combo->setCurrentIndex(combo->findText(input));
}

void press(SettingsDialog &dialog, const char *button)
{
    dialog.findChild<QPushButton *>(QLatin1String(button))->click();
}

QByteArray fileBytes(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

class SettingsDialogTest : public QObject
{
    Q_OBJECT

private:
    QString m_data = AppInfo::dataFolderPath();
    QString m_prefPath = m_data + u"/Pref.vtp"_s;
    QString m_file = m_data + u"/search.html"_s;
    QString m_secondFolderFile;
    Prefer m_prefs;

private slots:
    void initTestCase()
    {
        // No secret service: the tests must never write to a real one.
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/bus");
        // An archive with two folders for the start page's folder chooser.
        Book book(m_data);
        book.LoadAllThema();
        BookEditing::addFolder(book, u"Nachrichten"_s, 0);
        m_secondFolderFile = BookEditing::addFolder(book, u"Zweiter Ordner"_s, 1)->FileName;
        QVERIFY(book.SaveAllThema());
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    void init()
    {
        EngineTest::failOnWarnings();
        QFile::remove(m_prefPath);
        m_prefs.setPasswordsInSecretStore(false);
        QCOMPARE(m_prefs.LoadPref(m_prefPath), Prefer::LoadResult::CreatedFresh);
    }

    void everyFieldRoundTripsThroughItsEditor_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("input"); // empty: the dialog has no editor for it
        QTest::addColumn<QString>("stored");
        // A second field that changes with it: name and value.
        QTest::addColumn<QStringList>("companion");
        const QHash<QString, QPair<QString, QString>> rows = {
            {u"HomeUrl"_s, {u"https://example.org/start"_s, u"https://example.org/start"_s}},
            // Marked as a feed; the file keeps 20 characters of the title.
            {u"HomeTitle"_s, {u"on"_s, u"<FEED />vantrell://w"_s}},
            {u"SearchEngine"_s,
                {u"https://s.example.org/?q=%s"_s, u"https://s.example.org/?q=%s"_s}},
            {u"SearchEngineFile"_s, {m_file, m_file}},
            {u"MailClient"_s, {u"thunderbird -compose"_s, u"thunderbird -compose"_s}},
            {u"StatusBar"_s, {u"off"_s, u"0"_s}},
            {u"TabStrip"_s, {u"off"_s, u"0"_s}},
            {u"TabButton"_s, {u"off"_s, u"0"_s}},
            {u"TabFontBold"_s, {u"on"_s, u"-1"_s}},
            {u"TabAlign"_s, {u"3"_s, u"3"_s}},
            {u"StartBrowser"_s, {u"off"_s, u"0"_s}},
            {u"LoadOption"_s, {u"3"_s, u"3"_s}},
            {u"Group"_s, {u"Zweiter Ordner"_s, u"Zweiter Ordner"_s}},
            {u"GroupFile"_s, {u"Zweiter Ordner"_s, m_secondFolderFile}},
            {u"Layout"_s, {m_file, m_file}},
            {u"Adresszeile"_s, {u"off"_s, u"0"_s}},
            {u"Toolbar"_s, {u"off"_s, u"0"_s}},
            {u"HistoryRows"_s, {u"120"_s, u"120"_s}},
            {u"MdiWidth"_s, {QString(), u"10485"_s}},
            {u"MdiHeight"_s, {QString(), u"7470"_s}},
            {u"MdiState"_s, {QString(), u"0"_s}},
            {u"AllowOpenWin"_s, {u"off"_s, u"0"_s}},
            {u"AllowResizeWin"_s, {u"off"_s, u"0"_s}},
            {u"AllowWinInBack"_s, {u"on"_s, u"-1"_s}},
            {u"AllowWinRef"_s, {u"on"_s, u"-1"_s}},
            {u"CheckIntervall"_s, {u"546"_s, u"546"_s}},
        };
        for (const Prefer::Field &f : Prefer::fields()) {
            const QString name = QLatin1String(f.name);
            QPair<QString, QString> row = rows.value(name);
            // The four accounts: each field with a value of its own.
            const QString account = name.right(1);
            if (name.startsWith(u"MailSrv"))
                row = {u"pop3s://mail"_s + account + u".example.org"_s, {}};
            else if (name.startsWith(u"User"))
                row = {u"anna."_s + account, {}};
            else if (name.startsWith(u"Pwd"))
                row = {u"geheim "_s + account + u"!"_s, {}};
            else if (name.startsWith(u"EnableMailCheck"))
                row = {u"on"_s, u"-1"_s};
            if (row.second.isEmpty())
                row.second = row.first;
            QVERIFY2(!row.second.isEmpty(), qPrintable(name + u" has no row"_s));
            QStringList companion;
            if (name == u"Group")
                companion = QStringList {u"GroupFile"_s, m_secondFolderFile};
            else if (name == u"GroupFile")
                companion = QStringList {u"Group"_s, u"Zweiter Ordner"_s};
            else if (name.startsWith(u"EnableMailCheck")) // checked, it needs a server
                companion = QStringList {u"MailSrv"_s + account, u"pop3s://mail.example.org"_s};
            QTest::newRow(f.name) << name << row.first << row.second << companion;
        }
    }

    void everyFieldRoundTripsThroughItsEditor()
    {
        QFETCH(QString, field);
        QFETCH(QString, input);
        QFETCH(QString, stored);
        QFETCH(QStringList, companion);
        SettingsDialog dialog(m_prefs, m_prefPath, m_data);
        dialog.show();
        if (input.isEmpty())
            QVERIFY2(!dialog.findChild<QObject *>(field), "the frame keeps this one");
        else
            setEditor(dialog, field, input);
        // A companion with an editor of its own is typed; the others follow the field.
        if (!companion.isEmpty() && dialog.findChild<QLineEdit *>(companion.first()))
            setEditor(dialog, companion.first(), companion.last());
        press(dialog, "ok");
        QCOMPARE(dialog.result(), int(QDialog::Accepted));

        Prefer back;
        QCOMPARE(back.LoadPref(m_prefPath), Prefer::LoadResult::Loaded);
        const Prefer defaults;
        for (const Prefer::Field &f : Prefer::fields()) {
            const QString name = QLatin1String(f.name);
            const QString value = back.valueText(f).trimmed();
            // The edited fields hold what was typed; every other one its default.
            if (name == field)
                QCOMPARE(value, stored);
            else if (!companion.isEmpty() && name == companion.first())
                QCOMPARE(value, companion.last());
            else
                QVERIFY2(value == defaults.valueText(f).trimmed(), qPrintable(name));
        }
    }

    void cancelLeavesPreferencesAndFileAsTheyWere()
    {
        const QByteArray before = fileBytes(m_prefPath);
        const QByteArray record = m_prefs.toRecord();
        SettingsDialog dialog(m_prefs, m_prefPath, m_data);
        QSignalSpy applied(&dialog, &SettingsDialog::applied);
        dialog.show();
        for (const char *field : {"HomeUrl", "User1", "Pwd1", "SearchEngine"})
            setEditor(dialog, QLatin1String(field), u"https://changed.example.org/"_s);
        setEditor(dialog, u"TabStrip"_s, u"off"_s);
        setEditor(dialog, u"HistoryRows"_s, u"7"_s);
        press(dialog, "cancel");
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(applied.count(), 0);
        QCOMPARE(m_prefs.toRecord(), record);
        QCOMPARE(fileBytes(m_prefPath), before);
    }

    void checksShowBesideTheFieldAndOnlyRefusalsKeepTheDialogOpen_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("input");
        QTest::addColumn<int>("level");
        QTest::addColumn<int>("textId");
        const auto row
            = [](const char *name, const char *field, const char *input, Level level, int textId) {
                  QTest::newRow(name) << QString::fromLatin1(field) << QString::fromUtf8(input)
                                      << int(level) << textId;
              };
        row("address", "HomeUrl", "https://example.org/a?b=c", Level::Fine, 0);
        row("local file", "HomeUrl", "/home/anna/start.html", Level::Fine, 0);
        row("words", "HomeUrl", "meine startseite", Level::Refused, 2300);
        row("scheme only", "HomeUrl", "https://", Level::Refused, 2300);
        row("empty home", "HomeUrl", "", Level::Refused, 2300);
        row("search with %s", "SearchEngine", "https://s.example.org/?q=%s", Level::Fine, 0);
        row("search without %s", "SearchEngine", "https://s.example.org/?q=", Level::Warning, 2301);
        row("search no address", "SearchEngine", "suche %s", Level::Refused, 2300);
        row("missing form file", "SearchEngineFile", "/no/such/search.html", Level::Warning, 2303);
        row("missing layout", "Layout", "/no/such/layout.wlt", Level::Warning, 2303);
        row("missing program", "MailClient", "no-such-mailer-x9 -c", Level::Warning, 2304);
        row("program found", "MailClient", "sh -c true", Level::Fine, 0);
        row("plain pop3", "MailSrv1", "pop3://mail.example.org", Level::Warning, 2306);
        row("pop3 maybe stls", "MailSrv2", "mail.example.org:110", Level::Warning, 2307);
        row("pop3s", "MailSrv3", "pop3s://mail.example.org", Level::Fine, 0);
        row("no server", "MailSrv4", "mail server", Level::Refused, 2305);
    }

    void checksShowBesideTheFieldAndOnlyRefusalsKeepTheDialogOpen()
    {
        QFETCH(QString, field);
        QFETCH(QString, input);
        QFETCH(int, level);
        QFETCH(int, textId);
        const QByteArray before = fileBytes(m_prefPath);
        SettingsDialog dialog(m_prefs, m_prefPath, m_data);
        dialog.show();
        setEditor(dialog, field, input);
        auto *note = dialog.findChild<QLabel *>(field + u"Note"_s);
        QCOMPARE(int(dialog.checkOf(field).level), level);
        // The verdict shows before OK: it begins with the text's own words.
        const QString words = textId ? uiText(textId).section(u'%', 0, 0) : QString();
        QVERIFY2(note->text().startsWith(words) && note->isHidden() == (textId == 0),
            qPrintable(note->text()));
        press(dialog, "ok");
        if (level == int(Level::Refused)) {
            QVERIFY(dialog.isVisible());
            QCOMPARE(dialog.message(), u"Der Wert ist ungültig ! "_s + uiText(2309));
            QVERIFY(dialog.findChild<QWidget *>(field)->isVisible());
            QCOMPARE(fileBytes(m_prefPath), before);
        } else {
            QCOMPARE(dialog.result(), int(QDialog::Accepted));
            Prefer back;
            back.LoadPref(m_prefPath);
            QCOMPARE(back.valueText(*Prefer::field(field)).trimmed(), input);
        }
    }

    void aChosenOptionNeedsWhatItChooses()
    {
        SettingsDialog dialog(m_prefs, m_prefPath, m_data);
        dialog.show();
        setEditor(dialog, u"EnableMailCheck3"_s, u"on"_s);
        setEditor(dialog, u"LoadOption"_s, u"2"_s);
        QCOMPARE(dialog.checkOf(u"MailSrv3"_s).message, uiText(2353));
        QCOMPARE(dialog.checkOf(u"Layout"_s).message, uiText(2354));
        press(dialog, "ok");
        QVERIFY(dialog.isVisible());
        setEditor(dialog, u"MailSrv3"_s, u"pop3s://mail.example.org"_s);
        setEditor(dialog, u"Layout"_s, m_file);
        press(dialog, "ok");
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
    }

    void withoutSecretServiceThePasswordsStayInTheFile()
    {
        bool usable = true;
        PasswordStore::probe(this, [&usable](bool answer) { usable = answer; });
        QVERIFY(!usable && !PasswordStore::isAvailable());
        SettingsDialog dialog(m_prefs, m_prefPath, m_data);
        QCOMPARE(dialog.findChild<QLabel *>(u"passwordStorage"_s)->text(), uiText(2347));
        setEditor(dialog, u"Pwd1"_s, u"ab"_s);
        QVERIFY(dialog.apply());
        // Scrambled in the file: a and b are stored as R and q.
        QCOMPARE(fileBytes(m_prefPath).mid(Prefer::field(u"Pwd1"_s)->offset, 3), "Rq ");
        bool loaded = false;
        PasswordStore::load(m_prefs, this, [&loaded] { loaded = true; });
        QVERIFY(loaded && !m_prefs.passwordsInSecretStore());
        QCOMPARE(m_prefs.Pwd1(), u"ab"_s);
        // Kept in the store, a password leaves its field in the file blank.
        m_prefs.setPasswordsInSecretStore(true);
        QCOMPARE(m_prefs.toRecord().mid(Prefer::field(u"Pwd1"_s)->offset, 3), "   ");
        QCOMPARE(m_prefs.Pwd1(), u"ab"_s);
    }

    void numbersStayInTheirRange()
    {
        m_prefs.setCheckIntervall(0);
        m_prefs.setHistoryRows(-5);
        SettingsDialog dialog(m_prefs, m_prefPath, m_data);
        auto *interval = dialog.findChild<QSpinBox *>(u"CheckIntervall"_s);
        auto *rows = dialog.findChild<QSpinBox *>(u"HistoryRows"_s);
        // Stored values outside the range show as the nearest one offered.
        QCOMPARE(interval->value(), 1);
        QCOMPARE(rows->value(), 1);
        interval->setValue(547);
        QCOMPARE(interval->value(), 546);
        QVERIFY(dialog.apply());
        QCOMPARE(m_prefs.CheckIntervall(), 546);
    }

    void testNowChecksTheTypedAccountOnce_data()
    {
        QTest::addColumn<QByteArray>("command"); // what the server answers differently
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<int>("textId");
        QTest::newRow("mail waiting")
            << QByteArray("LIST") << QByteArray("+OK 2 90\r\n.\r\n") << 2342;
        QTest::newRow("no mail") << QByteArray("LIST") << QByteArray("+OK 0 0\r\n.\r\n") << 2343;
        QTest::newRow("login refused") << QByteArray("PASS") << QByteArray("-ERR no\r\n") << 2344;
        QTest::newRow("silent") << QByteArray("") << QByteArray("") << 2345;
    }

    void testNowChecksTheTypedAccountOnce()
    {
        QFETCH(QByteArray, command);
        QFETCH(QByteArray, answer);
        QFETCH(int, textId);
        ScriptedPop3Server server;
        server.says.insert(command, answer);
        SettingsDialog dialog(m_prefs, m_prefPath, m_data);
        auto *account = dialog.findChild<MailAccountPage *>(u"mailAccount2"_s);
        account->setTestTimeout(500);
        setEditor(dialog, u"MailSrv2"_s, server.address());
        setEditor(dialog, u"User2"_s, u"anna"_s);
        setEditor(dialog, u"Pwd2"_s, u"typed pw"_s);
        dialog.findChild<QPushButton *>(u"testNow2"_s)->click();
        QCOMPARE(account->testOutcome(), uiText(2341));
        VERIFY_SOON(!account->isTesting());
        QCOMPARE(account->testOutcome(), uiText(textId));
        if (!command.isEmpty())
            QVERIFY(server.received.startsWith("USER anna\r\nPASS typed pw\r\n"));
        // A test changes no preference.
        QCOMPARE(m_prefs.MailSrv2(), QString());
    }

    void settingsTakeEffectOnTheFrameAtOnce()
    {
        LocalHttpServer pages;
        pages.setPage(u"/here"_s, EngineTest::titled("Here"));
        MDIForm1 frame;
        frame.show();
        const QString here = pages.url(u"/here"_s).toString();
        EngineTest::openOn(frame, here, "Here");
        QSignalSpy applied(&frame, &MDIForm1::preferencesApplied);
        frame.menuAction(u"mn_Einstellungen"_s)->trigger();
        auto *dialog = frame.findChild<SettingsDialog *>();
        QVERIFY(dialog && dialog->isVisible());
        // A second request brings the same dialog forward.
        frame.menuAction(u"mn_Einstellungen"_s)->trigger();
        QCOMPARE(frame.findChildren<SettingsDialog *>().size(), 1);

        press(*dialog, "useCurrentPage");
        QCOMPARE(dialog->findChild<QLineEdit *>(u"HomeUrl"_s)->text(), here);
        setEditor(*dialog, u"TabStrip"_s, u"off"_s);
        setEditor(*dialog, u"TabAlign"_s, u"3"_s);
        setEditor(*dialog, u"StatusBar"_s, u"off"_s);
        setEditor(*dialog, u"AllowOpenWin"_s, u"off"_s);
        setEditor(*dialog, u"AllowWinInBack"_s, u"on"_s);
        press(*dialog, "apply");
        QCOMPARE(applied.count(), 1);
        QVERIFY(!frame.tabStrip()->isVisible());
        QCOMPARE(frame.tabStrip()->shape(), QTabBar::RoundedSouth);
        QVERIFY(!frame.statusBar()->isVisible());
        QVERIFY(!frame.policy().AllowOpenWin && frame.policy().AllowWinInBack);
        QVERIFY(frame.menuAction(u"mn_DisablePopup"_s)->isChecked());
        QVERIFY(frame.menuAction(u"mn_RegisterUnten"_s)->isChecked());

        setEditor(*dialog, u"TabStrip"_s, u"on"_s);
        setEditor(*dialog, u"AllowOpenWin"_s, u"on"_s);
        press(*dialog, "ok");
        QVERIFY(frame.tabStrip()->isVisible());
        QVERIFY(frame.policy().AllowOpenWin);
        QCOMPARE(prefer().HomeUrl(), here);
        Prefer back;
        QCOMPARE(back.LoadPref(AppInfo::dataFile(u"Pref.vtp"_s)), Prefer::LoadResult::Loaded);
        QCOMPARE(back.HomeUrl(), here);
        QCOMPARE(back.TabAlign(), 3);
    }
};

VANTRELL_ENGINE_TEST_MAIN(SettingsDialogTest)
#include "settingsdialog_test.moc"
