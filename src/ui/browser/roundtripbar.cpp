#include "ui/browser/roundtripbar.h"

#include "core/base/uitexts.h"
#include "core/browsing/roundtrip.h"
#include "ui/browser/sharedicons.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

RoundtripBar::RoundtripBar(QWidget *parent)
    : QWidget(parent)
    , m_label(new QLabel(this))
    , m_pause(new QPushButton(uiText(2584), this))
    , m_next(new QPushButton(uiText(2586), this))
    , m_stop(new QPushButton(uiText(2587), this))
    , m_close(new QPushButton(this))
{
    setAutoFillBackground(true);
    QPalette colours = palette();
    colours.setColor(QPalette::Window, QColor(222, 235, 250));
    colours.setColor(QPalette::WindowText, QColor(10, 30, 60));
    setPalette(colours);
    m_label->setTextFormat(Qt::PlainText);
    m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_close->setIcon(
        SharedIcons::themed(QStringLiteral("window-close"), QStyle::SP_TitleBarCloseButton));
    m_close->setFlat(true);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 2, 4, 2);
    layout->addWidget(m_label, 1);
    layout->addWidget(m_pause);
    layout->addWidget(m_next);
    layout->addWidget(m_stop);
    layout->addWidget(m_close);
    connect(m_close, &QPushButton::clicked, this, &QWidget::hide);
    hide();
}

void RoundtripBar::follow(Roundtrip *roundtrip)
{
    for (QPushButton *button : {m_pause, m_next, m_stop})
        button->disconnect();
    connect(m_pause, &QPushButton::clicked, roundtrip, [roundtrip] {
        if (roundtrip->isPaused())
            roundtrip->resume();
        else
            roundtrip->pause();
    });
    connect(m_next, &QPushButton::clicked, roundtrip, &Roundtrip::next);
    connect(m_stop, &QPushButton::clicked, roundtrip, &Roundtrip::stop);
    connect(roundtrip, &Roundtrip::changed, this, [this, roundtrip] { update(roundtrip); });
    connect(roundtrip, &Roundtrip::finished, this, [this, roundtrip] { showSummary(roundtrip); });
    update(roundtrip);
    show();
}

void RoundtripBar::update(Roundtrip *roundtrip)
{
    for (QPushButton *button : {m_pause, m_next, m_stop})
        button->show();
    m_close->hide();
    m_pause->setText(uiText(roundtrip->isPaused() ? 2585 : 2584));
    m_label->setText(uiText(roundtrip->isPaused() ? 2592 : 2583)
                         .arg(roundtrip->position())
                         .arg(roundtrip->count())
                         .arg(roundtrip->current()));
}

void RoundtripBar::showSummary(Roundtrip *roundtrip)
{
    for (QPushButton *button : {m_pause, m_next, m_stop})
        button->hide();
    m_close->show();
    m_label->setText(uiText(roundtrip->wasStopped() ? 2589 : 2588)
                         .arg(roundtrip->visited())
                         .arg(roundtrip->count())
                         .arg(roundtrip->failed()));
}

QString RoundtripBar::text() const
{
    return isVisible() ? m_label->text() : QString();
}
