#pragma once

#include "file_image.h"

#include <deque>
#include <memory>
#include <sqlite3.h>

namespace sqlite2 {

// A table of the file as the reader shows it.
struct ReaderTable {
    std::string name;
    uint32_t root = 0;
    std::vector<std::string> columns;
    int integerPrimaryKey = -1; // the column that is the rowid, if any
};

// Read-only access to the tables of a 2.x file straight from its pages: a
// second in-memory connection where every table is a virtual table over the
// file image (rows are located, never copied), plus the
// file's views. A statement that only reads runs there without the cost of
// copying the whole file into the mirror.
class Reader {
public:
    Reader() = default;
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader();

    // Finds every table's rows, so a damaged table is reported here, when
    // the file is opened. False with a message for a damaged file, false
    // without one when the reader cannot be made (the mirror then does all).
    bool Build(std::shared_ptr<const FileImage> image, const std::vector<ReaderTable>& tables,
               const std::vector<std::string>& viewStatements, std::string& error);
    void Close();
    sqlite3* Connection() const { return connection; }

private:
    sqlite3* connection = nullptr;
};

} // namespace sqlite2
