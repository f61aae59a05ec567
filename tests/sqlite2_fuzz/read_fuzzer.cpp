// libFuzzer target: any bytes as a database file must be refused or read,
// never crash, leak or hang.
#include "sqlite.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <unistd.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const std::string path = "/tmp/rowkeeper-fuzz-" + std::to_string(getpid()) + ".db";
    FILE* file = fopen(path.c_str(), "wb");
    if (!file)
        return 0;
    fwrite(data, 1, size, file);
    fclose(file);
    unlink((path + "-journal").c_str());

    sqlite* db = sqlite_open(path.c_str(), 0, nullptr);
    if (db) {
        char** names = nullptr;
        int rows = 0, columns = 0;
        if (sqlite_get_table(db, "SELECT name FROM sqlite_master WHERE type='table'", &names, &rows, &columns,
                             nullptr) == SQLITE_OK) {
            for (int r = 1; r <= rows; ++r) {
                std::string select = std::string("SELECT rowid, * FROM \"") + (names[r] ? names[r] : "") + "\"";
                char** table = nullptr;
                int n = 0, k = 0;
                char* error = nullptr;
                sqlite_get_table(db, select.c_str(), &table, &n, &k, &error);
                sqlite_free_table(table);
                sqlite_freemem(error);
            }
        }
        sqlite_free_table(names);
        sqlite_close(db);
    }
    unlink(path.c_str());
    return 0;
}
