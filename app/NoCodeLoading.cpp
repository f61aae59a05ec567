// The statically linked program never loads code at run time: SQLite's
// extension loading stays switched off, and the dialogs run in the dialog
// host. SQLite's call of dlopen is linked here instead (--wrap=dlopen), so
// the static C library's loader, which would need the shared C library at
// run time anyway, is never called and the linker need not warn about it.

extern "C" void* __wrap_dlopen(const char*, int)
{
    return nullptr; // as dlopen does for a file it cannot load
}
