// Reading within bounds, and writing.
#include "kelctl/file_text.h"

#include "kelctl/quantity.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace kelctl
{
namespace
{

constexpr size_t largest_file = size_t{16} * 1024 * 1024;

int leave_open(std::FILE *)
{
    return 0;
}

std::unique_ptr<std::FILE, int (*)(std::FILE *)> open(const std::string &file)
{
    if (file == "-")
        return {stdin, leave_open};
    return {std::fopen(file.c_str(), "rb"), std::fclose};
}

} // namespace

std::string text_of_file(const std::string &file, problem_list &problems)
{
    const auto stream = open(file);
    std::string text(stream ? largest_file + 1 : 0, '\0');
    if (stream)
        text.resize(std::fread(text.data(), 1, text.size(), stream.get()));
    if (!stream || std::ferror(stream.get()))
        problems.push_back({whole_file, fmt::format("cannot be read: {}", std::strerror(errno))});
    else if (text.size() > largest_file)
        problems.push_back({whole_file, fmt::format("is larger than {}", quantity_text(largest_file, size_units))});
    return text;
}

std::optional<std::string> write_file(const std::string &file, std::string_view text)
{
    std::FILE *stream = std::fopen(file.c_str(), "wb");
    bool written = stream && std::fwrite(text.data(), 1, text.size(), stream) == text.size();
    written = stream && std::fclose(stream) == 0 && written;
    return written ? std::nullopt : std::optional(fmt::format("cannot be written: {}", std::strerror(errno)));
}

} // namespace kelctl
