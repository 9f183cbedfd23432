// A call into the library, described once by its parameters: from them come what is passed and what a failure report
// tells of it.
//
//     session.call(asked, kel_core_ic_pcep_mc_member_add, value("mc_pcep_id", group), value("uc_pcep_id", pcep));
//     session.call(asked, kel_core_ic_ebcom_queue_stats_get, input("dst_mac", mac), output(stats));
//     operation_of("kel_core_ic_pcep_mc_group_add", kel_core_ic_pcep_mc_group_add, value("mc_pcep_id", group));
//
// A parameter refers to what it was made from, and must not outlive it; only `copied` and `unread` stand alone.
#pragma once

#include "kelctl/call_text.h"
#include "kelctl/operation.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

namespace kelctl
{

// ---- Parameters: passed() is what they hand over, text() what a report tells of them; results have none ----

template <typename Number> struct value {
    std::string_view name;
    Number number;

    value(std::string_view its_name, Number its_number) : name(its_name), number(its_number)
    {
    }

    auto passed() const
    {
        return std::tuple(number);
    }

    std::string text() const
    {
        return fmt::format("{}={}", name, number);
    }
};

// As a pointer.
struct pointer {
    std::string_view name;
    uint64_t number;

    auto passed() const
    {
        return std::tuple(reinterpret_cast<void *>(number));
    }

    std::string text() const
    {
        return fmt::format("{}=0x{:x}", name, number);
    }
};

// What is passed by its address and only read.
template <typename Type> struct input {
    std::string_view name;
    const Type &read;

    input(std::string_view its_name, const Type &its_object) : name(its_name), read(its_object)
    {
    }

    auto passed() const
    {
        if constexpr (std::is_same_v<Type, mac_address>)
            return std::tuple(read.octets.data());
        else if constexpr (std::is_same_v<Type, std::array<uint8_t, 2>>)
            return std::tuple(read.data());
        else
            return std::tuple(&read);
    }

    std::string text() const
    {
        return told(name, read);
    }
};

// The same, kept in the parameter.
template <typename Type> struct copied {
    std::string_view name;
    Type read;

    copied(std::string_view its_name, const Type &its_object) : name(its_name), read(its_object)
    {
    }

    auto passed() const
    {
        return input<Type>(name, read).passed();
    }

    std::string text() const
    {
        return told(name, read);
    }
};

// What the library writes.
template <typename Type> struct output {
    Type &written;

    explicit output(Type &its_object) : written(its_object)
    {
    }

    auto passed() const
    {
        return std::tuple(&written);
    }
};

// The same, for what nobody looks at.
template <typename Type> struct unread {
    auto passed() const
    {
        return std::tuple(&anywhere);
    }

private:
    static inline Type anywhere{};
};

// A text that the library writes, with the size of its buffer.
template <typename Buffer> struct text_output {
    Buffer &buffer;

    explicit text_output(Buffer &its_buffer) : buffer(its_buffer)
    {
    }

    auto passed() const
    {
        return std::tuple(buffer.data(), static_cast<uint32_t>(buffer.size()));
    }
};

// A stream that the library prints on.
struct stream_value {
    std::FILE *stream;

    auto passed() const
    {
        return std::tuple(stream);
    }
};

// ---- The call ----

template <typename Parameter> void add_text(std::vector<std::string> &texts, const Parameter &parameter)
{
    if constexpr (requires { parameter.text(); })
        texts.push_back(parameter.text());
}

template <typename... Parameters> std::string text_of_call(std::string_view name, const Parameters &...parameters)
{
    std::vector<std::string> texts;
    (add_text(texts, parameters), ...);
    return fmt::format("{}({})", name, fmt::join(texts, ", "));
}

// `name` is the function's, and lasts as long as the program.
template <typename Function, typename... Parameters>
operation operation_of(std::string_view name, Function function, const Parameters &...parameters)
{
    return {[=] { return text_of_call(name, parameters...); },
            [=] { return std::apply(function, std::tuple_cat(parameters.passed()...)); }};
}

} // namespace kelctl
