#include "core/base/uitexts.h"
#include "core/mail/mailchecker.h"
#include "core/prefs/prefer.h"
#include "scriptedpop3server.h"
#include "ui/desktop/mailwatcher.h"

#include <QApplication>
#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

// The user's side of the mail check: the notice, its chime and the status text.
class MailWatcherTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { UiTexts::load(UiTexts::Language::German); }
    void init() { QTest::failOnWarning(QRegularExpression(QStringLiteral(".*"))); }

    void noticeChimesOnceUntilTheMailProgramStarts()
    {
        // The chime is built into the program.
        QFile chime(QStringLiteral(":/sounds/notify.wav"));
        QVERIFY(chime.open(QIODevice::ReadOnly) && chime.read(4) == "RIFF");
        ScriptedPop3Server first, second;
        Prefer p;
        p.setMailSrv1(first.address());
        p.setMailSrv2(QStringLiteral("pop3://no such host"));
        p.setMailSrv3(second.address());
        p.setEnableMailCheck1(-1);
        p.setEnableMailCheck2(-1);
        p.setEnableMailCheck3(-1);
        MailWatcher watcher;
        watcher.checker()->InitForPOP3(false, p);
        QStringList heard; // each announcement, and whether it chimed
        connect(
            &watcher, &MailWatcher::announced, this, [&heard](const QString &server, bool chime) {
                heard.append(server + (chime ? QStringLiteral(" chime") : QString()));
            });
        QSignalSpy notice(&watcher, &MailWatcher::mailNotice);
        QSignalSpy status(&watcher, &MailWatcher::statusText);
        QSignalSpy finished(watcher.checker(), &MailChecker::pollFinished);
        const auto poll = [&] {
            watcher.checker()->poll();
            return finished.wait(5000);
        };

        // Two mailboxes with mail in one poll: one chime, the notice names the last.
        QVERIFY(poll());
        QCOMPARE(
            heard, (QStringList {first.address() + QStringLiteral(" chime"), second.address()}));
        QVERIFY(watcher.isNoticeShown());
        QCOMPARE(notice.last(),
            (QList<QVariant> {true, QString(u"Sie haben E-Mail ! (" + second.address() + u')')}));
        // Progress for each mailbox, and the bad address stays reported after the poll.
        QCOMPARE(status.first().first().toString(),
            first.address() + QStringLiteral(" Server wird nach E-Mail durchsucht..."));
        QVERIFY2(status.last().first().toString().contains(QRegularExpression(QStringLiteral(
                     "^Es gab Probleme beim Durchsuchen von E-Mail !.*no such host"))),
            qPrintable(status.last().first().toString()));

        // A later poll while the notice shows stays silent; after the mail program has
        // started (or the notice was clicked) the next announcement chimes again.
        QVERIFY(poll());
        watcher.mailProgramStarted();
        QVERIFY(!watcher.isNoticeShown());
        QCOMPARE(notice.last(), (QList<QVariant> {false, QString()}));
        QVERIFY(poll());
        QCOMPARE(heard.mid(2),
            (QStringList {first.address(), second.address(),
                first.address() + QStringLiteral(" chime"), second.address()}));
    }
};

QTEST_MAIN(MailWatcherTest)
#include "mailwatcher_test.moc"
