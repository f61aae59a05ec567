#include "QueryOutput.h"

#include <unistd.h>

namespace {

// The program writes from one thread: the stream needs no lock per field.
void Write(const char* text, FILE* stream)
{
    if (text) // an SQL NULL is an empty field
        fputs_unlocked(text, stream);
}

} // namespace

void PrintSeparated(const ZT_SQLiteTable& table, char separator, FILE* stream)
{
    const int last = table.GetColumnCount() - 1;
    if (last <= 0)
        return;
    // Rows reach a terminal as they are written; into files and pipes the
    // stream's buffer carries them, which keeps large exports fast.
    const bool flushEachRow = isatty(fileno(stream));
    static char buffer[1 << 16];
    if (!flushEachRow)
        setvbuf(stream, buffer, _IOFBF, sizeof buffer);
    for (int r = 0; r < table.GetRowCount(); ++r) {
        for (int c = 0; c < last; ++c) {
            Write(table.GetCell(c, r), stream);
            fputc_unlocked(separator, stream);
        }
        Write(table.GetCell(last, r), stream);
        fputc_unlocked('\n', stream);
        if (flushEachRow)
            fflush(stream);
    }
    fflush(stream);
}
