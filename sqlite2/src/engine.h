#pragma once

#include "file_access.h"
#include "file_image.h"
#include "schema_text.h"

#include <map>
#include <sqlite3.h>

namespace sqlite2 {

// A 2.x database file mirrored in an in-memory SQLite 3 database: SQL runs on
// the mirror, and whatever it changed is written back as a 2.x file.
class Engine {
public:
    Engine() = default;
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    ~Engine();

    bool Open(const std::string& path, std::string& error);
    sqlite3* Mirror() const { return mirror; }
    // Writes the mirror back when a statement outside a transaction changed it.
    bool WriteBackChanges(std::string& error);
    // Survives the reload of the mirror that follows every write.
    sqlite3_int64 LastInsertRowId() const;

private:
    struct TableOrigin {
        TableInfo info;
        std::map<int32_t, std::string> records; // stored bytes of the rows as read
    };

    bool Load(std::string& error);
    bool LoadTable(const std::string& name, const std::string& sql, uint32_t root, std::string& error);
    bool BuildFile(std::string& content, std::string& error);
    void TakeBaseline();

    FileAccess file;
    std::string content; // the file as last read or written
    FileImage image;
    sqlite3* mirror = nullptr;
    std::map<std::string, TableOrigin> origins; // by lower-case table name
    sqlite3_int64 baseChanges = 0;
    int baseSchemaVersion = 0;
    sqlite3_int64 insertedBeforeReload = 0;
};

} // namespace sqlite2
