#pragma once

#include "EnhGUI/ShellBrowser.h"

// Chooses a destination folder: opens on a start folder and keeps the
// selected path in the status line.
class ShellBrowseDestination : public ShellBrowser {
public:
    // Titled "Browse for Folder" until SetTitle changes it; the resource id is
    // not used.
    ShellBrowseDestination(QWidget* owner, int titleResourceId);
    ~ShellBrowseDestination() override = default;

    // The folder selected and shown in the status line when the chooser opens.
    void SetStartFolder(const char* folder) { startFolder = folder; }

protected:
    // Selects the start folder; each new selection goes to the status line.
    void OnInitialized() override;
    void OnSelChanged(const char* folder) override;

private:
    ZT_String startFolder;
};
