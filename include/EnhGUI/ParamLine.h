#pragma once

#include "EnhGUI/LineRect.h"
#include "zttl/zt_value.h"

#include <QFont>
#include <QList>
#include <QPointer>
#include <QWidget>

#include <cstdint>

class QAbstractButton;

// One line of a parameter dialog: a caption on the left and an editing
// control on the right, bound by name to one parameter. The windows are
// children of the dialog and can die with it, so every use asks first.
class ParamLine {
public:
    // The id of lines whose control reports no commands.
    static constexpr unsigned noControlId = 0xFFFF;
    // How a line splits its width: label and control half each (with a 10-pixel
    // gap), a label of two column widths, or a control of two column widths.
    enum LayoutMode : uint8_t { layoutHalves = 0, layoutWideLabel = 1, layoutWideControl = 2 };

    // The name is the parameter's and also names the control window.
    ParamLine(const char* name, unsigned controlId);
    ParamLine(const ParamLine&) = delete;
    ParamLine& operator=(const ParamLine&) = delete;
    // Deletes the label and control windows unless the parent took them down.
    virtual ~ParamLine();

    // Sets the LayoutMode; it takes effect at the next Layout.
    virtual void SetLayout(uint8_t mode) { layoutMode = mode; }
    // Makes the windows as children of parent (which owns them); extraStyle
    // takes EditStyle bits where the kind has an edit. False without a parent.
    virtual bool Create(QWidget* parent, uint32_t extraStyle) = 0;
    // Shows the caption with a blank on each side.
    virtual void SetLabel(const char* text);
    // Shows a value in the control.
    virtual void SetText(const char* text);
    // The control's contents as a text value (empty when the window is gone).
    virtual ZT_Value GetValue();
    // What a click on the line's button does; nothing by default.
    virtual void OnAction() {}
    // Font and visibility of the line's windows.
    virtual void SetFont(const QFont& font);
    virtual void Hide(bool hide);
    // Places the windows in line by the layout mode. A missing window is a
    // failed check.
    virtual void Layout(const LineRect& line, int columnWidth);
    // Buttons whose clicks the dialog reports as this line's commands.
    virtual QList<QAbstractButton*> ClickSources() const { return {}; }

    // The parameter name, the control id, the layout mode and the windows (null
    // once destroyed; owned by the parent window).
    const ZT_String& GetName() const { return name; }
    unsigned GetControlId() const { return controlId; }
    uint8_t GetLayoutMode() const { return layoutMode; }
    QWidget* GetControlWindow() const { return control; }
    QWidget* GetLabelWindow() const { return label; }

protected:
    // Makes the framed caption window; false without a parent.
    bool CreateLabel(QWidget* parent);
    // Whether a window still exists (the pointers clear themselves).
    static bool IsLive(const QWidget* window) { return window != nullptr; }
    // Places a window by its edges (right and bottom exclusive); null is ignored.
    static void MoveWindow(QWidget* window, int left, int top, int right, int bottom);
    // Names the control window after the parameter.
    void NameControl();

    QPointer<QWidget> control;
    QPointer<QWidget> label;
    ZT_String name;
    unsigned controlId;
    uint8_t layoutMode = layoutHalves;
};

// Edit styles, by meaning.
enum EditStyle : uint32_t {
    editCentred = 0x1,
    editRightAligned = 0x2,
    editMasked = 0x20,
    editDigitsOnly = 0x2000,
};

// A one-line edit, label twice as wide as the control.
class EditParamLine : public ParamLine {
public:
    EditParamLine(const char* name, unsigned controlId);
    bool Create(QWidget* parent, uint32_t extraStyle) override;
};

// An edit twice as wide as its label, for texts.
class WideEditParamLine : public EditParamLine {
public:
    WideEditParamLine(const char* name, unsigned controlId);
};

// A check box that carries its caption on the left and fills the line. Any
// text whose whole-number reading is not 0 checks it ("TRUE" does, "yes"
// does not); its value is the integer 1 or 0.
class CheckParamLine : public ParamLine {
public:
    CheckParamLine(const char* name, unsigned controlId) : ParamLine(name, controlId) {}
    bool Create(QWidget* parent, uint32_t extraStyle) override;
    void SetLabel(const char* text) override;
    void SetText(const char* text) override;
    ZT_Value GetValue() override;
    void Layout(const LineRect& line, int columnWidth) override;
    QList<QAbstractButton*> ClickSources() const override;
};

// A date picker ("YYYY-MM-DD" in and out; an impossible date leaves the
// picker as it was), or with timeOfDay a time picker that is shown but never
// loaded or stored (its value is empty).
class DateParamLine : public ParamLine {
public:
    DateParamLine(const char* name, unsigned controlId, int timeOfDay);
    bool Create(QWidget* parent, uint32_t extraStyle) override;
    void SetText(const char* text) override;
    ZT_Value GetValue() override;

private:
    void ShowDate(int year, int month, int day);

    int timeOfDay;
};

// A read-only value, shown and read back with a blank on each side; reports
// no commands.
class ValueParamLine : public ParamLine {
public:
    explicit ValueParamLine(const char* name);
    bool Create(QWidget* parent, uint32_t extraStyle) override;
    void SetText(const char* text) override;
};

// A caption across the whole line, without a value.
class HeadingParamLine : public ParamLine {
public:
    explicit HeadingParamLine(const char* name);
    bool Create(QWidget* parent, uint32_t extraStyle) override;
    void SetText(const char*) override {}
    ZT_Value GetValue() override { return ZT_Value(); }
    void Layout(const LineRect& line, int columnWidth) override;
};

// An edit with a "..." button that opens a folder chooser on the edit's text
// and puts the chosen path in; the button's clicks are this line's commands.
class FolderParamLine : public EditParamLine {
public:
    FolderParamLine(const char* name, unsigned controlId);
    ~FolderParamLine() override;
    bool Create(QWidget* parent, uint32_t extraStyle) override;
    void OnAction() override;
    void SetFont(const QFont& font) override;
    void Layout(const LineRect& line, int columnWidth) override;
    QList<QAbstractButton*> ClickSources() const override;
    // The "..." button, null once destroyed.
    QWidget* GetButtonWindow() const { return button; }

private:
    QPointer<QWidget> button;
};
