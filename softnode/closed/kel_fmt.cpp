/*
 * kel_fmt.cpp - the formatting library, over the tables of text_table.h. Formats: 0 text, 1 CSV, 2 JSON, others text.
 *
 * It holds nothing and could do without the node; it goes through it to be counted and to be made to fail.
 */
#include "softnode/closed/codes.h"
#include "softnode/closed/text_table.h"
#include "softnode/instance/closed_call.h"
#include "softnode/platform.h"

using namespace softnode;

namespace
{

template <class Work> uint32_t formatting_call(const char *function, Work work)
{
    return closed_call<uint32_t>(function, [&](Node &) { return companion_code(work()); });
}

} // namespace

uint32_t kel_fmt_header(char *buf, uint32_t len, uint8_t format, const char *title)
{
    return formatting_call(__func__,
                           [&] { return title ? TextTable(buf, len, format).add_title(title) : Refusal::invalid; });
}

uint32_t kel_fmt_uint32(char *buf, uint32_t len, uint8_t format, const char *label, uint32_t value)
{
    return formatting_call(
        __func__, [&] { return label ? TextTable(buf, len, format).add_row(label, value) : Refusal::invalid; });
}

uint32_t kel_fmt_ebcom_global_stats(char *buf, uint32_t len, uint8_t format, const ebcom_global_stats *stats)
{
    return formatting_call(__func__, [&] {
        return stats ? TextTable(buf, len, format).add_block(global_block, stats) : Refusal::invalid;
    });
}

uint32_t kel_fmt_ebcom_pcep_inbound_stats(char *buf, uint32_t len, uint8_t format, const void *inbound)
{
    return formatting_call(__func__, [&] {
        return inbound ? TextTable(buf, len, format).add_block(inbound_block, inbound) : Refusal::invalid;
    });
}

uint32_t kel_fmt_ebcom_pcep_outbound_stats(char *buf, uint32_t len, uint8_t format, const void *outbound)
{
    return formatting_call(__func__, [&] {
        return outbound ? TextTable(buf, len, format).add_block(outbound_block, outbound) : Refusal::invalid;
    });
}

/* The text is complete here; only report whether it was cut. */
uint32_t kel_fmt_end(char *buf, uint32_t len)
{
    return formatting_call(__func__, [&] { return check_whole(buf, len); });
}
