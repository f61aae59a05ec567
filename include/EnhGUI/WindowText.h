#pragma once

#include "zttl/zt_string.h"

class QWidget;

// The caption or contents of a label, edit or button as one text, the way
// every window has a window text.
ZT_String GetWindowText(const QWidget* window);
void SetWindowText(QWidget* window, const char* text);
