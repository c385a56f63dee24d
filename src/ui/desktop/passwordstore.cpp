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

enum class State { Unknown, Usable, Unusable };
State g_state = State::Unknown;

// A store that the keychain library speaks to runs on the session bus, or can be
// started there.
bool storeOnBus()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface())
        return false;
    const QDBusReply<QStringList> startable = bus.interface()->activatableServiceNames();
    for (const QString &name : {QStringLiteral("org.freedesktop.secrets"),
             QStringLiteral("org.kde.kwalletd5"), QStringLiteral("org.kde.kwalletd6")}) {
        if (bus.interface()->isServiceRegistered(name)
            || (startable.isValid() && startable.value().contains(name)))
            return true;
    }
    return false;
}
} // namespace

bool isAvailable()
{
    return g_state == State::Usable;
}

void probe(QObject *context, const std::function<void(bool)> &done)
{
    if (g_state == State::Unknown && !storeOnBus())
        g_state = State::Unusable;
    if (g_state != State::Unknown) {
        done(g_state == State::Usable);
        return;
    }
    // The library knows best whether it can use the store: a look-up of a key that
    // need not exist tells.
    auto *read = new QKeychain::ReadPasswordJob(Service);
    read->setKey(QStringLiteral("probe"));
    QObject::connect(read, &QKeychain::Job::finished, context, [done](QKeychain::Job *job) {
        const bool usable
            = job->error() == QKeychain::NoError || job->error() == QKeychain::EntryNotFound;
        g_state = usable ? State::Usable : State::Unusable;
        done(usable);
    });
    read->start();
}

QString whereText()
{
    return uiText(isAvailable() ? 2346 : 2347);
}

namespace {
void readAll(Prefer &preferences, QObject *context, const std::function<void()> &done)
{
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
} // namespace

void load(Prefer &preferences, QObject *context, const std::function<void()> &done)
{
    Prefer *prefs = &preferences;
    probe(context, [prefs, context, done](bool usable) {
        if (usable) {
            readAll(*prefs, context, done);
        } else {
            prefs->setPasswordsInSecretStore(false);
            done();
        }
    });
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
