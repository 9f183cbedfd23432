// Reading and setting MPID.
#include "kelctl/values/mp_id.h"

#include <cstdlib>
#include <string>

namespace kelctl
{

uint8_t own_mp_id()
{
    const char *text = std::getenv("MPID");
    return text ? static_cast<uint8_t>(std::strtol(text, nullptr, 10)) : uint8_t{0};
}

bool adopt_mp_id(uint8_t id)
{
    static uint8_t adopted = 0; // none yet: the library goes on looking for one
    if (adopted != 0 && adopted != id)
        return false;
    adopted = id;
    if (id != own_mp_id())
        setenv("MPID", std::to_string(id).c_str(), 1);
    return true;
}

} // namespace kelctl
