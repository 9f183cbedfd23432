// Looking into the folders of the sockets.
#include "kelctl/remote/node_names.h"

#include "text/printable.h"

#include <fmt/core.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace kelctl
{
namespace
{

constexpr size_t longest_name = 64;
// For all users of the machine: a node that root or a service holds.
constexpr const char *everybody = "/run/kelctl";
constexpr const char *ending = ".sock";

// Of this user's session; empty: there is none.
std::string session_folder()
{
    const char *folder = std::getenv("XDG_RUNTIME_DIR");
    return folder && *folder == '/' ? fmt::format("{}/kelctl", folder) : "";
}

// Root serves for everybody even in a session of its own: others could not look into that session's folder.
std::string serving_folder()
{
    const std::string of_session = session_folder();
    return of_session.empty() || geteuid() == 0 ? everybody : of_session;
}

std::vector<std::string> folders()
{
    std::vector<std::string> both = {serving_folder()};
    for (const std::string &other : {session_folder(), std::string(everybody)})
        if (!other.empty() && other != both.front())
            both.push_back(other);
    return both;
}

} // namespace

std::string node_name_for(const std::string &file)
{
    return std::filesystem::path(file).stem();
}

// The name becomes that of a file, and is shown on terminals.
std::optional<std::string> wrong_node_name(const std::string &name)
{
    if (name.empty())
        return "the name of a node is empty";
    if (name.size() > longest_name)
        return fmt::format("the name of a node has at most {} octets: {} has {}", longest_name, text::in_quotes(name),
                           name.size());
    if (name.front() == '.' || name.find('/') != name.npos || text::without_controls(name) != name)
        return fmt::format(
            "{} cannot be the name of a node: it begins with a dot, or has a slash or a control character",
            text::in_quotes(name));
    return std::nullopt;
}

std::string socket_path(const std::string &name)
{
    return fmt::format("{}/{}{}", serving_folder(), name, ending);
}

std::vector<node_socket> node_sockets(const std::string &name)
{
    std::vector<node_socket> found;
    for (const std::string &folder : folders()) {
        std::error_code unreadable; // then there are none
        for (const auto &entry : std::filesystem::directory_iterator(folder, unreadable)) {
            const std::filesystem::path &path = entry.path();
            std::error_code gone;
            if (path.extension() == ending && (name.empty() || path.stem() == name) && entry.is_socket(gone))
                found.push_back({path.stem(), path});
        }
    }
    std::ranges::stable_sort(found, {}, &node_socket::name);
    return found;
}

} // namespace kelctl
