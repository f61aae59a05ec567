#pragma once

#include "file_access.h"
#include "file_image.h"
#include "reader.h"
#include "schema_text.h"

#include <map>
#include <memory>
#include <sqlite3.h>

namespace sqlite2 {

// A 2.x database file mirrored in an in-memory SQLite 3 database: SQL runs on
// the mirror, and whatever it changed is written back as a 2.x file. The
// mirror gets the rows only when a statement needs them there; until then
// reads of one table run on the reader, straight from the file's pages.
class Engine {
public:
    Engine() = default;
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;
    ~Engine();

    bool Open(const std::string& path, std::string& error);
    sqlite3* Mirror() const { return mirror; }
    // Prepares the first statement of sql where it should run: on the reader
    // when it only reads one table and the rows were not copied yet,
    // otherwise on the mirror, with the rows copied first when it needs them.
    // A null statement for a text without one; the message on failure.
    int Prepare(const char* sql, sqlite3_stmt** statement, const char** tail, sqlite3** connection,
                std::string& error);
    // Writes the mirror back when a statement outside a transaction changed it.
    bool WriteBackChanges(std::string& error);
    // Survives the reload of the mirror that follows every write.
    sqlite3_int64 LastInsertRowId() const;

    // A table of the file: where its rows are and the bytes they had.
    struct TableOrigin {
        std::string name;
        uint32_t root = 0;
        TableInfo info;
        std::map<int32_t, std::string> records; // stored bytes of the rows as read
    };

private:
    bool Load(std::string& error);
    bool CreateTable(const std::string& name, const std::string& sql, uint32_t root);
    bool Materialize(std::string& error);
    bool FillTable(TableOrigin& origin, std::string& error);
    void RespellNumbers(const char* sql, const char* end, sqlite3_stmt** statement);
    bool BuildFile(std::string& content, std::string& error);
    void TakeBaseline();

    FileAccess file;
    std::shared_ptr<FileImage> image = std::make_shared<FileImage>(); // the file as last read
    Reader reader;
    bool materialized = false; // the mirror holds the rows, not only the schema
    sqlite3* mirror = nullptr;
    std::map<std::string, TableOrigin> origins; // by lower-case table name
    sqlite3_int64 baseChanges = 0;
    int baseSchemaVersion = 0;
    sqlite3_int64 insertedBeforeReload = 0;
};

} // namespace sqlite2
