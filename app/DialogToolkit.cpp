#include "DialogToolkit.h"

#include <dlfcn.h>
#include <limits.h>
#include <string>
#include <unistd.h>

namespace {

using InitFunction = bool (*)(int argc, char** argv);
using ParamsDialogFunction = int (*)(ZT_ParameterGroup* set);
using RowEditorFunction = void (*)(ZT_SQLiteDatabase* database, SQLiteParameterSet* set);

void* dialogModule = nullptr;

std::string ExecutableDirectory()
{
    char path[PATH_MAX];
    ssize_t n = readlink("/proc/self/exe", path, sizeof path - 1);
    if (n <= 0)
        return ".";
    std::string executable(path, size_t(n));
    return executable.substr(0, executable.rfind('/'));
}

// Beside the executable in a build tree, under lib/rowkeeper when installed.
void* LoadModule()
{
    const std::string directory = ExecutableDirectory();
    for (const std::string& candidate : {directory + "/librowkeeper_dialogs.so",
                                         directory + "/../lib/rowkeeper/librowkeeper_dialogs.so"}) {
        if (void* module = dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL))
            return module;
    }
    return nullptr;
}

} // namespace

bool InitDialogToolkit(int argc, char** argv)
{
    if (!dialogModule)
        dialogModule = LoadModule();
    if (!dialogModule)
        return false;
    auto init = reinterpret_cast<InitFunction>(dlsym(dialogModule, "RowkeeperInitDialogs"));
    return init && init(argc, argv);
}

// Without the module nothing can be edited: the same as Cancel.
int RunParamsDialog(ZT_ParameterGroup& set)
{
    auto run = dialogModule ? reinterpret_cast<ParamsDialogFunction>(dlsym(dialogModule, "RowkeeperRunParamsDialog"))
                            : nullptr;
    return run ? run(&set) : 0;
}

void RunRowEditor(ZT_SQLiteDatabase& database, SQLiteParameterSet& set)
{
    auto run = dialogModule ? reinterpret_cast<RowEditorFunction>(dlsym(dialogModule, "RowkeeperRunRowEditor"))
                            : nullptr;
    if (run)
        run(&database, &set);
}
