// System calls that the kernel refuses a process, as on a machine that has run out of something: by a seccomp filter, which stays
// until the process ends. So a child has it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <string>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

struct refused_call {
    long number;       // SYS_bind
    int error;         // what it fails with; 0: it returns 0, and does nothing
    int argument = -1; // only with this argument, counted from 0: -1 is with any
    uint32_t value = 0;
};

inline void refuse_calls(const std::vector<refused_call> &calls)
{
    const auto load = [](size_t offset) -> sock_filter {
        return BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<uint32_t>(offset));
    };
    const auto unless_equal = [](uint32_t value, uint8_t skipped) -> sock_filter {
        return BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, value, 0, skipped);
    };
    std::vector<sock_filter> filter;
    for (const refused_call &one : calls) {
        const bool any = one.argument < 0;
        filter.push_back(load(offsetof(seccomp_data, nr)));
        filter.push_back(unless_equal(static_cast<uint32_t>(one.number), any ? 1 : 3));
        if (!any) {
            filter.push_back(load(offsetof(seccomp_data, args) + static_cast<size_t>(one.argument) * sizeof(uint64_t)));
            filter.push_back(unless_equal(one.value, 1));
        }
        filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<uint32_t>(one.error)));
    }
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    const sock_fprog program = {.len = static_cast<unsigned short>(filter.size()), .filter = filter.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
        std::abort();
}

// What `act` returns in a child whose calls like these are refused; "died" when the child does not end as it should.
inline std::string where_refused(const std::vector<refused_call> &calls, const std::function<std::string()> &act)
{
    std::array<int, 2> result{};
    if (pipe(result.data()) != 0)
        std::abort();
    const pid_t child = fork();
    if (child == 0) {
        refuse_calls(calls);
        const std::string said = act();
        _exit(write(result[1], said.data(), said.size()) == static_cast<ssize_t>(said.size()) ? 0 : 1);
    }
    close(result[1]);
    std::string said;
    std::array<char, 1024> piece;
    for (ssize_t octets = 0; (octets = read(result[0], piece.data(), piece.size())) > 0;)
        said.append(piece.data(), static_cast<size_t>(octets));
    close(result[0]);
    int status = 0;
    waitpid(child, &status, 0);
    return status == 0 ? said : "died";
}
