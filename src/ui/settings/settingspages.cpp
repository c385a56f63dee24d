#include "ui/settings/settingspages.h"

#include "core/base/uitexts.h"
#include "core/model/book.h"
#include "core/prefs/prefrules.h"
#include "core/prefs/searchpresets.h"
#include "ui/settings/mailaccountpage.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

#include <optional>

namespace SettingsPages {

namespace {

QLabel *hint(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    return label;
}

QCheckBox *check(const char *name, int textId, QWidget *parent)
{
    auto *box = new QCheckBox(uiText(textId), parent);
    box->setObjectName(QLatin1String(name));
    return box;
}

// "Browse..." next to a path: the chosen file replaces the text. A program's path goes
// into a command line, where a blank in it would split it.
QPushButton *browse(QWidget *parent, const QString &filter, QLineEdit *target)
{
    auto *button = new QPushButton(uiText(718), parent);
    QObject::connect(button, &QPushButton::clicked, target, [parent, filter, target] {
        const QString current = target->text().trimmed();
        QString path = QFileDialog::getOpenFileName(
            parent, QString(), QFileInfo(current).absolutePath(), filter);
        if (filter.isEmpty() && path.contains(u' '))
            path = u'"' + path + u'"';
        if (!path.isEmpty())
            target->setText(path);
    });
    return button;
}

// A line editor with the label where the dialog's verdict on it shows; a path gets a
// "Browse..." button for files of `browseFilter`.
QLineEdit *line(QFormLayout *form, const char *name, int labelId, QWidget *button = nullptr,
    const std::optional<QString> &browseFilter = std::nullopt)
{
    QWidget *parent = form->parentWidget();
    auto *edit = new QLineEdit(parent);
    edit->setObjectName(QLatin1String(name));
    if (browseFilter)
        button = browse(parent, *browseFilter, edit);
    auto *note = new QLabel(parent);
    note->setObjectName(QLatin1String(name) + QStringLiteral("Note"));
    note->setWordWrap(true);
    auto *row = new QHBoxLayout;
    row->addWidget(edit, 1);
    if (button)
        row->addWidget(button);
    // Without a label the editor takes the whole row.
    if (labelId) {
        form->addRow(uiText(labelId), row);
        form->addRow(QString(), note);
    } else {
        form->addRow(row);
        form->addRow(note);
    }
    return edit;
}

QButtonGroup *options(const char *name, QWidget *parent)
{
    auto *group = new QButtonGroup(parent);
    group->setObjectName(QLatin1String(name));
    return group;
}

QWidget *page(QWidget *parent)
{
    auto *widget = new QWidget(parent);
    new QVBoxLayout(widget);
    return widget;
}

QVBoxLayout *layoutOf(QWidget *widget)
{
    return static_cast<QVBoxLayout *>(widget->layout());
}

} // namespace

QWidget *start(QWidget *parent, const QString &dataFolder)
{
    QWidget *widget = page(parent);
    auto *homeForm = new QFormLayout;
    layoutOf(widget)->addLayout(homeForm);
    auto *useCurrent = new QPushButton(uiText(2320), widget);
    useCurrent->setObjectName(QStringLiteral("useCurrentPage"));
    line(homeForm, "HomeUrl", 705, useCurrent);
    homeForm->addRow(QString(), check("HomeTitle", 2321, widget));

    auto *atStart = new QGroupBox(uiText(709), widget);
    auto *steps = new QVBoxLayout(atStart);
    steps->addWidget(check("StartBrowser", 725, atStart));
    QButtonGroup *load = options("LoadOption", atStart);
    // The layout file and the folder are chosen below their option, which enables them.
    const auto option = [&](int code, int text) -> QFormLayout * {
        auto *radio = new QRadioButton(uiText(text), atStart);
        load->addButton(radio, code);
        steps->addWidget(radio);
        if (code < 2)
            return nullptr;
        auto *choice = new QWidget(atStart);
        choice->setEnabled(false);
        QObject::connect(radio, &QRadioButton::toggled, choice, &QWidget::setEnabled);
        auto *form = new QFormLayout(choice);
        form->setContentsMargins(24, 0, 0, 0);
        steps->addWidget(choice);
        return form;
    };
    option(0, 710);
    option(1, 711);
    line(option(2, 712), "Layout", 0, nullptr, uiText(1562) + QStringLiteral(" (*.wlt)"));
    QFormLayout *folderForm = option(3, 715);
    auto *folders = new QComboBox(folderForm->parentWidget());
    folders->setObjectName(QStringLiteral("GroupFile"));
    Book book(dataFolder);
    // Only an archive that exists is read: the dialog must not create one.
    if (QFileInfo::exists(book.indexPath()) && book.LoadAllThema()) {
        for (qsizetype i = 0; i < book.colThema.count(); ++i)
            folders->addItem(book.colThema.at(i).DirName(), book.colThema.at(i).FileName);
    }
    if (folders->count() == 0)
        folders->setPlaceholderText(uiText(2322));
    folderForm->addRow(folders);
    layoutOf(widget)->addWidget(atStart);
    layoutOf(widget)->addStretch();
    return widget;
}

QWidget *windows(QWidget *parent)
{
    QWidget *widget = page(parent);
    auto *tabs = new QGroupBox(uiText(703), widget);
    auto *tabsLayout = new QVBoxLayout(tabs);
    for (auto [name, text] :
        {std::pair {"TabStrip", 720}, std::pair {"TabButton", 721}, std::pair {"TabFontBold", 722}})
        tabsLayout->addWidget(check(name, text, tabs));
    QButtonGroup *align = options("TabAlign", tabs);
    // The codes the frame's menu writes too: 1 top, 3 bottom.
    for (auto [code, text] : {std::pair {1, 723}, std::pair {3, 724}}) {
        auto *radio = new QRadioButton(uiText(text), tabs);
        align->addButton(radio, code);
        tabsLayout->addWidget(radio);
    }
    layoutOf(widget)->addWidget(tabs);
    layoutOf(widget)->addWidget(check("StatusBar", 719, widget));

    auto *newWindows = new QGroupBox(uiText(2323), widget);
    auto *newLayout = new QVBoxLayout(newWindows);
    newLayout->addWidget(check("Adresszeile", 713, newWindows));
    newLayout->addWidget(check("Toolbar", 714, newWindows));
    layoutOf(widget)->addWidget(newWindows);
    layoutOf(widget)->addStretch();
    return widget;
}

QWidget *popups(QWidget *parent)
{
    QWidget *widget = page(parent);
    auto *group = new QGroupBox(uiText(727), widget);
    auto *layout = new QVBoxLayout(group);
    const struct
    {
        const char *name;
        int text;
        int explanation;
    } switches[] = {{"AllowOpenWin", 728, 2330}, {"AllowWinInBack", 729, 2331},
        {"AllowResizeWin", 730, 2332}, {"AllowWinRef", 731, 2333}};
    for (const auto &entry : switches) {
        layout->addWidget(check(entry.name, entry.text, group));
        QLabel *explanation = hint(uiText(entry.explanation), group);
        explanation->setIndent(24);
        layout->addWidget(explanation);
    }
    layoutOf(widget)->addWidget(group);
    layoutOf(widget)->addStretch();
    return widget;
}

QWidget *history(QWidget *parent)
{
    QWidget *widget = page(parent);
    auto *form = new QFormLayout;
    auto *rows = new QSpinBox(widget);
    rows->setMaximumWidth(rows->fontMetrics().horizontalAdvance(u'0') * 12);
    rows->setObjectName(QStringLiteral("HistoryRows"));
    const PrefRules::Range range = *PrefRules::rangeOf(QStringLiteral("HistoryRows"));
    rows->setRange(range.minimum, range.maximum);
    form->addRow(uiText(726), rows);
    form->addRow(QString(), hint(uiText(2334), widget));
    layoutOf(widget)->addLayout(form);
    layoutOf(widget)->addStretch();
    return widget;
}

QWidget *search(QWidget *parent)
{
    QWidget *widget = page(parent);
    auto *form = new QFormLayout;
    layoutOf(widget)->addLayout(form);
    auto *presets = new QComboBox(widget);
    presets->setObjectName(QStringLiteral("searchPreset"));
    for (const SearchPreset &preset : SearchPreset::all())
        presets->addItem(preset.name, preset.address);
    presets->addItem(uiText(2336));
    form->addRow(uiText(2335), presets);
    QLineEdit *engine = line(form, "SearchEngine", 706);
    form->addRow(QString(), hint(uiText(2337), widget));
    // A preset fills in its address; an address that is a preset's shows its name.
    QObject::connect(presets, &QComboBox::activated, engine, [presets, engine](int index) {
        const QString address = presets->itemData(index).toString();
        if (!address.isEmpty())
            engine->setText(address);
    });
    QObject::connect(engine, &QLineEdit::textChanged, presets, [presets](const QString &text) {
        const int index = presets->findData(text.trimmed());
        presets->setCurrentIndex(index >= 0 ? index : presets->count() - 1);
    });
    line(form, "SearchEngineFile", 707, nullptr, uiText(2338));
    layoutOf(widget)->addStretch();
    return widget;
}

QWidget *mail(QWidget *parent)
{
    QWidget *widget = page(parent);
    auto *accounts = new QTabWidget(widget);
    for (int account = 1; account <= 4; ++account)
        accounts->addTab(new MailAccountPage(account, accounts), uiText(732).arg(account));
    layoutOf(widget)->addWidget(accounts);
    layoutOf(widget)->addWidget(hint(uiText(2308), widget));
    auto *storage = hint(QString(), widget);
    storage->setObjectName(QStringLiteral("passwordStorage"));
    layoutOf(widget)->addWidget(storage);

    auto *form = new QFormLayout;
    auto *interval = new QSpinBox(widget);
    interval->setMaximumWidth(interval->fontMetrics().horizontalAdvance(u'0') * 12);
    interval->setObjectName(QStringLiteral("CheckIntervall"));
    const PrefRules::Range range = *PrefRules::rangeOf(QStringLiteral("CheckIntervall"));
    interval->setRange(range.minimum, range.maximum);
    form->addRow(uiText(737), interval);
    form->addRow(QString(), hint(uiText(2302).arg(range.minimum).arg(range.maximum), widget));
    layoutOf(widget)->addLayout(form);
    layoutOf(widget)->addStretch();
    return widget;
}

QWidget *programs(QWidget *parent)
{
    QWidget *widget = page(parent);
    auto *form = new QFormLayout;
    layoutOf(widget)->addLayout(form);
    // No filter: any program.
    line(form, "MailClient", 708, nullptr, QString());
    form->addRow(QString(), hint(uiText(2350), widget));
    layoutOf(widget)->addStretch();
    return widget;
}

} // namespace SettingsPages
