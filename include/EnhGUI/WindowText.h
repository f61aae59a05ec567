#pragma once

#include "zttl/zt_string.h"

class QWidget;

// The caption or contents of a label, edit or button as one text, the way
// every window has a window text.

// The text as UTF-8; other windows answer their title, null answers "".
ZT_String GetWindowText(const QWidget* window);
// Sets it from UTF-8 (null as ""); an edit shows its start. Null does nothing.
void SetWindowText(QWidget* window, const char* text);
