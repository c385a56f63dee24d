// FrameMenus kept in step: the tab strip's context copies, checks and enabled states.
#include "core/base/uitexts.h"
#include "core/prefs/prefer.h"
#include "ui/frame/framemenus.h"
#include "ui/frame/mdiform1.h"

#include <QAction>
#include <QMenu>

namespace {
// Entries whose feature this build does not have yet stay visible but disabled.
const QStringList &unavailable()
{
    static const QStringList names = {QStringLiteral("mn_IEProp")};
    return names;
}
} // namespace

void FrameMenus::buildContextMenus()
{
    // The frame's context menu, on the tab strip.
    m_ctxtT = new QMenu(m_frame);
    addCopy(m_ctxtT, QStringLiteral("mn_ctxtRegisterObenT"), QStringLiteral("mn_RegisterOben"));
    addCopy(m_ctxtT, QStringLiteral("mn_ctxtRegisterUntenT"), QStringLiteral("mn_RegisterUnten"));
    addCopy(m_ctxtT, QStringLiteral("mn_ctxtRegisterButtonT"), QStringLiteral("mn_RegisterButton"));
    addCopy(m_ctxtT, QStringLiteral("mn_ctxtRegisterTabsT"), QStringLiteral("mn_RegisterTabs"));
    m_ctxtT->addSeparator();
    m_ctxt = m_ctxtT->addMenu(uiText(400));
    for (const char *name : {"Kaskadiert", "Untereinander", "Nebeneinander"})
        addCopy(m_ctxt, QStringLiteral("mn_ctxt") + QLatin1String(name),
            QStringLiteral("mn_") + QLatin1String(name));
    m_ctxt->addSeparator();
    for (const char *name : {"RegisterOben", "RegisterUnten", "RegisterButton", "RegisterTabs"})
        addCopy(m_ctxt, QStringLiteral("mn_ctxt") + QLatin1String(name),
            QStringLiteral("mn_") + QLatin1String(name));
    m_ctxt->addSeparator();
    for (const char *name :
        {"EnablePopup", "DisablePopup", "PopupToBack", "PopupResize", "PopupReferenz"})
        addCopy(m_ctxt, QStringLiteral("mn_ctxt") + QLatin1String(name),
            QStringLiteral("mn_") + QLatin1String(name));
    m_ctxtT->addSeparator();
    addCopy(m_ctxtT, QStringLiteral("mn_ctxtClosePopups"), QStringLiteral("mn_ClosePopups"));
    addCopy(
        m_ctxtT, QStringLiteral("mn_ctxtCloseAllOtherWin"), QStringLiteral("mn_CloseAllOtherWin"));
    addCopy(m_ctxtT, QStringLiteral("mn_ctxtAlleschlie_en"), QStringLiteral("mn_Alleschlie_en"));
    addCopy(m_ctxtT, QStringLiteral("mn_ctxtCloneBrowser"), QStringLiteral("mn_CloneBrowser"));
}

void FrameMenus::showTabContextMenu(const QPoint &globalPos)
{
    syncEnabled();
    m_ctxtT->popup(globalPos);
}

void FrameMenus::syncChecks()
{
    const Prefer &p = prefer();
    const QHash<QString, bool> checked = {
        {QStringLiteral("mn_RegisterOben"), p.TabAlign() == 1},
        {QStringLiteral("mn_RegisterUnten"), p.TabAlign() != 1},
        {QStringLiteral("mn_RegisterButton"), p.TabButton() != 0},
        {QStringLiteral("mn_RegisterTabs"), p.TabButton() == 0},
        {QStringLiteral("mn_EnablePopup"), m_frame->policy().AllowOpenWin},
        {QStringLiteral("mn_DisablePopup"), !m_frame->policy().AllowOpenWin},
        {QStringLiteral("mn_PopupToBack"), m_frame->policy().AllowWinInBack},
        {QStringLiteral("mn_PopupResize"), m_frame->policy().AllowResizeWin},
        {QStringLiteral("mn_PopupReferenz"), m_frame->policy().AllowWinRef},
        {QStringLiteral("mn_Kaskadiert"), m_frame->arrangement() == MDIForm1::Arrangement::Cascade},
        {QStringLiteral("mn_Untereinander"),
            m_frame->arrangement() == MDIForm1::Arrangement::OneBelowAnother},
        {QStringLiteral("mn_Nebeneinander"),
            m_frame->arrangement() == MDIForm1::Arrangement::SideBySide},
    };
    for (auto it = checked.cbegin(); it != checked.cend(); ++it) {
        m_actions.value(it.key())->setChecked(it.value());
        for (const QString &copy : m_copies.value(it.key()))
            m_actions.value(copy)->setChecked(it.value());
    }
    // Background and size apply only while pages may open windows at all.
    for (const char *dependent : {"mn_PopupToBack", "mn_PopupResize"}) {
        const QString name = QLatin1String(dependent);
        m_actions.value(name)->setEnabled(m_frame->policy().AllowOpenWin);
        for (const QString &copy : m_copies.value(name))
            m_actions.value(copy)->setEnabled(m_frame->policy().AllowOpenWin);
    }
}

void FrameMenus::syncEnabled()
{
    const bool any = m_frame->activeBrowser() != nullptr;
    for (const char *name :
        {"mn_save", "mn_print", "mn_ppreview", "mn_Send", "mn_Adresszeile", "mn_toolbar",
            "mn_beides", "mn_SetHomepage", "mn_HTMLCode", "mn_OpenAllLinks", "mn_PictureList",
            "mn_DocStruct", "mn_VisitallLinks", "mn_VisitallLinksInFrame", "mn_CloseWindow",
            "mn_CloseAllOtherWin", "mn_Alleschlie_en", "mn_Textsize", "mn_SetRefresh"}) {
        if (QAction *entry = m_actions.value(QLatin1String(name)))
            entry->setEnabled(any);
    }
    m_actions.value(QStringLiteral("mn_CloneBrowser"))->setEnabled(m_frame->IsCloneable());
    for (const QString &name : unavailable())
        m_actions.value(name)->setEnabled(false);
    for (auto it = m_copies.cbegin(); it != m_copies.cend(); ++it) {
        for (const QString &copy : it.value()) {
            if (!m_actions.value(it.key())->isCheckable())
                m_actions.value(copy)->setEnabled(m_actions.value(it.key())->isEnabled());
        }
    }
}
