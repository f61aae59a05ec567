#pragma once

#include "EnhGUI/ShellBrowser.h"

// Chooses a destination folder: opens on a start folder and keeps the
// selected path in the status line.
class ShellBrowseDestination : public ShellBrowser {
public:
    ShellBrowseDestination(QWidget* owner, int titleResourceId);
    ~ShellBrowseDestination() override = default;

    void SetStartFolder(const char* folder) { startFolder = folder; }

protected:
    void OnInitialized() override;
    void OnSelChanged(const char* folder) override;

private:
    ZT_String startFolder;
};
