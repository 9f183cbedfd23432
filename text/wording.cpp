// The singular and the plural.
#include "text/wording.h"

#include "text/quantity.h"

namespace text
{

std::string count_of(uint64_t count, std::string_view one, std::string_view several)
{
    const bool regular = count != 1 && several.empty();
    return with_separators(count).append(" ").append(count == 1 || regular ? one : several).append(regular ? "s" : "");
}

} // namespace text
