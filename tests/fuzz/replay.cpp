/*
 * replay.cpp - runs a fuzz target over the files of folders, without a fuzzer: what a fuzzer found stays tested.
 *
 *     replay FOLDER...
 */
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *octets, std::size_t count);

namespace
{

void replay(const std::filesystem::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> octets{std::istreambuf_iterator<char>(stream), {}};
    std::fprintf(stderr, "%s\n", file.c_str());
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(octets.data()), octets.size());
}

} // namespace

int main(int count, char **arguments)
{
    int replayed = 0;
    for (int argument = 1; argument < count; ++argument)
        for (const auto &file : std::filesystem::directory_iterator(arguments[argument])) {
            replay(file.path());
            ++replayed;
        }
    std::fprintf(stderr, "%d inputs replayed\n", replayed);
    return replayed > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
