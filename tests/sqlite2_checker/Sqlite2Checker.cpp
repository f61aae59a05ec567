#include "Sqlite2Checker.h"

#include "format.h"
#include "index_key.h"
#include "schema_text.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <strings.h>

using namespace sqlite2;

namespace {

struct TreeEntry {
    std::string key;
    std::string data;
};

class Checker {
public:
    explicit Checker(const std::string& bytes) : bytes(bytes), pages(uint32_t(bytes.size() / pageSize)) {}

    std::vector<std::string> Run()
    {
        if (bytes.empty())
            return problems;
        if (bytes.size() % pageSize)
            Problem("file size " + std::to_string(bytes.size()) + " is not a whole number of pages");
        if (pages == 0 || memcmp(bytes.data(), magicText, sizeof magicText) != 0)
            return Problem("page 1: bad magic text"), problems;
        const uint8_t* first = Page(1);
        if (GetBE32(first + 48) == magicInteger)
            order.bigEndian = true;
        else if (ByteOrder{}.Get32(first + 48) != magicInteger)
            return Problem("page 1: bad magic integer"), problems;
        used.assign(size_t(pages) + 1, false);
        used[1] = true;
        if (pages == 1)
            return problems;
        CheckFreeList(order.Get32(first + 52), order.Get32(first + 56));
        std::vector<TreeEntry> schema;
        CheckTree(2, "sqlite_master", schema);
        CheckSchema(schema);
        for (uint32_t page = 2; page <= pages; ++page)
            if (!used[page])
                Problem("page " + std::to_string(page) + " is never used");
        return problems;
    }

private:
    void Problem(const std::string& text) { problems.push_back(text); }
    const uint8_t* Page(uint32_t n) const
    {
        return reinterpret_cast<const uint8_t*>(bytes.data()) + size_t(n - 1) * pageSize;
    }

    bool Claim(uint32_t page, const std::string& what)
    {
        if (page < 1 || page > pages) {
            Problem(what + ": page " + std::to_string(page) + " is out of range");
            return false;
        }
        if (used[page]) {
            Problem(what + ": 2nd reference to page " + std::to_string(page));
            return false;
        }
        used[page] = true;
        return true;
    }

    void CheckFreeList(uint32_t trunk, uint32_t expected)
    {
        uint32_t counted = 0;
        while (trunk) {
            if (!Claim(trunk, "free list trunk"))
                return;
            ++counted;
            const uint8_t* page = Page(trunk);
            int32_t leaves = int32_t(order.Get32(page + 4));
            if (leaves < 0 || leaves > 254) {
                Problem("free list trunk " + std::to_string(trunk) + ": bad leaf count");
                return;
            }
            for (int32_t i = 0; i < leaves; ++i)
                if (Claim(order.Get32(page + 8 + 4 * i), "free list leaf"))
                    ++counted;
            trunk = order.Get32(page);
        }
        if (counted != expected)
            Problem("free list count " + std::to_string(expected) + " but " + std::to_string(counted) +
                    " free pages found");
    }

    // One page being checked: where it is, which of its bytes the header, a
    // cell or a free block covers, and what its cells have shown so far.
    struct PageScan {
        const uint8_t* page;
        std::string tree;
        std::string where;
        bool interior;
        int leafDepth;                   // -2 until a child's is known
        std::vector<int> owner;          // 0 free, 1 covered
        int cells = 0;
        std::optional<std::string> previousKey;
    };

    bool Cover(PageScan& scan, int from, int size, const char* what)
    {
        if (from < 0 || size < 0 || from + size > pageSize) {
            Problem(scan.where + ": " + what + " out of bounds");
            return false;
        }
        for (int i = from; i < from + size; ++i) {
            if (scan.owner[size_t(i)]) {
                Problem(scan.where + ": " + what + " at " + std::to_string(from) + " overlaps");
                return false;
            }
            scan.owner[size_t(i)] = 1;
        }
        return true;
    }

    // Checks a child's subtree and takes its leaf depth; false when it is broken.
    bool CheckChild(PageScan& scan, uint32_t child, std::vector<TreeEntry>& entries, int depth)
    {
        int below = CheckPage(child, scan.tree, false, entries, depth + 1);
        if (below < 0)
            return false;
        if (scan.leafDepth != -2 && below != scan.leafDepth)
            Problem(scan.where + ": leaves at different depths");
        scan.leafDepth = below;
        return true;
    }

    // A cell's key and data, from the page and its overflow chain; false when
    // the chain is broken.
    bool ReadPayload(const PageScan& scan, const uint8_t* cell, uint64_t payload, std::string& content)
    {
        content.assign(reinterpret_cast<const char*>(cell + cellHeaderSize),
                       size_t(std::min<uint64_t>(payload, maxLocalPayload)));
        if (payload <= uint64_t(maxLocalPayload))
            return true;
        uint64_t chain = (payload - maxLocalPayload + overflowPayload - 1) / overflowPayload;
        uint32_t next = order.Get32(cell + 248);
        for (uint64_t i = 0; i < chain; ++i) {
            if (!next) {
                Problem(scan.where + ": overflow chain too short");
                return false;
            }
            if (!Claim(next, scan.tree + " overflow"))
                return false;
            content.append(reinterpret_cast<const char*>(Page(next) + 4),
                           size_t(std::min<uint64_t>(overflowPayload, payload - content.size())));
            next = order.Get32(Page(next));
        }
        if (next)
            Problem(scan.where + ": overflow chain too long");
        return true;
    }

    // Keys must grow within the page and across the whole tree.
    void AddEntry(PageScan& scan, TreeEntry entry, std::vector<TreeEntry>& entries)
    {
        if (scan.previousKey && !(*scan.previousKey < entry.key))
            Problem(scan.where + ": keys out of order");
        if (!entries.empty() && !(entries.back().key < entry.key))
            Problem(scan.where + ": key out of order in the tree");
        scan.previousKey = entry.key;
        entries.push_back(std::move(entry));
    }

    // One cell and the subtree left of it; false when the page cannot be
    // checked further.
    bool CheckCell(PageScan& scan, int offset, std::vector<TreeEntry>& entries, int depth)
    {
        if (++scan.cells > 63 || offset % 4 || offset < pageHeaderSize || offset > pageSize - 16) {
            Problem(scan.where + ": bad cell offset " + std::to_string(offset));
            return false;
        }
        const uint8_t* cell = scan.page + offset;
        uint32_t keyLength = order.Get16(cell + 4) + 65536u * cell[8];
        uint32_t dataLength = order.Get16(cell + 10) + 65536u * cell[9];
        uint64_t payload = uint64_t(keyLength) + dataLength;
        int size = payload > uint64_t(maxLocalPayload) ? 252 : cellHeaderSize + int((payload + 3) / 4 * 4);
        if (!Cover(scan, offset, size, "cell"))
            return false;
        uint32_t leftChild = order.Get32(cell);
        if ((leftChild != 0) != scan.interior) {
            Problem(scan.where + ": leaf and interior cells mixed");
            return false;
        }
        if (leftChild && !CheckChild(scan, leftChild, entries, depth))
            return false;
        std::string content;
        if (!ReadPayload(scan, cell, payload, content))
            return false;
        AddEntry(scan, TreeEntry{content.substr(0, keyLength), content.substr(keyLength)}, entries);
        return true;
    }

    // The chain of free blocks, in growing order; false when it is broken.
    bool CheckFreeBlocks(PageScan& scan)
    {
        int lastFree = 0;
        for (int offset = order.Get16(scan.page + 6); offset; offset = order.Get16(scan.page + offset + 2)) {
            if (offset <= lastFree || offset % 4 || offset > pageSize - 4) {
                Problem(scan.where + ": bad free block at " + std::to_string(offset));
                return false;
            }
            int size = order.Get16(scan.page + offset);
            if (size < 4 || size % 4 || !Cover(scan, offset, size, "free block"))
                return false;
            lastFree = offset;
        }
        return true;
    }

    // Checks one page and its subtree; returns the leaf depth below it, or -1.
    int CheckPage(uint32_t number, const std::string& tree, bool isRoot, std::vector<TreeEntry>& entries, int depth)
    {
        if (depth > 40 || !Claim(number, tree))
            return -1;
        const uint8_t* page = Page(number);
        const uint32_t rightChild = order.Get32(page);
        PageScan scan{page, tree, tree + " page " + std::to_string(number), rightChild != 0,
                      rightChild != 0 ? -2 : 0, std::vector<int>(pageSize, 0), 0, std::nullopt};
        std::fill(scan.owner.begin(), scan.owner.begin() + pageHeaderSize, 1);
        for (int offset = order.Get16(page + 4); offset; offset = order.Get16(page + offset + 6))
            if (!CheckCell(scan, offset, entries, depth))
                return -1;
        if (scan.cells == 0 && (!isRoot || scan.interior))
            Problem(scan.where + ": page without cells");
        if (!CheckFreeBlocks(scan))
            return -1;
        if (std::count(scan.owner.begin(), scan.owner.end(), 0))
            Problem(scan.where + ": bytes neither cell nor free block");
        if (!scan.interior)
            return 0;
        if (!CheckChild(scan, rightChild, entries, depth))
            return -1;
        return scan.leafDepth + 1;
    }

    void CheckTree(uint32_t root, const std::string& name, std::vector<TreeEntry>& entries)
    {
        CheckPage(root, name, true, entries, 0);
    }

    // A table of the schema: its definition, its rows, and how many of its
    // automatic indexes have been seen.
    struct SchemaTable {
        TableInfo info;
        std::vector<std::pair<int32_t, Row>> rows;
        int autoIndexes = 0;
    };

    static std::string Lower(std::string s)
    {
        for (char& c : s)
            c = char(tolower(uint8_t(c)));
        return s;
    }

    // The five fields of a sqlite_master row; false (and a problem) when it
    // has not got them.
    bool ReadSchemaRow(const TreeEntry& entry, Row& fields)
    {
        if (entry.key.size() != 4 || !DecodeRecord(entry.data, fields) || fields.size() != 5 || !fields[0] ||
            !fields[1] || !fields[2] || !fields[3]) {
            Problem("sqlite_master: malformed row");
            return false;
        }
        return true;
    }

    void CheckViewOrTrigger(const Row& fields, const std::string& table)
    {
        const std::string &type = *fields[0], &name = *fields[1];
        if (*fields[3] != "0")
            Problem(name + ": rootpage of a " + type + " must be 0");
        if (!tables.count(table) && type == "trigger")
            Problem(name + ": trigger before its table");
    }

    // Keeps the table's definition and rows for the checks of its indexes.
    void LoadTable(const Row& fields, const std::vector<TreeEntry>& entries)
    {
        const std::string& name = *fields[1];
        SchemaTable& t = tables[Lower(name)];
        if (!fields[4] || !ParseTableDefinition(*fields[4], t.info)) {
            Problem(name + ": CREATE TABLE does not parse");
            return;
        }
        for (const TreeEntry& row : entries) {
            Row values;
            if (row.key.size() != 4 || !DecodeRecord(row.data, values)) {
                Problem(name + ": malformed row");
                continue;
            }
            int32_t rowid = DecodeRowidKey(row.key);
            values.resize(t.info.columns.size());
            if (t.info.integerPrimaryKey >= 0)
                values[size_t(t.info.integerPrimaryKey)] = std::to_string(rowid);
            t.rows.emplace_back(rowid, std::move(values));
        }
    }

    // The table columns an index covers: those of the table's next automatic
    // index, or those its CREATE INDEX names. False (and a problem) for an
    // automatic index the table does not have.
    bool IndexColumns(const Row& fields, SchemaTable& t, std::vector<int>& columns)
    {
        const std::string& name = *fields[1];
        if (fields[4]) {
            std::vector<std::string> names;
            ParseCreateIndexColumns(*fields[4], names);
            for (const std::string& column : names)
                for (size_t c = 0; c < t.info.columns.size(); ++c)
                    if (strcasecmp(t.info.columns[c].name.c_str(), column.c_str()) == 0)
                        columns.push_back(int(c));
            return true;
        }
        std::string expected = "(" + *fields[2] + " autoindex " + std::to_string(++t.autoIndexes) + ")";
        if (name != expected || size_t(t.autoIndexes) > t.info.automaticIndexes.size()) {
            Problem(name + ": unexpected automatic index");
            return false;
        }
        columns = t.info.automaticIndexes[size_t(t.autoIndexes - 1)];
        return true;
    }

    // The keys the index must hold for the table's rows, in order.
    static std::vector<std::string> ExpectedIndexKeys(const SchemaTable& t, const std::vector<int>& columns)
    {
        std::vector<std::string> expected;
        for (const auto& [rowid, values] : t.rows) {
            std::vector<IndexField> keyFields;
            for (int c : columns)
                keyFields.push_back(
                    {&values[size_t(c)], c == t.info.integerPrimaryKey || t.info.columns[size_t(c)].numeric});
            expected.push_back(EncodeIndexKey(keyFields, rowid));
        }
        std::sort(expected.begin(), expected.end());
        return expected;
    }

    // An index must come after its table and hold one key, without data,
    // for each of the table's rows.
    void CheckIndex(const Row& fields, const std::string& table, const std::vector<TreeEntry>& entries)
    {
        const std::string& name = *fields[1];
        auto found = tables.find(table);
        if (found == tables.end()) {
            Problem(name + ": index before its table");
            return;
        }
        std::vector<int> columns;
        if (!IndexColumns(fields, found->second, columns))
            return;
        const std::vector<std::string> expected = ExpectedIndexKeys(found->second, columns);
        std::vector<std::string> actual;
        for (const TreeEntry& e : entries) {
            actual.push_back(e.key);
            if (!e.data.empty())
                Problem(name + ": index entry with data");
        }
        if (actual != expected)
            Problem(name + ": index entries do not match the rows of " + *fields[2] + " (" +
                    std::to_string(actual.size()) + " entries, " + std::to_string(expected.size()) + " rows)");
    }

    void CheckSchema(const std::vector<TreeEntry>& schema)
    {
        for (const TreeEntry& entry : schema) {
            Row fields;
            if (!ReadSchemaRow(entry, fields))
                continue;
            const std::string& type = *fields[0];
            const std::string table = Lower(*fields[2]);
            if (type == "view" || type == "trigger") {
                CheckViewOrTrigger(fields, table);
                continue;
            }
            std::vector<TreeEntry> entries;
            CheckTree(uint32_t(strtoul(fields[3]->c_str(), nullptr, 10)), *fields[1], entries);
            if (type == "table")
                LoadTable(fields, entries);
            else
                CheckIndex(fields, table, entries);
        }
        for (const auto& [name, table] : tables)
            if (size_t(table.autoIndexes) != table.info.automaticIndexes.size())
                Problem(name + ": automatic index missing");
    }

    const std::string& bytes;
    uint32_t pages;
    ByteOrder order;
    std::vector<bool> used;
    std::vector<std::string> problems;
    std::map<std::string, SchemaTable> tables;
};

} // namespace

std::vector<std::string> CheckSqlite2Bytes(const std::string& bytes)
{
    return Checker(bytes).Run();
}

std::vector<std::string> CheckSqlite2File(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return {"cannot read " + path};
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return CheckSqlite2Bytes(bytes);
}
