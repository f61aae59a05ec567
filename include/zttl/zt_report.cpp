#include "zttl/zt_report.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

void DefaultSink(const char* line)
{
#if defined(ROWKEEPER_TRACE) && ROWKEEPER_TRACE
    fputs(line, stderr);
#else
    (void)line;
#endif
}

ZT_MessageSink currentSink = DefaultSink;

void Trace(const char* text)
{
    size_t length = strlen(text);
    if (length <= 2)
        return;
    char line[2100];
    if (text[1] == '_')
        snprintf(line, sizeof line, "%s  \t[%c]\n", text + 3, text[0]);
    else
        snprintf(line, sizeof line, "%s\n", text);
    currentSink(line);
}

// The formatted text, cut to 2047 characters, goes to pass; a null format
// passes nothing.
void PassFormatted(void (*pass)(const char*), const char* format, va_list args)
{
    if (!format)
        return;
    char text[2048];
    vsnprintf(text, sizeof text, format, args);
    pass(text);
}

} // namespace

ZT_MessageSink ZT_SetMessageSink(ZT_MessageSink sink)
{
    ZT_MessageSink previous = currentSink;
    currentSink = sink ? sink : DefaultSink;
    return previous;
}

void ReportMessage(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    // No application main window exists in a console program, so only the trace is written.
    PassFormatted(Trace, format, args);
    va_end(args);
}

void ZT_Trace(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    PassFormatted(ZT_DebugDump, format, args);
    va_end(args);
}

void ZT_Assert(bool ok, const char* header, int number)
{
    if (!ok)
        ReportMessage("A_ assertion failed: %s(%d)", header, number);
}

void ZT_DebugDump(const char* text)
{
    if (text && *text)
        currentSink(text);
}
