#pragma once

// The diagnostic sink of every library check. Silent unless a sink is
// installed (tests) or the trace build option sends it to stderr: the
// console belongs to the front end alone.

// Receives each finished trace line ("text  \t[E]\n" or "text\n").
using ZT_MessageSink = void (*)(const char* tracedLine);

// Installs a sink; null restores the default. Returns the previous one.
ZT_MessageSink ZT_SetMessageSink(ZT_MessageSink sink);

// printf-style message; texts of the form "E_ ..." carry a severity letter.
void ReportMessage(const char* format, ...) __attribute__((format(printf, 1, 2)));

// A failed check is reported with the header name and line; execution goes on.
void ZT_Assert(bool ok, const char* header, int line);

// printf-style text to the debug trace as it is (no severity letter).
void ZT_Trace(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Plain debug dump output (no severity parsing), used by the pointer array.
void ZT_DebugDump(const char* text);
