#include "ui/desktop/passwordstore.h"

#include "core/base/uitexts.h"
#include "core/prefs/prefer.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QPointer>
#include <qt6keychain/keychain.h>

#include <memory>

namespace PasswordStore {

namespace {
const QString Service = QStringLiteral("Vantrell");
const QString SecretService = QStringLiteral("org.freedesktop.secrets");

QString keyOf(int account)
{
    return QStringLiteral("mail-account-") + QString::number(account);
}

const Prefer::Field &passwordField(int account)
{
    return *Prefer::field(QStringLiteral("Pwd") + QString::number(account));
}

// Counts the answers of several jobs and runs `last` after the final one.
struct Pending
{
    int jobs = 0;
    bool failed = false;
    QString reason;
    std::function<void()> last;
    void finished()
    {
        if (--jobs != 0 || !last)
            return;
        // `last` holds this object; letting go of it here ends the cycle.
        const std::function<void()> run = std::move(last);
        last = nullptr;
        run();
    }
};

void write(
    int account, const QString &password, QObject *context, const std::shared_ptr<Pending> &pending)
{
    QKeychain::Job *job = nullptr;
    if (password.isEmpty()) {
        auto *remove = new QKeychain::DeletePasswordJob(Service);
        remove->setKey(keyOf(account));
        job = remove;
    } else {
        auto *store = new QKeychain::WritePasswordJob(Service);
        store->setKey(keyOf(account));
        store->setTextData(password);
        job = store;
    }
    ++pending->jobs;
    QObject::connect(job, &QKeychain::Job::finished, context, [pending](QKeychain::Job *done) {
        // Removing what is not there is no failure.
        if (done->error() != QKeychain::NoError && done->error() != QKeychain::EntryNotFound) {
            pending->failed = true;
            pending->reason = done->errorString();
        }
        pending->finished();
    });
    job->start();
}
} // namespace

bool isAvailable()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface())
        return false;
    if (bus.interface()->isServiceRegistered(SecretService))
        return true;
    const QDBusReply<QStringList> startable = bus.interface()->activatableServiceNames();
    return startable.isValid() && startable.value().contains(SecretService);
}

QString whereText()
{
    return uiText(isAvailable() ? 2346 : 2347);
}

void load(Prefer &preferences, QObject *context, const std::function<void()> &done)
{
    if (!isAvailable()) {
        preferences.setPasswordsInSecretStore(false);
        done();
        return;
    }
    auto pending = std::make_shared<Pending>();
    Prefer *prefs = &preferences;
    pending->jobs = 1; // held until every job has been started
    pending->last = [pending, prefs, done] {
        // Only when every password is in the store may the file drop them.
        prefs->setPasswordsInSecretStore(!pending->failed);
        done();
    };
    for (int account = 1; account <= 4; ++account) {
        auto *read = new QKeychain::ReadPasswordJob(Service);
        read->setKey(keyOf(account));
        ++pending->jobs;
        QObject::connect(read, &QKeychain::Job::finished, context,
            [pending, prefs, account, context](QKeychain::Job *job) {
                const Prefer::Field &field = passwordField(account);
                const QString inFile = prefs->valueText(field);
                if (job->error() == QKeychain::NoError)
                    prefs->setValueText(
                        field, static_cast<QKeychain::ReadPasswordJob *>(job)->textData());
                else if (job->error() == QKeychain::EntryNotFound && !inFile.isEmpty())
                    write(account, inFile, context, pending);
                else if (job->error() != QKeychain::EntryNotFound)
                    pending->failed = true;
                pending->finished();
            });
        read->start();
    }
    pending->finished();
}

void save(Prefer &preferences, const QString &prefPath, QObject *context,
    const std::function<void(const QString &)> &problem)
{
    auto pending = std::make_shared<Pending>();
    Prefer *prefs = &preferences;
    pending->jobs = 1;
    pending->last = [pending, prefs, prefPath, problem] {
        if (!pending->failed)
            return;
        // The file takes the passwords back, so none is lost.
        prefs->setPasswordsInSecretStore(false);
        prefs->SavePref(prefPath);
        problem(uiText(2352).arg(pending->reason));
    };
    for (int account = 1; account <= 4; ++account)
        write(account, preferences.valueText(passwordField(account)), context, pending);
    pending->finished();
}

} // namespace PasswordStore
