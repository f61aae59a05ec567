#pragma once

#include <QFont>
#include <QSize>

// The toolkit's own stand-ins for the desktop metrics the dialogs are sized
// from: window frame, smallest window height, icon and scroll-bar sizes,
// the area of a maximized window and the default GUI font.
namespace WindowMetrics {

// Twice the style's frame width, at least 4 pixels.
int FrameSize();
// Title bar and two frames.
int MinimumWindowHeight();
// The style's large icon and scroll-bar sizes.
int IconHeight();
int ScrollBarHeight();
// The primary screen's available area, 800x600 without a screen.
QSize MaximizedSize();
// The application font.
QFont DefaultGuiFont();

} // namespace WindowMetrics
