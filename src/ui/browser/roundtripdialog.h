#pragma once

#include "core/browsing/roundtrip.h"

class QWidget;

// The small dialog before a roundtrip: how many addresses it visits, and how long each
// page stays once loaded.
namespace RoundtripDialog {

// False when the user cancels; otherwise *timing holds the chosen dwell time.
bool ask(QWidget *parent, int count, Roundtrip::Timing *timing);

} // namespace RoundtripDialog
