#include "ui/browser/infobar.h"

#include "core/base/uitexts.h"
#include "ui/browser/sharedicons.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

InfoBar::InfoBar(QWidget *parent)
    : QWidget(parent)
    , m_label(new QLabel(this))
    , m_yes(new QPushButton(this))
    , m_no(new QPushButton(this))
    , m_close(new QPushButton(this))
{
    setAutoFillBackground(true);
    QPalette colours = palette();
    colours.setColor(QPalette::Window, QColor(255, 244, 206));
    colours.setColor(QPalette::WindowText, QColor(40, 30, 0));
    setPalette(colours);
    m_label->setWordWrap(true);
    m_close->setIcon(
        SharedIcons::themed(QStringLiteral("window-close"), QStyle::SP_TitleBarCloseButton));
    m_close->setFlat(true);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 4, 4);
    layout->addWidget(m_label, 1);
    layout->addWidget(m_yes);
    layout->addWidget(m_no);
    layout->addWidget(m_close);
    connect(m_yes, &QPushButton::clicked, this, [this] { choose(1); });
    connect(m_no, &QPushButton::clicked, this, [this] { choose(2); });
    connect(m_close, &QPushButton::clicked, this, [this] { choose(0); });
    hide();
}

void InfoBar::showMessage(const QString &text)
{
    offer(text, QString(), QString(), nullptr);
}

void InfoBar::ask(const QString &text, std::function<void(bool)> answerFn)
{
    offer(text, uiText(2029), uiText(2030),
        [answerFn = std::move(answerFn)](int choice) { answerFn(choice == 1); });
}

void InfoBar::offer(const QString &text, const QString &first, const QString &second,
    std::function<void(int)> choice)
{
    if (m_choice)
        choose(0); // an older question is declined
    m_choice = std::move(choice);
    m_label->setText(text);
    m_yes->setText(first);
    m_no->setText(second);
    m_yes->setVisible(!first.isEmpty());
    m_no->setVisible(!second.isEmpty());
    show();
}

QString InfoBar::text() const
{
    return isVisible() ? m_label->text() : QString();
}

void InfoBar::answer(bool yes)
{
    choose(yes ? 1 : 0);
}

void InfoBar::choose(int choice)
{
    hide();
    if (m_choice)
        std::exchange(m_choice, nullptr)(choice);
}
