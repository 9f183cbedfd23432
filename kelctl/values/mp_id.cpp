// Reading and setting MPID.
#include "kelctl/values/mp_id.h"

#include "kelctl/values/limits.h"
#include "kelctl/values/whole_number.h"
#include "text/printable.h"

#include <fmt/core.h>

#include <cstdlib>
#include <string>

namespace kelctl
{
namespace
{

uint8_t kept = 0; // 0: none yet, and the library reads MPID again on its next use

} // namespace

// strtol() and the cut to 8 bits are the library's: kelctl must show the id that is used, not the one that was meant.
uint8_t own_mp_id()
{
    const char *text = std::getenv("MPID");
    return text ? static_cast<uint8_t>(std::strtol(text, nullptr, 10)) : uint8_t{0};
}

std::string wrong_mp_id()
{
    const char *text = std::getenv("MPID");
    const auto id = text ? parse_whole_number(text) : std::nullopt;
    if (!text || (id && mpid_range.holds(*id) && own_mp_id() == *id))
        return "";
    return fmt::format("MPID={} is not an MP id, {}; the library reads it as {}", text::printable(text),
                       mpid_range.text, own_mp_id());
}

// Leaves an MPID that already means this id as it is, also where it is written in another way: the environment belongs
// to the user.
bool adopt_mp_id(uint8_t id)
{
    if (kept != 0 && kept != id)
        return false;
    kept = id;
    if (id != own_mp_id())
        setenv("MPID", std::to_string(id).c_str(), 1);
    return true;
}

void keep_mp_id()
{
    if (kept == 0)
        kept = own_mp_id();
}

} // namespace kelctl
