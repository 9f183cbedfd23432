// The system calls behind reading and replacing a file. Whose files they are (this process's, or those another one
// sent) is decided here alone.
#include "kelctl/values/file_text.h"

#include "kelctl/values/quantity_messages.h"
#include "text/printable.h"

#include <fmt/core.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <set>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace kelctl
{
namespace
{

constexpr size_t largest_file = size_t{16} * 1024 * 1024;
constexpr mode_t any_permission = 07777;

std::set<std::string> inputs; // of this run, by the names they were read under
sent_files *sent = nullptr;   // null: files are this process's own

bool same_file(const struct stat &one, const struct stat &other)
{
    return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

// Compares files and not names: one file has several through links, and through different folders. Standard input
// counts: `kelctl run - <script --report script` would truncate what it still reads.
bool is_input(const struct stat &file)
{
    struct stat input = {};
    if (fstat(STDIN_FILENO, &input) == 0 && same_file(file, input))
        return true;
    return std::any_of(inputs.begin(), inputs.end(), [&](const std::string &name) {
        return stat(name.c_str(), &input) == 0 && same_file(file, input);
    });
}

// Without what some editors put in: a byte-order mark, carriage returns at the ends of lines.
std::string plain(std::string text)
{
    if (text.starts_with(text::byte_order_mark))
        text.erase(0, text::byte_order_mark.size());
    size_t kept = 0;
    for (size_t i = 0; i < text.size(); ++i)
        if (text[i] != '\r' || i + 1 == text.size() || text[i + 1] != '\n')
            text[kept++] = text[i];
    text.resize(kept);
    return text;
}

int leave_open(std::FILE *)
{
    return 0;
}

std::unique_ptr<std::FILE, int (*)(std::FILE *)> open_to_read(const std::string &file)
{
    if (file == "-")
        return {stdin, leave_open};
    return {std::fopen(file.c_str(), "rbe"), std::fclose};
}

// False, with errno set, when not all of the text was written.
bool write_all(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t octets = write(descriptor, text.data(), text.size()); // signals that are handled restart it
        if (octets < 0)
            return false;
        text.remove_prefix(static_cast<size_t>(octets));
    }
    return true;
}

// Some file systems report a full disk only when the file is closed, so its failure counts. The first failure is the
// one in errno.
bool close_after(int descriptor, bool written)
{
    const int error = errno;
    const bool closed = close(descriptor) == 0;
    if (!written)
        errno = error;
    return written && closed;
}

// Without O_TRUNC and O_CREAT: it exists, and there is nothing to shorten.
bool write_into(const std::string &device, std::string_view text)
{
    const int descriptor = open(device.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
    return descriptor >= 0 && close_after(descriptor, write_all(descriptor, text));
}

// The file that a name refers to, after symbolic links. An error leaves the name: opening it reports the error.
std::string resolved(const std::string &file)
{
    std::error_code error;
    const auto path = std::filesystem::weakly_canonical(file, error);
    return error ? file : path.string();
}

// `there`: the file that is replaced, whose permissions the new one gets; null: there is none. Renaming needs write
// permission for the folder only; so the file is asked first, or a write-protected one would be replaced. The process
// id in the name keeps two processes from writing into one file.
bool replace(const std::string &file, std::string_view text, const struct stat *there)
{
    if (there && access(file.c_str(), W_OK) != 0)
        return false;
    const std::string beside = fmt::format("{}.{}", file, getpid());
    const int descriptor = open(beside.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0)
        return false;
    const bool written =
        (!there || fchmod(descriptor, there->st_mode & any_permission) == 0) && write_all(descriptor, text);
    if (close_after(descriptor, written) && rename(beside.c_str(), file.c_str()) == 0)
        return true;
    const int error = errno;
    unlink(beside.c_str());
    errno = error;
    return false;
}

// A file that the sender could not read has its problem here as there, so that the message is the same.
std::string text_of_sent(const std::string &file, problem_list &problems)
{
    const auto found = sent->read.find(file);
    if (found == sent->read.end()) {
        problems.push_back({whole_file, "cannot be read: it was not sent along"});
        return "";
    }
    if (!found->second.problem.empty())
        problems.push_back({whole_file, found->second.problem});
    return found->second.text;
}

} // namespace

sent_files::sent_files(std::map<std::string, sent_file> files) : read(std::move(files))
{
    sent = this;
}

sent_files::~sent_files()
{
    sent = nullptr;
}

void note_input(const std::string &file)
{
    inputs.insert(file);
}

// Reads one octet more than it takes, to notice a file that is too large without asking for its size: a pipe has none.
std::string text_of_file(const std::string &file, problem_list &problems)
{
    if (sent)
        return text_of_sent(file, problems);
    note_input(file);
    const auto stream = open_to_read(file);
    std::string text(stream ? largest_file + 1 : 0, '\0');
    if (stream)
        text.resize(std::fread(text.data(), 1, text.size(), stream.get()));
    if (!stream || std::ferror(stream.get()))
        problems.push_back({whole_file, fmt::format("cannot be read: {}", std::strerror(errno))});
    else if (text.size() > largest_file)
        problems.push_back({whole_file, fmt::format("is larger than {}", quantity_text(largest_file, size_units))});
    return plain(std::move(text));
}

// What is no regular file is written into: renaming would put a file in the place of /dev/stdout.
std::optional<std::string> write_file(const std::string &file, std::string_view text)
{
    if (sent) {
        sent->written.insert_or_assign(file, text);
        return std::nullopt;
    }
    struct stat there = {};
    const bool exists = stat(file.c_str(), &there) == 0;
    const bool is_regular = exists && S_ISREG(there.st_mode);
    if (is_regular && is_input(there))
        return "cannot be written: it is an input of this run";
    const bool written =
        exists && !is_regular ? write_into(file, text) : replace(resolved(file), text, exists ? &there : nullptr);
    return written ? std::nullopt : std::optional(fmt::format("cannot be written: {}", std::strerror(errno)));
}

} // namespace kelctl
