#pragma once

#include <QFont>
#include <QSize>

// The toolkit's own stand-ins for the desktop metrics the dialogs are sized
// from: window frame, smallest window height, icon and scroll-bar sizes,
// the area of a maximized window and the default GUI font.
namespace WindowMetrics {

int FrameSize();
int MinimumWindowHeight();
int IconHeight();
int ScrollBarHeight();
QSize MaximizedSize();
QFont DefaultGuiFont();

} // namespace WindowMetrics
