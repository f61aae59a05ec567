// Entry points of the dialog module, found with dlsym by the front end.
#include "EnhGUI/ParamsDialog.h"
#include "sqlite/SQLiteRowDialog.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>

#include <xcb/xcb.h>

namespace {

// Qt aborts the process when its platform plugin is missing or cannot reach
// a display, so make sure of both first and fail cleanly instead.
bool PlatformPluginExists(const QString& platform)
{
    const QDir plugins(QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/platforms"));
    return !plugins.entryList({QStringLiteral("libq") + platform + QStringLiteral("*.so")}, QDir::Files).isEmpty();
}

bool XDisplayReachable()
{
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    bool reachable = connection && !xcb_connection_has_error(connection);
    if (connection)
        xcb_disconnect(connection);
    return reachable;
}

// A Wayland compositor listens on a socket named by WAYLAND_DISPLAY.
bool WaylandDisplayReachable()
{
    const QString name = qEnvironmentVariable("WAYLAND_DISPLAY");
    if (name.isEmpty())
        return false;
    const QString socket = name.startsWith('/') ? name : qEnvironmentVariable("XDG_RUNTIME_DIR") + '/' + name;
    return QFileInfo::exists(socket) && PlatformPluginExists(QStringLiteral("wayland"));
}

bool DisplayAvailable()
{
    const QString platform = qEnvironmentVariable("QT_QPA_PLATFORM").section(':', 0, 0);
    if (!platform.isEmpty() && platform != QStringLiteral("xcb"))
        return PlatformPluginExists(platform); // offscreen, wayland, vnc, ...
    if (XDisplayReachable())
        return true;
    if (platform.isEmpty() && WaylandDisplayReachable()) {
        qputenv("QT_QPA_PLATFORM", "wayland");
        return true;
    }
    return false;
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
