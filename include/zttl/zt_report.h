#pragma once

// The diagnostics of every library check: messages, failed checks and trace
// text all go to one sink. Silent unless a sink is installed (tests) or the
// trace build option sends it to stderr: the console belongs to the front
// end alone.

// Receives each finished trace line ("text  \t[E]\n" or "text\n").
using ZT_MessageSink = void (*)(const char* tracedLine);

// Installs a sink; null restores the default. Returns the previous one.
ZT_MessageSink ZT_SetMessageSink(ZT_MessageSink sink);

// printf-style message, cut at 2047 bytes; texts of the form "E_ ..." carry a
// severity letter. Texts of two characters or fewer are dropped.
void ReportMessage(const char* format, ...) __attribute__((format(printf, 1, 2)));

// A failed check is reported as "A_ assertion failed: header(number)" and
// execution goes on. The numbers are fixed identifiers of the checks, not
// line numbers: tests and logs look for them, so they must never be
// renumbered when code moves.
void ZT_Assert(bool ok, const char* header, int number);

// printf-style text to the sink as it is (no severity letter, no newline
// added), cut at 2047 bytes.
void ZT_Trace(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Plain text to the sink as it is; null or "" sends nothing.
void ZT_DebugDump(const char* text);
