// An open file descriptor, closed with its owner.
#pragma once

#include <unistd.h>
#include <utility>

namespace sockets
{

class descriptor
{
public:
    explicit descriptor(int number = -1) : number_(number)
    {
    }
    descriptor(descriptor &&other) noexcept : number_(std::exchange(other.number_, -1))
    {
    }
    descriptor &operator=(descriptor &&other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~descriptor()
    {
        if (number_ >= 0)
            close(number_);
    }

    int number() const
    {
        return number_;
    }
    bool open() const
    {
        return number_ >= 0;
    }

private:
    int number_;
};

} // namespace sockets
