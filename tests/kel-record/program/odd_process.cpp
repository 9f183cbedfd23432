// A control process that does what a recording could come in the way of.
//
//     odd-process many|wait|close|child|crash|threads|errno
#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_core_ic_pcep.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace
{

int call_many_times()
{
    kel_ebcom_capabilities capabilities;
    for (int i = 0; i < 2000; ++i)
        kel_core_ic_ebcom_capabilities_get(&capabilities);
    return puts("done") < 0;
}

int wait_between_calls()
{
    kel_core_ic_pcep_start();
    while (getchar() != EOF)
        ;
    return call_many_times();
}

// As a daemon does. The descriptors that it gets then are those that it would get without a recording.
int close_every_descriptor()
{
    kel_core_ic_pcep_start();
    close_range(3, ~0U, 0);
    const int first = open("/dev/null", O_WRONLY);
    const int high = fcntl(first, F_DUPFD, 512); // where the recording may have had its own
    kel_core_ic_pcep_stop();
    printf("%d %d\n", first, high);
    return write(high, "x", 1) != 1;
}

int call_in_a_child()
{
    kel_core_ic_pcep_start();
    const pid_t child = fork();
    if (child == 0) {
        kel_core_ic_pcep_stop();
        _exit(0);
    }
    waitpid(child, nullptr, 0);
    printf("%d\n", child);
    return 0;
}

int crash()
{
    kel_core_ic_pcep_start();
    kel_core_ic_pcep_add(7, nullptr);
    return 0;
}

int call_on_threads()
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(call_many_times);
    for (std::thread &thread : threads)
        thread.join();
    return 0;
}

int keep_errno()
{
    errno = EDOM;
    kel_ebcom_capabilities capabilities;
    kel_core_ic_ebcom_capabilities_get(&capabilities);
    printf("%s\n", errno == EDOM ? "kept" : strerror(errno));
    return 0;
}

const std::map<std::string, int (*)()> modes = {
    {"many", call_many_times},
    {"wait", wait_between_calls},
    {"close", close_every_descriptor},
    {"child", call_in_a_child},
    {"crash", crash},
    {"threads", call_on_threads},
    {"errno", keep_errno},
};

} // namespace

int main(int, char **argv)
{
    return modes.at(argv[1])();
}
