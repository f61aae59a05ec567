// Entry points of the dialog module, found with dlsym by the front end.
#include "EnhGUI/ParamsDialog.h"
#include "sqlite/SQLiteRowDialog.h"

#include <QApplication>

#include <cstdlib>
#include <cstring>
#include <xcb/xcb.h>

namespace {

// Qt's X11 plugin aborts the process when it cannot reach a display, so
// look for one first and fail cleanly instead.
bool DisplayAvailable()
{
    const char* platform = getenv("QT_QPA_PLATFORM");
    if (platform && *platform && strncmp(platform, "xcb", 3) != 0)
        return true; // offscreen, wayland, ...: Qt reports their failures itself
    if (!platform || !*platform) {
        const char* wayland = getenv("WAYLAND_DISPLAY");
        if (wayland && *wayland)
            return true;
    }
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    bool reachable = connection && !xcb_connection_has_error(connection);
    if (connection)
        xcb_disconnect(connection);
    return reachable;
}

// The console belongs to the front end: the toolkit's own warnings are dropped.
void DropToolkitMessage(QtMsgType, const QMessageLogContext&, const QString&) {}

int applicationArgc = 1;
char applicationName[] = "rowkeeper";
char* applicationArgv[] = {applicationName, nullptr};
QApplication* application = nullptr;

} // namespace

extern "C" __attribute__((visibility("default"))) bool RowkeeperInitDialogs(int, char**)
{
    if (application)
        return true;
    if (!DisplayAvailable())
        return false;
    qInstallMessageHandler(DropToolkitMessage);
    application = new QApplication(applicationArgc, applicationArgv);
    return true;
}

// The row-insert and row-edit dialog: above 0 when the user accepted.
extern "C" __attribute__((visibility("default"))) int RowkeeperRunParamsDialog(ZT_ParameterGroup* set)
{
    ParamsDialog dialog(*set, nullptr, nullptr);
    return dialog.RunModal();
}

// The row-wise editor writes what it changes itself.
extern "C" __attribute__((visibility("default"))) void RowkeeperRunRowEditor(ZT_SQLiteDatabase* database,
                                                                             SQLiteParameterSet* set)
{
    SQLiteRowDialog dialog(database, set, nullptr, nullptr);
    dialog.RunModal();
}
