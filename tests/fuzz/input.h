/*
 * input.h - the octets of a fuzzer, taken as values one after the other. There are always more: an input that has ended
 * goes on with zeros.
 */
#ifndef TESTS_FUZZ_INPUT_H
#define TESTS_FUZZ_INPUT_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

class Input
{
public:
    Input(const std::uint8_t *octets, std::size_t count) : next_(octets), left_(count)
    {
    }

    bool ended() const
    {
        return left_ == 0;
    }

    /* Numbers and records, in the order of this machine's octets. */
    template <class Value> Value take()
    {
        static_assert(std::is_trivially_copyable_v<Value>);
        Value value{};
        copy(&value, sizeof value);
        return value;
    }

    /* A number below the limit. */
    std::size_t below(std::size_t limit)
    {
        return take<std::uint8_t>() % limit;
    }

    /* At most 255 octets. A C string ends at its first zero. */
    std::string text()
    {
        const std::size_t wanted = take<std::uint8_t>();
        std::string text(std::min(wanted, left_), '\0');
        copy(text.data(), text.size());
        return text;
    }

private:
    void copy(void *to, std::size_t size)
    {
        const std::size_t there = std::min(size, left_);
        if (there == 0)
            return;
        std::memcpy(to, next_, there);
        next_ += there;
        left_ -= there;
    }

    const std::uint8_t *next_;
    std::size_t left_;
};

#endif
