#include "ui/browser/findbar.h"

#include "core/base/uitexts.h"
#include "engine/pageview.h"
#include "ui/browser/sharedicons.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>
#include <QToolButton>

FindBar::FindBar(PageView *page, QWidget *parent)
    : QWidget(parent)
    , m_page(page)
{
    setObjectName(QStringLiteral("FindBar"));
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(4, 2, 4, 2);
    row->setSpacing(4);

    auto *label = new QLabel(uiText(2035), this);
    m_text = new QLineEdit(this);
    m_text->setObjectName(QStringLiteral("findText"));
    m_text->setClearButtonEnabled(true);
    m_text->setMaximumWidth(280);
    label->setBuddy(m_text);
    m_text->installEventFilter(this);

    const auto button = [this](const QString &name, const QIcon &icon, const QString &tip) {
        auto *b = new QToolButton(this);
        b->setObjectName(name);
        b->setAutoRaise(true);
        b->setIcon(icon);
        b->setToolTip(tip);
        return b;
    };
    QToolButton *previous = button(QStringLiteral("findPrevious"),
        SharedIcons::themed(QStringLiteral("go-up"), QStyle::SP_ArrowUp), uiText(2040));
    QToolButton *next = button(QStringLiteral("findNext"),
        SharedIcons::themed(QStringLiteral("go-down"), QStyle::SP_ArrowDown), uiText(2039));
    QToolButton *closer = button(QStringLiteral("findClose"),
        SharedIcons::themed(QStringLiteral("window-close"), QStyle::SP_TitleBarCloseButton),
        uiText(2041));
    m_result = new QLabel(this);
    m_result->setObjectName(QStringLiteral("findResult"));

    row->addWidget(label);
    row->addWidget(m_text);
    row->addWidget(previous);
    row->addWidget(next);
    row->addWidget(m_result, 1);
    row->addWidget(closer);

    connect(m_text, &QLineEdit::textChanged, this, [this] { find(false); });
    connect(previous, &QToolButton::clicked, this, &FindBar::findPrevious);
    connect(next, &QToolButton::clicked, this, &FindBar::findNext);
    connect(closer, &QToolButton::clicked, this, &FindBar::close);
    hide();
}

void FindBar::open()
{
    show();
    m_text->selectAll();
    m_text->setFocus(Qt::ShortcutFocusReason);
    if (!m_text->text().isEmpty())
        find(false);
}

void FindBar::close()
{
    ++m_request; // a late answer of the engine no longer counts
    hide();
    m_result->clear();
    if (m_page) {
        m_page->clearFind();
        m_page->setFocus(Qt::OtherFocusReason);
    }
}

void FindBar::findNext()
{
    find(false);
}

void FindBar::findPrevious()
{
    find(true);
}

QString FindBar::resultText() const
{
    return m_result->text();
}

void FindBar::find(bool backward)
{
    if (!m_page)
        return;
    const QString text = m_text->text();
    const quint64 request = ++m_request;
    if (text.isEmpty()) {
        m_page->clearFind();
        m_result->clear();
        return;
    }
    QPointer<FindBar> self = this;
    m_page->findText(text, backward, [self, request](int active, int count) {
        if (self && request == self->m_request)
            self->showResult(active, count);
    });
}

void FindBar::showResult(int active, int count)
{
    if (count > 0)
        m_result->setText(uiText(2036).arg(active).arg(count));
    else
        m_result->setText(uiText(2037));
}

bool FindBar::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_text && event->type() == QEvent::ShortcutOverride
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        // Escape belongs to the bar while it has the focus, not to the frame's Stop.
        event->accept();
        return true;
    }
    if (watched == m_text && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Escape) {
            close();
            return true;
        }
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            find(key->modifiers() & Qt::ShiftModifier);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}
