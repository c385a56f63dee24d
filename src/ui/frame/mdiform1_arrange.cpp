// Arrangement of the child windows and the switches by which pages may open windows.
#include "core/base/appinfo.h"
#include "core/prefs/prefer.h"
#include "ui/browser/frmbrowser.h"
#include "ui/frame/framemenus.h"
#include "ui/frame/mdiform1.h"

#include <QMdiArea>
#include <QMdiSubWindow>

void MDIForm1::Arrange(Arrangement arrangement)
{
    m_arrangement = arrangement;
    if (arrangement == Arrangement::Cascade) {
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
            if (arrangement == Arrangement::OneBelowAnother) {
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

void MDIForm1::setPolicy(const NewWindowPolicy &policy)
{
    m_policy = policy;
    m_menus->syncChecks();
    guardWindowOpen();
}

void MDIForm1::guardWindowOpen(frmBrowser *only)
{
    const QStringList sites(m_policy.AllowedSites.cbegin(), m_policy.AllowedSites.cend());
    for (frmBrowser *window : only ? QList<frmBrowser *> {only} : browsers())
        window->page()->setWindowOpenGuard(m_policy.AllowOpenWin, sites);
}

void MDIForm1::allowPopupSite(const QString &site)
{
    if (site.isEmpty() || m_policy.AllowedSites.contains(site))
        return;
    m_policy.AllowedSites.insert(site);
    m_policy.saveAllowedSites(AppInfo::dataFile(NewWindowPolicy::allowedSitesFileName()));
    guardWindowOpen();
}

void MDIForm1::setPolicySwitch(NewWindowPolicy::Switch which, bool on)
{
    m_policy.set(which, on);
    const qint16 flag = on ? -1 : 0;
    switch (which) {
    case NewWindowPolicy::Switch::AllowOpenWin:
        prefer().setAllowOpenWin(flag);
        break;
    case NewWindowPolicy::Switch::AllowWinInBack:
        prefer().setAllowWinInBack(flag);
        break;
    case NewWindowPolicy::Switch::AllowResizeWin:
        prefer().setAllowResizeWin(flag);
        break;
    case NewWindowPolicy::Switch::AllowWinRef:
        prefer().setAllowWinRef(flag);
        break;
    }
    m_menus->syncChecks();
    if (which == NewWindowPolicy::Switch::AllowOpenWin)
        guardWindowOpen();
}
