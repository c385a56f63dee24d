// Arrangement of the child windows and the switches by which pages may open windows.
#include "core/prefs/prefer.h"
#include "ui/frame/framemenus.h"
#include "ui/frame/mdiform1.h"

#include <QMdiArea>
#include <QMdiSubWindow>

void MDIForm1::Arrange(int code)
{
    m_arrangement = code;
    if (code == 0) {
        m_mdi->cascadeSubWindows();
    } else {
        // One below another: full width, equal heights; side by side: full
        // height, equal widths. Minimised windows keep their place.
        QList<QMdiSubWindow *> windows;
        for (QMdiSubWindow *sub : m_mdi->subWindowList(QMdiArea::CreationOrder)) {
            if (!sub->isMinimized() && sub->isVisible())
                windows.append(sub);
        }
        const QRect area = m_mdi->viewport()->rect();
        const int count = int(windows.size());
        for (int i = 0; i < count; ++i) {
            QMdiSubWindow *sub = windows.at(i);
            if (sub->isMaximized())
                sub->showNormal();
            QRect cell;
            if (code == 1) {
                const int top = area.height() * i / count;
                cell = QRect(0, top, area.width(), area.height() * (i + 1) / count - top);
            } else {
                const int left = area.width() * i / count;
                cell = QRect(left, 0, area.width() * (i + 1) / count - left, area.height());
            }
            sub->setGeometry(cell);
        }
    }
    m_menus->syncChecks();
}

void MDIForm1::setPolicySwitch(const QString &name, bool on)
{
    const qint16 flag = on ? -1 : 0;
    if (name == u"AllowOpenWin") {
        policy.AllowOpenWin = on;
        prefer().setAllowOpenWin(flag);
    } else if (name == u"AllowWinInBack") {
        policy.AllowWinInBack = on;
        prefer().setAllowWinInBack(flag);
    } else if (name == u"AllowResizeWin") {
        policy.AllowResizeWin = on;
        prefer().setAllowResizeWin(flag);
    } else if (name == u"AllowWinRef") {
        policy.AllowWinRef = on;
        prefer().setAllowWinRef(flag);
    }
    m_menus->syncChecks();
}
