#include "Sqlite2Checker.h"

#include "format.h"
#include "index_key.h"
#include "schema_text.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
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

    // Checks one page and its subtree; returns the leaf depth below it, or -1.
    int CheckPage(uint32_t number, const std::string& tree, bool isRoot, std::vector<TreeEntry>& entries, int depth)
    {
        if (depth > 40 || !Claim(number, tree))
            return -1;
        const uint8_t* page = Page(number);
        const std::string where = tree + " page " + std::to_string(number);
        std::vector<int> owner(pageSize, 0); // 0 free, 1 covered
        for (int i = 0; i < pageHeaderSize; ++i)
            owner[i] = 1;
        auto cover = [&](int from, int size, const char* what) {
            if (from < 0 || size < 0 || from + size > pageSize) {
                Problem(where + ": " + what + " out of bounds");
                return false;
            }
            for (int i = from; i < from + size; ++i) {
                if (owner[size_t(i)]) {
                    Problem(where + ": " + what + " at " + std::to_string(from) + " overlaps");
                    return false;
                }
                owner[size_t(i)] = 1;
            }
            return true;
        };
        uint32_t rightChild = order.Get32(page);
        bool interior = rightChild != 0;
        int leafDepth = interior ? -2 : 0;
        int cells = 0;
        std::string previousKey;
        bool havePrevious = false;
        for (int offset = order.Get16(page + 4); offset; offset = order.Get16(page + offset + 6)) {
            if (++cells > 63 || offset % 4 || offset < pageHeaderSize || offset > pageSize - 16) {
                Problem(where + ": bad cell offset " + std::to_string(offset));
                return -1;
            }
            const uint8_t* cell = page + offset;
            uint32_t keyLength = order.Get16(cell + 4) + 65536u * cell[8];
            uint32_t dataLength = order.Get16(cell + 10) + 65536u * cell[9];
            uint64_t payload = uint64_t(keyLength) + dataLength;
            int size = payload > uint64_t(maxLocalPayload) ? 252 : cellHeaderSize + int((payload + 3) / 4 * 4);
            if (!cover(offset, size, "cell"))
                return -1;
            uint32_t leftChild = order.Get32(cell);
            if ((leftChild != 0) != interior) {
                Problem(where + ": leaf and interior cells mixed");
                return -1;
            }
            if (leftChild) {
                int below = CheckPage(leftChild, tree, false, entries, depth + 1);
                if (below < 0)
                    return -1;
                if (leafDepth != -2 && below != leafDepth)
                    Problem(where + ": leaves at different depths");
                leafDepth = below;
            }
            std::string content(reinterpret_cast<const char*>(cell + cellHeaderSize),
                                size_t(std::min<uint64_t>(payload, maxLocalPayload)));
            if (payload > uint64_t(maxLocalPayload)) {
                uint64_t chain = (payload - maxLocalPayload + overflowPayload - 1) / overflowPayload;
                uint32_t next = order.Get32(cell + 248);
                for (uint64_t i = 0; i < chain; ++i) {
                    if (!next) {
                        Problem(where + ": overflow chain too short");
                        return -1;
                    }
                    if (!Claim(next, tree + " overflow"))
                        return -1;
                    content.append(reinterpret_cast<const char*>(Page(next) + 4),
                                   size_t(std::min<uint64_t>(overflowPayload, payload - content.size())));
                    next = order.Get32(Page(next));
                }
                if (next)
                    Problem(where + ": overflow chain too long");
            }
            TreeEntry entry{content.substr(0, keyLength), content.substr(keyLength)};
            if (havePrevious && !(previousKey < entry.key))
                Problem(where + ": keys out of order");
            if (!entries.empty() && !(entries.back().key < entry.key))
                Problem(where + ": key out of order in the tree");
            previousKey = entry.key;
            havePrevious = true;
            entries.push_back(std::move(entry));
        }
        if (cells == 0 && (!isRoot || interior))
            Problem(where + ": page without cells");
        int freeTotal = 0;
        int lastFree = 0;
        for (int offset = order.Get16(page + 6); offset; offset = order.Get16(page + offset + 2)) {
            if (offset <= lastFree || offset % 4 || offset > pageSize - 4) {
                Problem(where + ": bad free block at " + std::to_string(offset));
                return -1;
            }
            int size = order.Get16(page + offset);
            if (size < 4 || size % 4 || !cover(offset, size, "free block"))
                return -1;
            freeTotal += size;
            lastFree = offset;
        }
        if (std::count(owner.begin(), owner.end(), 0))
            Problem(where + ": bytes neither cell nor free block");
        if (interior) {
            int below = CheckPage(rightChild, tree, false, entries, depth + 1);
            if (below < 0)
                return -1;
            if (leafDepth != -2 && below != leafDepth)
                Problem(where + ": leaves at different depths");
            leafDepth = below;
            return leafDepth + 1;
        }
        (void)freeTotal;
        return 0;
    }

    void CheckTree(uint32_t root, const std::string& name, std::vector<TreeEntry>& entries)
    {
        CheckPage(root, name, true, entries, 0);
    }

    void CheckSchema(const std::vector<TreeEntry>& schema)
    {
        struct Table {
            TableInfo info;
            std::vector<std::pair<int32_t, Row>> rows;
            int autoIndexes = 0;
        };
        std::map<std::string, Table> tables;
        auto lower = [](std::string s) {
            for (char& c : s)
                c = char(tolower(uint8_t(c)));
            return s;
        };
        for (const TreeEntry& entry : schema) {
            Row fields;
            if (entry.key.size() != 4 || !DecodeRecord(entry.data, fields) || fields.size() != 5 || !fields[0] ||
                !fields[1] || !fields[2] || !fields[3]) {
                Problem("sqlite_master: malformed row");
                continue;
            }
            const std::string type = *fields[0], name = *fields[1], table = lower(*fields[2]);
            uint32_t root = uint32_t(strtoul(fields[3]->c_str(), nullptr, 10));
            if (type == "view" || type == "trigger") {
                if (*fields[3] != "0")
                    Problem(name + ": rootpage of a " + type + " must be 0");
                if (!tables.count(table) && type == "trigger")
                    Problem(name + ": trigger before its table");
                continue;
            }
            std::vector<TreeEntry> entries;
            CheckTree(root, name, entries);
            if (type == "table") {
                Table& t = tables[lower(name)];
                if (!fields[4] || !ParseTableDefinition(*fields[4], t.info)) {
                    Problem(name + ": CREATE TABLE does not parse");
                    continue;
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
                continue;
            }
            auto found = tables.find(table);
            if (found == tables.end()) {
                Problem(name + ": index before its table");
                continue;
            }
            Table& t = found->second;
            std::vector<int> columns;
            if (!fields[4]) {
                std::string expected = "(" + *fields[2] + " autoindex " + std::to_string(++t.autoIndexes) + ")";
                if (name != expected || size_t(t.autoIndexes) > t.info.automaticIndexes.size()) {
                    Problem(name + ": unexpected automatic index");
                    continue;
                }
                columns = t.info.automaticIndexes[size_t(t.autoIndexes - 1)];
            } else {
                std::vector<std::string> names;
                ParseCreateIndexColumns(*fields[4], names);
                for (const std::string& column : names)
                    for (size_t c = 0; c < t.info.columns.size(); ++c)
                        if (strcasecmp(t.info.columns[c].name.c_str(), column.c_str()) == 0)
                            columns.push_back(int(c));
            }
            std::vector<std::string> expected;
            for (const auto& [rowid, values] : t.rows) {
                std::vector<IndexField> keyFields;
                for (int c : columns)
                    keyFields.push_back({&values[size_t(c)], c == t.info.integerPrimaryKey ||
                                                                  t.info.columns[size_t(c)].numeric});
                expected.push_back(EncodeIndexKey(keyFields, rowid));
            }
            std::sort(expected.begin(), expected.end());
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
        for (const auto& [name, table] : tables)
            if (size_t(table.autoIndexes) != table.info.automaticIndexes.size())
                Problem(name + ": automatic index missing");
    }

    const std::string& bytes;
    uint32_t pages;
    ByteOrder order;
    std::vector<bool> used;
    std::vector<std::string> problems;
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
