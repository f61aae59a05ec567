#include "QueryOutput.h"

#include <cstring>
#include <unistd.h>

namespace {

// Collects the output and hands it to the stream in large blocks: one write
// per block instead of one stream call per field keeps large exports fast.
class OutputBuffer {
public:
    explicit OutputBuffer(FILE* stream) : stream(stream) {}
    ~OutputBuffer() { Flush(); }

    void Append(const char* text, size_t length)
    {
        if (used + length > sizeof bytes) {
            Flush();
            if (length > sizeof bytes) { // a field larger than the buffer goes straight out
                fwrite(text, 1, length, stream);
                return;
            }
        }
        memcpy(bytes + used, text, length);
        used += length;
    }
    void Append(char c)
    {
        if (used == sizeof bytes)
            Flush();
        bytes[used++] = c;
    }
    void Flush()
    {
        if (used)
            fwrite(bytes, 1, used, stream);
        used = 0;
        fflush(stream);
    }

private:
    FILE* stream;
    size_t used = 0;
    char bytes[1 << 16];
};

} // namespace

void PrintSeparated(const ZT_SQLiteTable& table, char separator, FILE* stream)
{
    const int last = table.GetColumnCount() - 1;
    if (last <= 0)
        return;
    // Rows reach a terminal as they are written; into files and pipes they go in blocks.
    const bool flushEachRow = isatty(fileno(stream));
    OutputBuffer output(stream);
    for (int r = 0; r < table.GetRowCount(); ++r) {
        for (int c = 0; c <= last; ++c) {
            if (const char* text = table.GetCell(c, r)) // an SQL NULL is an empty field
                output.Append(text, strlen(text));
            output.Append(c < last ? separator : '\n');
        }
        if (flushEachRow)
            output.Flush();
    }
}
