#include "core/browsing/newwindowpolicy.h"

bool NewWindowPolicy::isOn(Switch which) const
{
    switch (which) {
    case Switch::AllowOpenWin:
        return AllowOpenWin;
    case Switch::AllowResizeWin:
        return AllowResizeWin;
    case Switch::AllowWinInBack:
        return AllowWinInBack;
    case Switch::AllowWinRef:
        return AllowWinRef;
    }
    return false;
}

void NewWindowPolicy::set(Switch which, bool on)
{
    switch (which) {
    case Switch::AllowOpenWin:
        AllowOpenWin = on;
        break;
    case Switch::AllowResizeWin:
        AllowResizeWin = on;
        break;
    case Switch::AllowWinInBack:
        AllowWinInBack = on;
        break;
    case Switch::AllowWinRef:
        AllowWinRef = on;
        break;
    }
}

NewWindowPolicy::Decision NewWindowPolicy::decide(
    bool userInitiated, qint16 &userCommandPending) const
{
    if (userInitiated)
        userCommandPending = 0;
    if (!AllowOpenWin || userCommandPending) {
        userCommandPending = 0;
        return {};
    }
    return {AllowWinInBack ? Placement::Behind : Placement::InFront, AllowWinRef};
}
