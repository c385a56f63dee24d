#include "ui/browser/infobar.h"

#include "core/base/uitexts.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

InfoBar::InfoBar(QWidget *parent)
    : QWidget(parent)
    , m_label(new QLabel(this))
    , m_yes(new QPushButton(uiText(2029), this))
    , m_no(new QPushButton(uiText(2030), this))
    , m_close(new QPushButton(this))
{
    setAutoFillBackground(true);
    QPalette colours = palette();
    colours.setColor(QPalette::Window, QColor(255, 244, 206));
    colours.setColor(QPalette::WindowText, QColor(40, 30, 0));
    setPalette(colours);
    m_label->setWordWrap(true);
    m_close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    m_close->setFlat(true);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 4, 4);
    layout->addWidget(m_label, 1);
    layout->addWidget(m_yes);
    layout->addWidget(m_no);
    layout->addWidget(m_close);
    connect(m_yes, &QPushButton::clicked, this, [this] { answer(true); });
    connect(m_no, &QPushButton::clicked, this, [this] { answer(false); });
    connect(m_close, &QPushButton::clicked, this, [this] { answer(false); });
    hide();
}

void InfoBar::showMessage(const QString &text)
{
    if (m_answer)
        answer(false);
    m_label->setText(text);
    m_yes->hide();
    m_no->hide();
    show();
}

void InfoBar::ask(const QString &text, std::function<void(bool)> answerFn)
{
    if (m_answer)
        answer(false); // an older question is declined
    m_answer = std::move(answerFn);
    m_label->setText(text);
    m_yes->show();
    m_no->show();
    show();
}

QString InfoBar::text() const
{
    return isVisible() ? m_label->text() : QString();
}

void InfoBar::answer(bool yes)
{
    hide();
    if (m_answer)
        std::exchange(m_answer, nullptr)(yes);
}
