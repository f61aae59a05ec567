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
    enum Options : unsigned { onlyFileSystemFolders = 0x1, withStatusText = 0x4 };

    ShellBrowser(QWidget* owner, const char* root, int titleResourceId);
    ShellBrowser(QWidget* owner, const char* root, const char* title);
    ShellBrowser(const ShellBrowser&) = delete;
    ShellBrowser& operator=(const ShellBrowser&) = delete;
    virtual ~ShellBrowser() = 0;

    void SetOwner(QWidget* window);
    void SetRoot(const char* path);
    void SetFlags(unsigned options);
    void SetTitle(const char* text);
    void SetTitle(int resourceId);
    ZT_String GetTitle() const { return title; }

    // True when the user confirmed a folder; GetPath then tells which.
    bool Run();
    ZT_String GetPath() const { return path; }

    void EnableOK(bool enable);
    void SetSelection(const char* folder);
    void SetStatusText(const char* text);

    // The open chooser, null when none is open.
    QDialog* GetChooserWindow() const { return chooser; }

protected:
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
