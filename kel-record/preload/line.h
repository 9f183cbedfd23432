// A command of kelctl as it is written down, in memory of its own: nothing is allocated. What the command language
// refuses and C accepts is written with --raw. What it has no words for, such as a null pointer, makes the line one
// that people can read and kelctl cannot.
//
//     line made("ebcom path add");
//     made.mac("", config.dst_mac);
//     made.number(" --rate", config.shaping_rate, rate_range);     // ends with --raw if the rate is 0
//     append(made.finished());
#pragma once

#include "kelctl/values/whole_number.h"

#include <cstddef>
#include <cstdint>

namespace kel_record
{

class line
{
public:
    // `command` is copied.
    explicit line(const char *command);

    // As printf does.
    [[gnu::format(printf, 2, 3)]] void add(const char *format, ...);

    // A value behind an option, or behind nothing. One that is not allowed needs --raw.
    void number(const char *option, int64_t value, const kelctl::range &allowed);
    // Six octets, or null.
    void mac(const char *option, const uint8_t *octets);

    // Between quotes. Octets that a line cannot have need --raw.
    void text(const char *option, const char *text);

    // Whether what the pointer leads to can be written down.
    bool reads(const void *pointer);

    void need_raw()
    {
        raw_ = true;
    }

    // Whether kelctl can carry it out.
    bool is_command() const
    {
        return is_command_;
    }

    // What has been written up to now, with --raw where it is needed.
    const char *finished();

private:
    char text_[8192]; // a message of 1023 octets, each written as four
    size_t size_ = 0;
    bool raw_ = false;
    bool is_command_ = true;
};

} // namespace kel_record
