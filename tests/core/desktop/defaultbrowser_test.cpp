#include "core/desktop/defaultbrowser.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

using namespace Qt::StringLiterals;

// The real xdg-utils against a home of its own: what they write is read back from the
// user's mimeapps.list.
class DefaultBrowserTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_home;

    QString path(const QString &name) const { return m_home.filePath(name); }

    void write(const QString &name, const QByteArray &bytes) const
    {
        QDir().mkpath(QFileInfo(path(name)).absolutePath());
        QFile out(path(name));
        QVERIFY(out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size());
    }

    // The default of a type as the user's mimeapps.list has it (xdg-mime writes only
    // the [Default Applications] group there).
    QString userDefault(const QString &type) const
    {
        QFile list(path(u"config/mimeapps.list"_s));
        const QRegularExpression line(u'^' + QRegularExpression::escape(type) + u"=([^;\n]*)"_s,
            QRegularExpression::MultilineOption);
        return list.open(QIODevice::ReadOnly)
            ? line.match(QString::fromUtf8(list.readAll())).captured(1)
            : QString();
    }

private slots:
    void initTestCase()
    {
        // Nothing of the machine's own desktop may leak in.
        qputenv("HOME", m_home.path().toUtf8());
        qputenv("XDG_CONFIG_HOME", path(u"config"_s).toUtf8());
        qputenv("XDG_DATA_HOME", path(u"data"_s).toUtf8());
        qputenv("XDG_CONFIG_DIRS", path(u"sysconfig"_s).toUtf8());
        qputenv("XDG_DATA_DIRS", path(u"sysdata"_s).toUtf8());
        qputenv("XDG_CURRENT_DESKTOP", "X-Generic");
        qunsetenv("BROWSER");
        QDir().mkpath(path(u"vantrell"_s));
        QDir().mkpath(path(u"config"_s));
    }

    void changeAndRestoreKeepTheUsersEarlierBrowser()
    {
        DefaultBrowser browser(path(u"vantrell"_s));
        QCOMPARE(browser.makeDefault().outcome, DefaultBrowser::Outcome::DesktopFileMissing);
        QVERIFY(!QFile::exists(browser.recordPath()));

        const QByteArray entry = "[Desktop Entry]\nType=Application\nName=X\nExec=true %U\n";
        write(u"data/applications/vantrell.desktop"_s,
            entry + "MimeType=x-scheme-handler/http;x-scheme-handler/https;text/html;\n");
        write(u"data/applications/other.desktop"_s,
            entry + "MimeType=x-scheme-handler/http;text/html;\n");
        write(u"config/mimeapps.list"_s,
            "[Default Applications]\nx-scheme-handler/http=other.desktop\n"
            "text/html=other.desktop\n");
        QVERIFY(!browser.isDefault());

        const DefaultBrowser::Result made = browser.makeDefault();
        QVERIFY2(made.ok(), qPrintable(browser.message(made)));
        for (const QString &type : DefaultBrowser::types())
            QCOMPARE(userDefault(type), u"vantrell.desktop"_s);
        QVERIFY(browser.isDefault());
        QCOMPARE(browser.previousBrowser(), u"other.desktop"_s);

        // A second change keeps the first record: Vantrell never becomes its own predecessor.
        QVERIFY(browser.makeDefault().ok());
        QCOMPARE(browser.previousBrowser(), u"other.desktop"_s);

        const DefaultBrowser::Result restored = browser.restorePrevious();
        QVERIFY2(restored.ok(), qPrintable(browser.message(restored)));
        // The earlier browser takes the web's schemes back, https included; a page type
        // that had no default has none again.
        for (const QString &type :
            {u"x-scheme-handler/http"_s, u"x-scheme-handler/https"_s, u"text/html"_s})
            QCOMPARE(userDefault(type), u"other.desktop"_s);
        QCOMPARE(userDefault(u"application/xhtml+xml"_s), QString());
        QVERIFY(!browser.hasPrevious());
        QCOMPARE(browser.restorePrevious().outcome, DefaultBrowser::Outcome::NothingToRestore);
    }

    void missingXdgUtilsAreNamed()
    {
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", m_home.path().toUtf8());
        DefaultBrowser browser(this->path(u"vantrell"_s));
        const DefaultBrowser::Result result = browser.makeDefault();
        qputenv("PATH", path);
        QCOMPARE(result.outcome, DefaultBrowser::Outcome::XdgUtilsMissing);
        QVERIFY(browser.message(result).contains(u"xdg-utils"_s));
    }
};

QTEST_GUILESS_MAIN(DefaultBrowserTest)
#include "defaultbrowser_test.moc"
