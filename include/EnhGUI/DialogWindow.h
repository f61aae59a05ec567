#pragma once

#include "EnhGUI/DialogGeometry.h"

class ParamLines;
class QDialog;
class QPushButton;
class QWidget;

// What both parameter windows do alike when they come up.

// Makes dialog an application-modal, resizable top-level window with
// caption, system menu, minimize and maximize boxes, at the planned place
// and client size.
void PrepareDialogWindow(QDialog* dialog, QWidget* parent, const char* title, const DialogGeometry& geometry);
// A push button of the window, owned by it and shown; the id names it
// ("button<id>") for scripts and tests.
QPushButton* MakeDialogButton(QDialog* dialog, const char* caption, int id);
// The first line whose control takes the keyboard gets the focus; nothing
// happens when none does.
void FocusFirstLine(const ParamLines& lines);
