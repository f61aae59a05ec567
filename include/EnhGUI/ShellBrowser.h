#pragma once

#include "zttl/zt_string.h"

#include <QDialog>
#include <QPointer>

class QWidget;
class QLabel;
class QPushButton;
class QTreeView;
class QFileSystemModel;

// A modal directory chooser: a title line, a tree of folders, an optional
// status line and OK/Cancel. Derived classes react to its opening and to
// every change of the selection; while it is open the request (owner,
// root, options, title) is fixed and only the chooser itself can be talked to.
class ShellBrowser {
public:
    // Option bits: withStatusText adds the status line; onlyFileSystemFolders
    // is accepted for callers and changes nothing (only folders are shown anyway).
    enum Options : unsigned { onlyFileSystemFolders = 0x1, withStatusText = 0x4 };

    // owner is not owned; a null root shows the whole file system from "/".
    // There are no string resources, so a resource title stays empty.
    ShellBrowser(QWidget* owner, const char* root, int titleResourceId);
    ShellBrowser(QWidget* owner, const char* root, const char* title);
    ShellBrowser(const ShellBrowser&) = delete;
    ShellBrowser& operator=(const ShellBrowser&) = delete;
    // Abstract: only derived choosers are made.
    virtual ~ShellBrowser() = 0;

    // The setters do nothing while the chooser is open.
    void SetOwner(QWidget* window);
    void SetRoot(const char* path);
    void SetFlags(unsigned options);
    void SetTitle(const char* text);
    // Does nothing: there are no string resources.
    void SetTitle(int resourceId);
    // A copy of the title.
    ZT_String GetTitle() const { return title; }

    // Runs the chooser modally; true when the user confirmed a folder, which
    // GetPath then tells (the root when nothing was selected).
    bool Run();
    // The folder confirmed by the last Run, as UTF-8.
    ZT_String GetPath() const { return path; }

    // These talk to the open chooser only, and do nothing otherwise: OK on or
    // off, select and show a folder (an unknown one is ignored), the status text.
    void EnableOK(bool enable);
    void SetSelection(const char* folder);
    void SetStatusText(const char* text);

    // The open chooser, null when none is open.
    QDialog* GetChooserWindow() const { return chooser; }

protected:
    // Called once the chooser runs, and with each new selection (its path).
    virtual void OnInitialized() {}
    virtual void OnSelChanged(const char*) {}

private:
    bool IsOpen() const { return chooser != nullptr; }

    QWidget* owner = nullptr;
    ZT_String root;
    unsigned flags = 0;
    ZT_String title;
    ZT_String path;
    QPointer<QDialog> chooser;
    QLabel* status = nullptr;
    QPushButton* okButton = nullptr;
    QTreeView* tree = nullptr;
    QFileSystemModel* model = nullptr;
};
