// The formatting library of the scripted platform: each call appends a mark of its own to the text in the buffer, cut
// where the buffer ends; a failing one appends nothing.
#include "platform/kel_fmt.h"

#include "script.h"

#include <cstdio>
#include <cstring>

using scripted::keep_record;
using scripted::logged_result;
using scripted::text;

namespace
{

void append(char *buf, uint32_t len, const std::string &mark)
{
    if (const size_t used = strnlen(buf, len); used < len)
        snprintf(buf + used, len - used, "%s", mark.c_str());
}

uint32_t call(const char *function, char *buf, uint32_t len, const std::string &other_arguments,
              const std::string &mark)
{
    const auto rc = static_cast<uint32_t>(logged_result(function, text("%u", len) + other_arguments));
    if (!rc)
        append(buf, len, mark);
    return rc;
}

} // namespace

extern "C" uint32_t kel_fmt_header(char *buf, uint32_t len, uint8_t format, const char *title)
{
    return call(__func__, buf, len, text(", format %u, %s", format, title), text("%s: ", title));
}

extern "C" uint32_t kel_fmt_uint32(char *buf, uint32_t len, uint8_t format, const char *label, uint32_t value)
{
    return call(__func__, buf, len, text(", format %u, %s, %u", format, label, value), text("%s=%u ", label, value));
}

extern "C" uint32_t kel_fmt_ebcom_global_stats(char *buf, uint32_t len, uint8_t format, const ebcom_global_stats *stats)
{
    keep_record(__func__, stats, sizeof *stats);
    return call(__func__, buf, len, text(", format %u", format), "global ");
}

extern "C" uint32_t kel_fmt_ebcom_pcep_inbound_stats(char *buf, uint32_t len, uint8_t format, const void *inbound)
{
    keep_record(__func__, inbound, sizeof(ebcom_pcep_inbound_stats));
    return call(__func__, buf, len, text(", format %u", format), "inbound ");
}

extern "C" uint32_t kel_fmt_ebcom_pcep_outbound_stats(char *buf, uint32_t len, uint8_t format, const void *outbound)
{
    keep_record(__func__, outbound, sizeof(ebcom_pcep_outbound_stats));
    return call(__func__, buf, len, text(", format %u", format), "outbound ");
}

extern "C" uint32_t kel_fmt_end(char *buf, uint32_t len)
{
    return call(__func__, buf, len, "", "end");
}
