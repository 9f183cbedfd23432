// Any line as a request to the software accelerator: it is answered with a result, in one line of JSON, or refused with a
// reason.
#include "notation/json.h"
#include "softnode/serving/requests.h"
#include "softnode/softnode.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <string>
#include <string_view>

namespace
{

void require(bool fact)
{
    if (!fact)
        std::abort();
}

void check(const std::string &answer)
{
    const auto read = notation::try_read_json(answer);
    require(read && read->size() == 1 && read->find("result"));
    require(answer.find('\n') == std::string::npos);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *octets, std::size_t count)
{
    const std::string_view request(reinterpret_cast<const char *>(octets), count);
    if (request.find("timing_settle") != std::string_view::npos) // waits as long as the request says
        return 0;
    softnode_reset();
    try {
        check(softnode::answer_to(request));
    } catch (const std::exception &refused) {
        require(*refused.what() != '\0');
    }
    return 0;
}
