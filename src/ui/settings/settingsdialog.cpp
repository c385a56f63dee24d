#include "ui/settings/settingsdialog.h"

#include "core/base/feedmark.h"
#include "core/base/uitexts.h"
#include "core/prefs/prefer.h"
#include "ui/desktop/mailprogram.h"
#include "ui/desktop/passwordstore.h"
#include "ui/settings/settingspages.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QStackedWidget>
#include <QTabWidget>
#include <QVBoxLayout>

namespace {
// A home title that opens the start page as a feed, by the Home button's test or by
// the start-up's.
bool isFeedHome(const QString &homeTitle)
{
    return FeedMark::isFeedTitle(homeTitle) || FeedMark::isFeedStartPageTitle(homeTitle);
}
} // namespace

SettingsDialog::SettingsDialog(
    Prefer &preferences, const QString &prefPath, const QString &dataFolder, QWidget *parent)
    : QDialog(parent)
    , m_prefs(preferences)
    , m_prefPath(prefPath)
{
    setObjectName(QStringLiteral("frmSettings"));
    setWindowTitle(uiText(700));
    m_pageList = new QListWidget(this);
    m_pageList->setObjectName(QStringLiteral("pageList"));
    m_pages = new QStackedWidget(this);
    addPage(SettingsPages::start(m_pages, dataFolder), uiText(2310));
    addPage(SettingsPages::windows(m_pages), uiText(2311));
    addPage(SettingsPages::popups(m_pages), uiText(2312));
    addPage(SettingsPages::history(m_pages), uiText(2313));
    addPage(SettingsPages::search(m_pages), uiText(2314));
    addPage(SettingsPages::mail(m_pages), uiText(704));
    addPage(SettingsPages::programs(m_pages), uiText(2316));
    int widest = 0;
    for (int i = 0; i < m_pageList->count(); ++i)
        widest = qMax(widest, fontMetrics().horizontalAdvance(m_pageList->item(i)->text()));
    m_pageList->setFixedWidth(widest + 32);
    connect(m_pageList, &QListWidget::currentRowChanged, m_pages, &QStackedWidget::setCurrentIndex);
    m_pageList->setCurrentRow(0);

    m_message = new QLabel(this);
    m_message->setObjectName(QStringLiteral("message"));
    m_message->setWordWrap(true);
    auto *buttons = new QDialogButtonBox(this);
    buttons->addButton(uiText(717), QDialogButtonBox::AcceptRole)
        ->setObjectName(QStringLiteral("ok"));
    buttons->addButton(uiText(716), QDialogButtonBox::RejectRole)
        ->setObjectName(QStringLiteral("cancel"));
    QPushButton *applyButton = buttons->addButton(uiText(738), QDialogButtonBox::ApplyRole);
    applyButton->setObjectName(QStringLiteral("apply"));
    connect(buttons, &QDialogButtonBox::accepted, this, &SettingsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &SettingsDialog::reject);
    connect(applyButton, &QPushButton::clicked, this, &SettingsDialog::apply);

    auto *body = new QHBoxLayout;
    body->addWidget(m_pageList);
    body->addWidget(m_pages, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(body, 1);
    layout->addWidget(m_message);
    layout->addWidget(buttons);
    resize(sizeHint().expandedTo(QSize(720, 520)));

    using namespace PrefRules;
    watch(QStringLiteral("HomeUrl"), checkAddress);
    watch(QStringLiteral("SearchEngine"), checkSearchTemplate);
    watch(QStringLiteral("SearchEngineFile"), checkFile);
    QAbstractButton *layoutOption
        = findChild<QButtonGroup *>(QStringLiteral("LoadOption"))->button(2);
    watch(
        QStringLiteral("Layout"),
        [layoutOption](
            const QString &text) { return checkLayoutFile(text, layoutOption->isChecked()); },
        layoutOption);
    watch(QStringLiteral("MailClient"),
        [](const QString &text) { return checkProgram(MailProgram::commandOf(text).value(0)); });
    for (int account = 1; account <= 4; ++account) {
        const QString n = QString::number(account);
        auto *enabled = findChild<QCheckBox *>(QStringLiteral("EnableMailCheck") + n);
        watch(
            QStringLiteral("MailSrv") + n,
            [enabled](const QString &text) { return checkMailServer(text, enabled->isChecked()); },
            enabled);
    }

    auto *useCurrent = findChild<QPushButton *>(QStringLiteral("useCurrentPage"));
    useCurrent->setEnabled(false);
    connect(useCurrent, &QPushButton::clicked, this, [this] {
        findChild<QLineEdit *>(QStringLiteral("HomeUrl"))->setText(m_currentAddress);
        m_homeTitle = m_currentTitle;
        findChild<QCheckBox *>(QStringLiteral("HomeTitle"))->setChecked(isFeedHome(m_homeTitle));
    });
    auto *storage = findChild<QLabel *>(QStringLiteral("passwordStorage"));
    PasswordStore::probe(
        storage, [storage](bool) { storage->setText(PasswordStore::whereText()); });
    load();
}

void SettingsDialog::addPage(QWidget *page, const QString &title)
{
    m_pageList->addItem(title);
    m_pages->addWidget(page);
}

void SettingsDialog::setCurrentPage(const QString &address, const QString &homeTitle)
{
    m_currentAddress = address;
    m_currentTitle = homeTitle;
    findChild<QPushButton *>(QStringLiteral("useCurrentPage"))->setEnabled(!address.isEmpty());
}

QString SettingsDialog::message() const
{
    return m_message->text();
}

void SettingsDialog::watch(const QString &field,
    std::function<PrefRules::Check(const QString &)> rule, QAbstractButton *alsoOn)
{
    auto *edit = findChild<QLineEdit *>(field);
    connect(edit, &QLineEdit::textChanged, this,
        [this, field, rule](const QString &text) { showCheck(field, rule(text)); });
    if (alsoOn)
        connect(alsoOn, &QAbstractButton::toggled, this,
            [this, field, rule, edit] { showCheck(field, rule(edit->text())); });
    showCheck(field, rule(edit->text()));
}

void SettingsDialog::showCheck(const QString &field, const PrefRules::Check &check)
{
    m_checks.insert(field, check);
    auto *note = findChild<QLabel *>(field + QStringLiteral("Note"));
    const bool refused = check.level == PrefRules::Check::Level::Refused;
    note->setText(check.message);
    note->setVisible(!check.message.isEmpty());
    // A refusal in the error colour; a warning in the colour of other hints.
    QPalette palette = note->palette();
    palette.setColor(QPalette::WindowText,
        refused ? QColor(0xb0, 0x10, 0x10) : palette.color(QPalette::PlaceholderText));
    note->setPalette(palette);
}

bool SettingsDialog::hasRefusal()
{
    for (auto it = m_checks.cbegin(); it != m_checks.cend(); ++it) {
        if (it.value().level != PrefRules::Check::Level::Refused)
            continue;
        // The page of the first refused editor comes up with the editor in focus.
        QWidget *editor = findChild<QWidget *>(it.key());
        for (int i = 0; i < m_pages->count(); ++i) {
            if (m_pages->widget(i)->isAncestorOf(editor))
                m_pageList->setCurrentRow(i);
        }
        for (QWidget *w = editor; w; w = w->parentWidget()) {
            if (auto *tabs = qobject_cast<QTabWidget *>(w)) {
                for (int i = 0; i < tabs->count(); ++i) {
                    if (tabs->widget(i)->isAncestorOf(editor))
                        tabs->setCurrentIndex(i);
                }
            }
        }
        editor->setFocus();
        return true;
    }
    return false;
}

void SettingsDialog::load()
{
    m_homeTitle = m_prefs.HomeTitle();
    for (const Prefer::Field &f : Prefer::fields()) {
        QObject *editor = findChild<QObject *>(QLatin1String(f.name));
        const QString value = m_prefs.valueText(f);
        if (auto *edit = qobject_cast<QLineEdit *>(editor)) {
            edit->setText(value.trimmed());
        } else if (auto *box = qobject_cast<QCheckBox *>(editor)) {
            box->setChecked(f.number ? value.toInt() != 0 : isFeedHome(value));
        } else if (auto *spin = qobject_cast<QSpinBox *>(editor)) {
            // A stored number outside the range shows as the nearest one offered.
            spin->setValue(value.toInt());
        } else if (auto *group = qobject_cast<QButtonGroup *>(editor)) {
            QAbstractButton *button = group->button(value.toInt());
            // The frame puts the tab strip at the bottom for any code but 1.
            if (!button && QLatin1String(f.name) == QLatin1String("TabAlign"))
                button = group->button(3);
            if (button)
                button->setChecked(true);
        } else if (auto *combo = qobject_cast<QComboBox *>(editor)) {
            combo->setCurrentIndex(combo->findData(value.trimmed()));
        }
    }
}

void SettingsDialog::store()
{
    for (const Prefer::Field &f : Prefer::fields()) {
        QObject *editor = findChild<QObject *>(QLatin1String(f.name));
        QString value = m_prefs.valueText(f);
        if (auto *edit = qobject_cast<QLineEdit *>(editor)) {
            value = edit->text().trimmed();
        } else if (auto *box = qobject_cast<QCheckBox *>(editor)) {
            if (f.number) {
                // A flag that stays on keeps its stored value (the status bar's is 1).
                if (!box->isChecked())
                    value = QStringLiteral("0");
                else if (value.toInt() == 0)
                    value = QStringLiteral("-1");
            } else {
                const bool wasFeed = isFeedHome(m_homeTitle);
                const QString home = findChild<QLineEdit *>(QStringLiteral("HomeUrl"))->text();
                value = box->isChecked() == wasFeed ? m_homeTitle
                    : box->isChecked()              ? FeedMark::markedTitle(home.trimmed())
                                                    : QString();
            }
        } else if (auto *spin = qobject_cast<QSpinBox *>(editor)) {
            value = QString::number(spin->value());
        } else if (auto *group = qobject_cast<QButtonGroup *>(editor)) {
            if (group->checkedId() != -1)
                value = QString::number(group->checkedId());
        } else if (auto *combo = qobject_cast<QComboBox *>(editor)) {
            // The folder chooser gives the folder's file and its name together.
            if (combo->currentIndex() >= 0) {
                value = combo->currentData().toString();
                m_prefs.setGroup(combo->currentText());
            }
        } else {
            continue;
        }
        m_prefs.setValueText(f, value);
    }
    m_homeTitle = m_prefs.HomeTitle();
}

bool SettingsDialog::apply()
{
    m_message->clear();
    if (hasRefusal()) {
        m_message->setText(uiText(739) + u' ' + uiText(2309));
        return false;
    }
    store();
    // With a secret store the file gets no password; should the store refuse one
    // later, the file takes them back and the user is told.
    const bool useStore = PasswordStore::isAvailable();
    m_prefs.setPasswordsInSecretStore(useStore);
    if (!m_prefs.SavePref(m_prefPath)) {
        m_message->setText(uiText(2351).arg(m_prefs.lastError()));
        return false;
    }
    if (useStore) {
        QWidget *owner = parentWidget();
        PasswordStore::save(m_prefs, m_prefPath, owner ? static_cast<QObject *>(owner) : qApp,
            [owner = QPointer<QWidget>(owner)](
                const QString &problem) { QMessageBox::warning(owner, uiText(1113), problem); });
    }
    QStringList problems;
    for (int account : m_prefs.unstorablePasswords())
        problems.append(uiText(2348).arg(account));
    m_message->setText(problems.join(u'\n'));
    emit applied();
    return true;
}

void SettingsDialog::accept()
{
    // A password the file could not take stays on screen for the user to change.
    if (apply() && m_message->text().isEmpty())
        QDialog::accept();
}
