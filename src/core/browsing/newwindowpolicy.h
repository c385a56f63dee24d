#pragma once

#include <QtGlobal>

// The four switches by which pages may open windows, and the decisions they give.
struct NewWindowPolicy
{
    bool AllowOpenWin = true;
    bool AllowResizeWin = true;
    bool AllowWinInBack = false;
    bool AllowWinRef = false;

    enum class Switch { AllowOpenWin, AllowResizeWin, AllowWinInBack, AllowWinRef };
    bool isOn(Switch which) const;
    void set(Switch which, bool on);

    enum class Placement { Refuse, InFront, Behind };
    struct Decision
    {
        Placement placement = Placement::Refuse;
        // The new page keeps its reference to the page that opened it.
        bool keepOpener = false;
    };

    // A page asks for a new window. A click of the user in the page is a new command
    // of the user, so it clears a pending toolbar command first. The request is refused
    // while pages may not open windows or a user command is still pending; a refusal
    // clears the pending command.
    Decision decide(bool userInitiated, qint16 &userCommandPending) const;

    // A page asks to size its window; a maximised window keeps its size.
    bool maySize(bool maximised) const { return AllowResizeWin && !maximised; }
};
