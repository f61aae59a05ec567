#include "DialogToolkit.h"
#include "ProgramFiles.h"

#include <dlfcn.h>

namespace {

using InitFunction = bool (*)(int argc, char** argv);
using ParamsDialogFunction = int (*)(ZT_ParameterGroup* set);
using RowEditorFunction = void (*)(ZT_SQLiteDatabase* database, SQLiteParameterSet* set);

void* dialogModule = nullptr;

// The first module that loads with all its libraries.
void* LoadModule()
{
    for (const std::string& candidate : CompanionPaths("librowkeeper_dialogs.so")) {
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
