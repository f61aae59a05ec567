#pragma once

#include "zttl/zt_report.h"

#include <algorithm>
#include <string>
#include <vector>

// Collects what the library reports while it is alive, then puts the
// previous receiver back.
class MessageCapture {
public:
    MessageCapture()
    {
        Lines().clear();
        previous = ZT_SetMessageSink(&Collect);
    }
    ~MessageCapture() { ZT_SetMessageSink(previous); }
    MessageCapture(const MessageCapture&) = delete;
    MessageCapture& operator=(const MessageCapture&) = delete;

    static std::vector<std::string>& Lines()
    {
        static std::vector<std::string> lines;
        return lines;
    }
    // A line exactly as reported.
    static bool Has(const std::string& line) { return std::find(Lines().begin(), Lines().end(), line) != Lines().end(); }
    // Whether a line holds the text.
    static bool Contains(const std::string& text)
    {
        return std::any_of(Lines().begin(), Lines().end(),
                           [&](const std::string& line) { return line.find(text) != std::string::npos; });
    }
    // How many lines start with the prefix.
    static int Count(const std::string& prefix)
    {
        return int(std::count_if(Lines().begin(), Lines().end(),
                                 [&](const std::string& line) { return line.rfind(prefix, 0) == 0; }));
    }

private:
    static void Collect(const char* line) { Lines().push_back(line); }
    ZT_MessageSink previous;
};
