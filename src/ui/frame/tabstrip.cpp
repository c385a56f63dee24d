#include "ui/frame/tabstrip.h"

#include <QMouseEvent>

TabStrip::TabStrip(QWidget *parent)
    : QTabBar(parent)
{
    setObjectName(QStringLiteral("Registerzeile"));
    setExpanding(false);
    setElideMode(Qt::ElideRight);
    setUsesScrollButtons(true);
    setMovable(false);
    setDocumentMode(true);
    setTabsClosable(true);
    connect(this, &QTabBar::tabCloseRequested, this,
        [this](int index) { emit tabCloseClicked(keyAt(index)); });
}

QString TabStrip::escapeCaption(const QString &title)
{
    QString escaped = title;
    escaped.replace(u'&', QStringLiteral("&&"));
    return escaped;
}

void TabStrip::CreateTab(int number, const QString &caption)
{
    const int index = addTab(escapeCaption(caption));
    setTabData(index, keyOf(number));
    setTabToolTip(index, caption);
}

void TabStrip::UpdateTab(const QString &title, int number)
{
    if (title.isEmpty() || number < 1)
        return;
    const int index = indexOfKey(keyOf(number));
    if (index < 0)
        return;
    setTabText(index, escapeCaption(title));
    setTabToolTip(index, title);
}

void TabStrip::setTabNote(int number, const QString &toolTip, bool highlighted)
{
    const int index = indexOfKey(keyOf(number));
    if (index < 0)
        return;
    setTabToolTip(index, toolTip);
    setTabTextColor(index, highlighted ? palette().color(QPalette::Highlight) : QColor());
}

void TabStrip::RemoveTab(int number)
{
    const int index = indexOfKey(keyOf(number));
    if (index >= 0)
        removeTab(index);
}

int TabStrip::indexOfKey(const QString &key) const
{
    for (int i = 0; i < count(); ++i) {
        if (tabData(i).toString() == key)
            return i;
    }
    return -1;
}

QString TabStrip::keyAt(int index) const
{
    return tabData(index).toString();
}

void TabStrip::selectKey(const QString &key)
{
    const int index = indexOfKey(key);
    if (index >= 0 && index != currentIndex()) {
        const QSignalBlocker quiet(this);
        setCurrentIndex(index);
    }
}

void TabStrip::setButtonStyle(bool buttons)
{
    setDocumentMode(!buttons);
    setShape(buttons ? QTabBar::RoundedNorth : QTabBar::TriangularNorth);
    setDrawBase(!buttons);
    update();
}

void TabStrip::setBoldCaptions(bool bold)
{
    QFont captions = font();
    captions.setBold(bold);
    setFont(captions);
}

void TabStrip::mousePressEvent(QMouseEvent *event)
{
    const int index = tabAt(event->position().toPoint());
    if (event->button() == Qt::RightButton) {
        emit tabRightClicked(event->globalPosition().toPoint());
        return;
    }
    if (event->button() == Qt::MiddleButton) {
        if (index >= 0)
            emit tabCloseClicked(keyAt(index));
        return;
    }
    QTabBar::mousePressEvent(event);
    if (event->button() == Qt::LeftButton && index >= 0)
        emit tabLeftClicked(keyAt(index));
}

QSize TabStrip::minimumTabSizeHint(int index) const
{
    QSize hint = QTabBar::minimumTabSizeHint(index);
    const bool across = shape() == RoundedNorth || shape() == RoundedSouth
        || shape() == TriangularNorth || shape() == TriangularSouth;
    const int readable = fontMetrics().horizontalAdvance(QLatin1Char('x')) * 20;
    if (across)
        hint.setWidth(std::max(hint.width(), std::min(readable, tabSizeHint(index).width())));
    return hint;
}
