/*
 * kei_util.cpp - the utility library: texts only. Every text is a constant, so any thread may ask at any time.
 */
#include "softnode/common/mac.h"
#include "softnode/platform.h"

#include <algorithm>
#include <array>

using namespace softnode;

namespace
{

struct CodeText {
    uint32_t rc;
    const char *text;
};

constexpr std::array<CodeText, 10> code_texts{{
    {KEL_RC_OK, "success"},
    {KEL_RC_ZERO_FREQUENCY, "zero frequency"},
    {KEL_RC_OUT_OF_RANGE, "value out of range"},
    {KEL_RC_NOT_FOUND, "not found"},
    {KEL_RC_IN_USE, "already in use"},
    {KEL_RC_NOT_EMPTY, "not empty"},
    {KEL_RC_MISMATCH, "mismatch"},
    {KEL_RC_LIMIT, "limit reached"},
    {KEL_RC_UNSUPPORTED, "not supported"},
    {KEL_RC_FAILED, "operation failed"},
}};

} // namespace

const char *kei_util_init_rc_str_get(uint32_t rc)
{
    for (const CodeText &code : code_texts)
        if (code.rc == rc)
            return code.text;
    return "unknown return code";
}

/* Without an address there is nothing to write but the empty text. */
char *macAddr2str(char *text, const uint8_t *mac)
{
    if (!text)
        return nullptr;
    *text = '\0';
    if (!mac)
        return text;
    const MacText written = text_of(mac_at(mac));
    std::copy(written.begin(), written.end(), text);
    return text;
}
