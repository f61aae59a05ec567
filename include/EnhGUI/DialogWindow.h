#pragma once

#include "EnhGUI/DialogGeometry.h"

class ParamLines;
class QDialog;
class QPushButton;
class QWidget;

// What both parameter windows do alike when they come up.
// A resizable top-level window with caption, system menu, minimize and
// maximize boxes, at the planned place and client size.
void PrepareDialogWindow(QDialog* dialog, QWidget* parent, const char* title, const DialogGeometry& geometry);
// A push button of the window, starting a group; the id names it for scripts.
QPushButton* MakeDialogButton(QDialog* dialog, const char* caption, int id);
// The first line that takes the keyboard gets it.
void FocusFirstLine(const ParamLines& lines);
