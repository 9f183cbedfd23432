/*
 * no_memory_test.cpp - closed calls in a process that gets no more memory.
 */
#include "control.h"

#include "tests/refused_calls.h"

#include <cstdlib>
#include <string>
#include <sys/resource.h>

namespace
{

/* Also what is free of the memory that the process has. */
void take_all_memory()
{
    const rlimit none{0, 0};
    setrlimit(RLIMIT_AS, &none);
    void *volatile taken; // or a compiler leaves the calls out
    for (std::size_t octets = std::size_t{1} << 20; octets > 0; octets /= 2)
        do
            taken = std::malloc(octets);
        while (taken != nullptr);
}

using NoMemory = ControlledNode;

} // namespace

TEST_F(NoMemory, IsWhatACallReturnsAndNothingHasChanged)
{
    void *const scheduler = create_scheduler();
    const ork_ebcom_pcep_params pcep = pcep_params(5);
    const kel_init_qos_queue_params queue{1, 0, 5'120'000, 0};
    EXPECT_EQ(where_refused({},
                            [&]() -> std::string {
                                take_all_memory();
                                std::uint64_t pcep_handle = 11;
                                void *queue_handle = foreign;
                                const bool refused =
                                    ork_ebcom_pcep_create(ork, &pcep, &pcep_handle) == ORK_OUTOFRANGE &&
                                    kel_init_qos_queue_add(&queue, 5, scheduler, device, &queue_handle) == KEL_RC_LIMIT;
                                return refused && pcep_handle == 11 && queue_handle == foreign ? "unchanged"
                                                                                               : "changed";
                            }),
              "unchanged");
}
