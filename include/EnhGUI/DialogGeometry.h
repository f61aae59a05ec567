#pragma once

#include "EnhGUI/LineRect.h"

#include <QPoint>
#include <QSize>

// Size and place of a parameter window: wide as a quarter of a maximized
// window, tall enough for every parameter (or the smallest sensible window),
// centred. Both dialogs start from it.
struct DialogGeometry {
    int margin = 0;     // the frame size, used as the dialog's margin
    int width = 0;      // W
    int height = 0;     // H: the client height the lines are planned for
    QPoint position;    // top left of the frame

    // The geometry for parameterCount lines of lineStep pixels each.
    static DialogGeometry For(int parameterCount, int lineStep);

    // The band along the bottom for buttons, one line step high inside the
    // margin; the dialogs give each button a quarter of its width.
    static LineRect ButtonBand(int clientWidth, int clientHeight, int margin, int lineStep);
};
