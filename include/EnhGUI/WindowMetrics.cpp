#include "EnhGUI/WindowMetrics.h"

#include <QApplication>
#include <QScreen>
#include <QStyle>

#include <algorithm>

namespace WindowMetrics {

namespace {

int Metric(QStyle::PixelMetric metric)
{
    return QApplication::style()->pixelMetric(metric);
}

} // namespace

// A sizing frame is about two of the style's frame widths thick, and never
// thinner than a desktop's usual four pixels.
int FrameSize()
{
    return std::max(4, 2 * Metric(QStyle::PM_DefaultFrameWidth));
}

// A window cannot be shorter than its caption and frame.
int MinimumWindowHeight()
{
    return Metric(QStyle::PM_TitleBarHeight) + 2 * FrameSize();
}

int IconHeight()
{
    return Metric(QStyle::PM_LargeIconSize);
}

int ScrollBarHeight()
{
    return Metric(QStyle::PM_ScrollBarExtent);
}

QSize MaximizedSize()
{
    if (QScreen* screen = QGuiApplication::primaryScreen())
        return screen->availableGeometry().size();
    return QSize(800, 600);
}

QFont DefaultGuiFont()
{
    return QApplication::font();
}

} // namespace WindowMetrics
