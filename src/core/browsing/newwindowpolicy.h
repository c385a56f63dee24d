#pragma once

#include <QtGlobal>

// The four switches by which pages may open windows, and the decision they give.
struct NewWindowPolicy
{
    bool AllowOpenWin = true;
    bool AllowResizeWin = true;
    bool AllowWinInBack = false;
    bool AllowWinRef = false;

    enum class Decision { Refuse, OpenInFront, OpenBehind };

    // A page asks for a new window. Refuses while pages may not open windows or a
    // user command is pending; a refusal clears the pending command.
    Decision decide(qint16 &userCommandPending) const
    {
        if (!AllowOpenWin || userCommandPending) {
            userCommandPending = 0;
            return Decision::Refuse;
        }
        return AllowWinInBack ? Decision::OpenBehind : Decision::OpenInFront;
    }
};
