// Dates, clock times and durations, always in the local time zone.
#include "zttl/zt_string.h"

#include <cstdio>
#include <ctime>

namespace {

bool LocalFields(ZT_Stamp stamp, struct tm& fields)
{
    time_t when = time_t(long(stamp) + ZT_StampEpoch);
    return localtime_r(&when, &fields) != nullptr;
}

} // namespace

ZT_Stamp StampNow()
{
    return ZT_Stamp(long(time(nullptr)) - ZT_StampEpoch);
}

bool SameDay(ZT_Stamp a, ZT_Stamp b)
{
    struct tm first {}, second {};
    LocalFields(a, first);
    LocalFields(b, second);
    return first.tm_yday + first.tm_year * 65536 == second.tm_yday + second.tm_year * 65536;
}

bool SameYear(ZT_Stamp a, ZT_Stamp b)
{
    struct tm first {}, second {};
    LocalFields(a, first);
    LocalFields(b, second);
    return first.tm_year == second.tm_year;
}

ZT_String& ZT_String::AppendTime(ZT_Stamp stamp, bool forceDate, bool forceYear)
{
    if (stamp <= 0)
        return *this;
    struct tm fields {};
    if (!LocalFields(stamp, fields))
        return *this;
    ZT_Stamp now = StampNow();
    if (!SameDay(stamp, now) || forceDate) {
        AppendInt(fields.tm_mday, 2);
        AppendText(".");
        AppendInt(fields.tm_mon + 1, 2);
        AppendText(".");
        if (forceYear || !SameYear(stamp, now))
            AppendInt(fields.tm_year + 1900, 4);
        AppendText(" ");
    }
    AppendInt(fields.tm_hour, 2);
    AppendText(":");
    AppendInt(fields.tm_min, 2);
    return *this;
}

ZT_String& ZT_String::AppendDateTime(const struct tm& fields)
{
    AppendInt(fields.tm_mday, 2);
    AppendText(".");
    AppendInt(fields.tm_mon + 1, 2);
    AppendText(".");
    AppendInt(fields.tm_year + 1900, 4);
    AppendText(" ");
    AppendInt(fields.tm_hour, 2);
    AppendText(":");
    AppendInt(fields.tm_min, 2);
    AppendText(":");
    AppendInt(fields.tm_sec, 2);
    return *this;
}

ZT_String& ZT_String::AppendDuration(uint32_t s)
{
    // The "year" of 2492 days and its unreduced remainder are the program's own units.
    char text[48];
    if (s > 215308800u)
        snprintf(text, sizeof text, "%dy%2dd", int(s / 215308800u), int(s % 215308800u));
    else if (s > 59875200u)
        snprintf(text, sizeof text, "%dw", int(s / 604800u));
    else if (s > 8553600u)
        snprintf(text, sizeof text, "%dw%2dd", int(s / 604800u), int(((s + 43200u) / 86400u) % 7u));
    else if (s >= 86400u)
        snprintf(text, sizeof text, "%dd%2dh", int(s / 86400u), int(((s + 1800u) / 3600u) % 24u));
    else if (s >= 3600u)
        snprintf(text, sizeof text, "%dh%2dm", int(s / 3600u), int(((s + 30u) / 60u) % 60u));
    else if (s >= 60u)
        snprintf(text, sizeof text, "%dm%2ds", int(s / 60u), int(s % 60u));
    else
        snprintf(text, sizeof text, "%ds", int(s));
    Append(text);
    return *this;
}

ZT_String& ZT_String::AppendClock(uint32_t s)
{
    // The hour column appears only above one hour: 3600 prints "   00:00".
    if (s > 3600u) {
        AppendInt(int32_t(s / 3600u), 2);
        AppendText(":");
    } else {
        AppendText("   ");
    }
    AppendInt(int32_t((s % 3600u) / 60u), 2);
    AppendText(":");
    AppendInt(int32_t(s % 60u), 2);
    return *this;
}
