// Transcript text for what many expected transcripts have in common.
//
// Each text begins with a line end and is indented as in the tests, so that it can stand between their own lines:
//
//     transcript::expect(R"(
//         kel_core_ic_ebcom_start:
//           FN_ENTER EBCOM
//     )" + expected::scheduler_tree_built() + R"(
//         kel_core_ic_ebcom_start:
//           FN_EXIT EBCOM
//     )");
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace expected
{

// The attachment of an operation that has been entered.
inline const std::string attached = R"(
          API_CALL EBCOM kel_init_attach()
          > kel_init_attach()
)";

// The whole of a successful kel_ic_ebcom_init_qos(). Its twelve schedulers are scripted::scheduler(first) and the next
// eleven: seven levels, then five port groups.
std::string scheduler_tree_built(uint32_t first = 1);

// The part of it that creates the first `count` schedulers, with its heading "create_scheduler:" even where that is
// all.
std::string schedulers_created(uint32_t count, uint32_t first = 1);

// What create_scheduler() does before its driver-kit call, without a heading.
std::string scheduler_creation_announced();

// The parent of the tree's n-th scheduler, counted from 1.
void *scheduler_parent(uint32_t n, uint32_t first = 1);

// The whole of a successful kel_ic_ebcom_deinit_qos() without any queue; `first` as above.
std::string scheduler_tree_released(uint32_t first = 1);

// The part of it that deletes the schedulers, headed by "remove_scheduler:".
std::string schedulers_deleted(const std::vector<void *> &schedulers);

// The same where no scheduler was ever created: the driver kit is asked to delete twelve null handles.
std::string empty_scheduler_tree_released();

// The text with every $1 replaced by the first value, every $2 by the second, up to $9.
std::string with(const std::vector<std::string> &values, std::string text);

} // namespace expected
