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
    static constexpr unsigned noControlId = 0xFFFF;
    enum LayoutMode : uint8_t { layoutHalves = 0, layoutWideLabel = 1, layoutWideControl = 2 };

    ParamLine(const char* name, unsigned controlId);
    ParamLine(const ParamLine&) = delete;
    ParamLine& operator=(const ParamLine&) = delete;
    virtual ~ParamLine();

    virtual void SetLayout(uint8_t mode) { layoutMode = mode; }
    virtual bool Create(QWidget* parent, uint32_t extraStyle) = 0;
    virtual void SetLabel(const char* text);
    virtual void SetText(const char* text);
    virtual ZT_Value GetValue();
    virtual void OnAction() {}
    virtual void SetFont(const QFont& font);
    virtual void Hide(bool hide);
    virtual void Layout(const LineRect& line, int columnWidth);
    // Buttons whose clicks the dialog reports as this line's commands.
    virtual QList<QAbstractButton*> ClickSources() const { return {}; }

    const ZT_String& GetName() const { return name; }
    unsigned GetControlId() const { return controlId; }
    uint8_t GetLayoutMode() const { return layoutMode; }
    QWidget* GetControlWindow() const { return control; }
    QWidget* GetLabelWindow() const { return label; }

protected:
    bool CreateLabel(QWidget* parent);
    static bool IsLive(const QWidget* window) { return window != nullptr; }
    static void MoveWindow(QWidget* window, int left, int top, int right, int bottom);
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

class EditParamLine : public ParamLine {
public:
    EditParamLine(const char* name, unsigned controlId);
    bool Create(QWidget* parent, uint32_t extraStyle) override;
};

class WideEditParamLine : public EditParamLine {
public:
    WideEditParamLine(const char* name, unsigned controlId);
};

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

class ValueParamLine : public ParamLine {
public:
    explicit ValueParamLine(const char* name);
    bool Create(QWidget* parent, uint32_t extraStyle) override;
    void SetText(const char* text) override;
};

class HeadingParamLine : public ParamLine {
public:
    explicit HeadingParamLine(const char* name);
    bool Create(QWidget* parent, uint32_t extraStyle) override;
    void SetText(const char*) override {}
    ZT_Value GetValue() override { return ZT_Value(); }
    void Layout(const LineRect& line, int columnWidth) override;
};

class FolderParamLine : public EditParamLine {
public:
    FolderParamLine(const char* name, unsigned controlId);
    ~FolderParamLine() override;
    bool Create(QWidget* parent, uint32_t extraStyle) override;
    void OnAction() override;
    void SetFont(const QFont& font) override;
    void Layout(const LineRect& line, int columnWidth) override;
    QList<QAbstractButton*> ClickSources() const override;
    QWidget* GetButtonWindow() const { return button; }

private:
    QPointer<QWidget> button;
};
