#include "EnhGUI/ParamLine.h"

#include "EnhGUI/ShellBrowseDestination.h"
#include "EnhGUI/WindowText.h"
#include "zttl/zt_report.h"

#include <QPushButton>

FolderParamLine::FolderParamLine(const char* lineName, unsigned id) : EditParamLine(lineName, id)
{
    layoutMode = layoutWideControl;
}

FolderParamLine::~FolderParamLine()
{
    delete button.data();
}

// The "..." button shares the edit's id, so its clicks are this line's.
bool FolderParamLine::Create(QWidget* parent, uint32_t extraStyle)
{
    if (!EditParamLine::Create(parent, extraStyle))
        return false;
    auto* browse = new QPushButton(QStringLiteral("..."), parent);
    browse->setAutoDefault(false);
    browse->setGeometry(0, 0, 20, 20);
    browse->show();
    button = browse;
    return true;
}

void FolderParamLine::OnAction()
{
    ShellBrowseDestination chooser(button, 0);
    chooser.SetFlags(ShellBrowser::onlyFileSystemFolders | ShellBrowser::withStatusText);
    chooser.SetStartFolder(GetWindowText(control).GetString());
    chooser.SetTitle(GetWindowText(label).GetString());
    if (chooser.Run())
        SetWindowText(control, chooser.GetPath().GetString());
}

void FolderParamLine::SetFont(const QFont& font)
{
    ParamLine::SetFont(font);
    if (button)
        button->setFont(font);
}

void FolderParamLine::Layout(const LineRect& line, int w)
{
    ZT_Assert(IsLive(label), "include/EnhGUI/ParamLines", 101);
    ZT_Assert(IsLive(control), "include/EnhGUI/ParamLines", 102);
    ZT_Assert(IsLive(button), "include/EnhGUI/ParamLines", 103);
    MoveWindow(label, line.left, line.top, line.left + w, line.bottom);
    MoveWindow(control, line.left + w + 10, line.top, line.right - 20, line.bottom);
    MoveWindow(button, line.right - 18, line.top, line.right, line.bottom);
}

QList<QAbstractButton*> FolderParamLine::ClickSources() const
{
    if (auto* browse = qobject_cast<QPushButton*>(button.data()))
        return {browse};
    return {};
}
