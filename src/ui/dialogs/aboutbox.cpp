#include "ui/dialogs/aboutbox.h"

#include "core/base/appinfo.h"
#include "core/base/uitexts.h"
#include "engine/webenginesetup.h"
#include "ui/frame/appicon.h"

#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QUrl>
#include <QVBoxLayout>

AboutBox::AboutBox(const QString &dataFolder, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(uiText(2410));
    auto *icon = new QLabel(this);
    icon->setPixmap(AppIcon::make().pixmap(64, 64));
    icon->setAlignment(Qt::AlignTop);
    auto *label = new QLabel(text(dataFolder), this);
    label->setObjectName(QStringLiteral("aboutText"));
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextBrowserInteraction);
    label->setMinimumWidth(420);
    connect(label, &QLabel::linkActivated, this, [this, dataFolder] {
        if (!QDesktopServices::openUrl(QUrl::fromLocalFile(dataFolder)))
            QMessageBox::warning(
                this, uiText(100), uiText(2416).arg(QDir::toNativeSeparators(dataFolder)));
    });
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto *row = new QHBoxLayout;
    row->addWidget(icon);
    row->addWidget(label, 1);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(row);
    layout->addWidget(buttons);
}

QString AboutBox::text(const QString &dataFolder)
{
    const QString folder = QDir::toNativeSeparators(dataFolder);
    return QStringLiteral("<h2>") + AppInfo::applicationTitle().toHtmlEscaped()
        + QStringLiteral("</h2><p>") + uiText(2075).arg(AppInfo::versionString()).toHtmlEscaped()
        + QStringLiteral("</p><p>")
        + uiText(2411).arg(WebEngineSetup::chromiumVersion()).toHtmlEscaped()
        + QStringLiteral("<br>") + uiText(2412).arg(QString::fromLatin1(qVersion())).toHtmlEscaped()
        + QStringLiteral("</p><p>") + uiText(2413).toHtmlEscaped()
        + QStringLiteral("<br><a href=\"")
        + QUrl::fromLocalFile(dataFolder).toString(QUrl::FullyEncoded).toHtmlEscaped()
        + QStringLiteral("\">") + folder.toHtmlEscaped() + QStringLiteral("</a></p><p>")
        + uiText(2414).toHtmlEscaped() + QStringLiteral("</p><p>") + uiText(2415).toHtmlEscaped()
        + QStringLiteral("</p>");
}
