#pragma once

// Toolbar commands of a browser window that act on other windows; the frame runs them.
enum class WindowCommand {
    Clone, // "Cloneit": a new window on the active window's address
    Start, // "Startit" and the "Clone" button: a new window on the start page
    StartBlank, // "StartBlank": a new blank window
    OpenAllLinks, // "OpenallA": every link of this window's page in a window of its own
    ClosePopups, // "ClosePopups": every window a page opened
    CloseAll, // "CloseallWin": every window, this one last
    CloseOthers, // "CloseOthers": every window but this one
    Bookmarks, // "Bookm": the tools pane with the bookmark archive
    History, // "history": the tools pane with the history
};
