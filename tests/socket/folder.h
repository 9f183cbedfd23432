// A folder of a test's own, gone at its end.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

namespace sockets
{

class folder
{
public:
    folder() : path_("/tmp/kel-socket-XXXXXX")
    {
        if (!mkdtemp(path_.data()))
            std::abort();
    }
    ~folder()
    {
        std::filesystem::remove_all(path_);
    }
    folder(const folder &) = delete;
    folder &operator=(const folder &) = delete;

    const std::string &path() const
    {
        return path_;
    }
    std::string file(const std::string &name) const
    {
        return path_ + '/' + name;
    }

private:
    std::string path_;
};

} // namespace sockets
