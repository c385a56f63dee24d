#include "core/desktop/defaultbrowser.h"

#include <QDir>
#include <QFile>
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

    static void write(const QString &file, const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(file).absolutePath());
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size());
    }

    // The default per type as the user's mimeapps.list has it.
    QString userDefault(const QString &type) const
    {
        QFile list(path(u"config/mimeapps.list"_s));
        if (!list.open(QIODevice::ReadOnly))
            return QString();
        bool inDefaults = false;
        for (const QByteArray &line : list.readAll().split('\n')) {
            if (line.startsWith('['))
                inDefaults = line.trimmed() == "[Default Applications]";
            else if (inDefaults && line.startsWith((type + u'=').toUtf8()))
                return QString::fromUtf8(line.mid(type.size() + 1)).remove(u';').trimmed();
        }
        return QString();
    }

    void installDesktopFile(const QString &id, const QByteArray &types)
    {
        write(path(u"data/applications/"_s + id),
            "[Desktop Entry]\nType=Application\nName=X\nExec=/bin/true %U\nMimeType=" + types
                + "\n");
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

        installDesktopFile(
            u"vantrell.desktop"_s, "x-scheme-handler/http;x-scheme-handler/https;text/html;");
        installDesktopFile(u"other.desktop"_s, "x-scheme-handler/http;text/html;");
        write(path(u"config/mimeapps.list"_s),
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
