#include "EnhGUI/DialogGeometry.h"

#include "EnhGUI/WindowMetrics.h"

DialogGeometry DialogGeometry::For(int parameterCount, int step)
{
    DialogGeometry g;
    g.margin = WindowMetrics::FrameSize();
    const int minimum = WindowMetrics::MinimumWindowHeight() + WindowMetrics::IconHeight() +
                        4 * WindowMetrics::ScrollBarHeight();
    const int content = step + 3 * g.margin + step * parameterCount;
    g.height = content > minimum ? content : minimum;
    const QSize maximized = WindowMetrics::MaximizedSize();
    g.width = maximized.width() / 4;
    const int extra = g.margin + 24; // caption and frame
    g.position = QPoint((maximized.width() - g.width) >> 1, (maximized.height() - g.height - extra) >> 1);
    return g;
}

LineRect DialogGeometry::ButtonBand(int clientWidth, int clientHeight, int margin, int step)
{
    return {margin, clientHeight - margin - step, clientWidth - margin, clientHeight - margin};
}
