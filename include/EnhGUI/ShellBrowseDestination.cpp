#include "EnhGUI/ShellBrowseDestination.h"

ShellBrowseDestination::ShellBrowseDestination(QWidget* owner, int titleResourceId)
    : ShellBrowser(owner, nullptr, titleResourceId)
{
    SetTitle("Browse for Folder");
}

void ShellBrowseDestination::OnInitialized()
{
    SetSelection(startFolder.GetString());
    SetStatusText(startFolder.GetString());
}

void ShellBrowseDestination::OnSelChanged(const char* folder)
{
    SetStatusText(folder ? folder : "");
}
