// What it costs to load the library, against its dependencies alone: the time, in turns, each in a process of its own
// that has nothing loaded yet; and the memory that is then the process's own. Prints one JSON object. To be run by
// bench/run.
//
//     load_probe LIBRARY DEPENDENCY...
#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <span>
#include <string>
#include <vector>

namespace
{

constexpr size_t turns = 25;

struct cost {
    double microseconds;
    double private_kib;
};

[[noreturn]] void fail(const char *what)
{
    fprintf(stderr, "load_probe: %s\n", what);
    _exit(1);
}

double private_kib()
{
    std::ifstream rollup("/proc/self/smaps_rollup");
    double sum = 0;
    for (std::string line; std::getline(rollup, line);)
        if (line.starts_with("Private_"))
            sum += atof(line.c_str() + line.find(':') + 1);
    return sum;
}

cost load(std::span<char *const> libraries)
{
    using clock = std::chrono::steady_clock;
    const double before = private_kib();
    const auto begin = clock::now();
    for (const char *library : libraries)
        if (!dlopen(library, RTLD_NOW | RTLD_GLOBAL))
            fail(dlerror());
    const std::chrono::duration<double, std::micro> time = clock::now() - begin;
    return {time.count(), private_kib() - before};
}

cost load_in_child(std::span<char *const> libraries)
{
    int ends[2];
    if (pipe(ends) != 0)
        fail("no pipe");
    const pid_t child = fork();
    if (child == 0) {
        const cost result = load(libraries);
        _exit(write(ends[1], &result, sizeof result) == sizeof result ? 0 : 1);
    }
    cost result{};
    int status = 1;
    if (read(ends[0], &result, sizeof result) != sizeof result || waitpid(child, &status, 0) != child || status != 0)
        fail("a child process failed");
    close(ends[0]);
    close(ends[1]);
    return result;
}

double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        fail("usage: load_probe LIBRARY DEPENDENCY...");
    const std::span<char *const> all(argv + 1, argv + argc);
    std::vector<double> ratios;
    std::vector<double> extra_microseconds;
    std::vector<double> extra_kib;
    for (size_t turn = 0; turn < turns; ++turn) {
        const cost dependencies = load_in_child(all.subspan(1));
        const cost library = load_in_child(all.first(1));
        ratios.push_back(library.microseconds / dependencies.microseconds);
        extra_microseconds.push_back(library.microseconds - dependencies.microseconds);
        extra_kib.push_back(library.private_kib - dependencies.private_kib);
    }
    printf("{\"ratio\": %.3f, \"extra_microseconds\": %.0f, \"extra_kib\": %.0f}\n", median(ratios),
           median(extra_microseconds), median(extra_kib));
}
