#pragma once

#include "zttl/zt_report.h"

#include <string>
#include <vector>

// Collects what the library reports while it is alive.
class MessageCapture {
public:
    MessageCapture() { previous = ZT_SetMessageSink(&Collect); Lines().clear(); }
    ~MessageCapture() { ZT_SetMessageSink(previous); }
    static std::vector<std::string>& Lines()
    {
        static std::vector<std::string> lines;
        return lines;
    }
    bool Contains(const std::string& text) const
    {
        for (const auto& line : Lines())
            if (line.find(text) != std::string::npos)
                return true;
        return false;
    }

private:
    static void Collect(const char* line) { Lines().push_back(line); }
    ZT_MessageSink previous;
};
