// A call into the library, described once by its parameters: from them come what is passed, what a failure report tells
// of it, and the same call as C text.
//
//     session.call(asked, kel_core_ic_pcep_mc_member_add, value("mc_pcep_id", group), value("uc_pcep_id", pcep));
//     session.call(asked, kel_core_ic_ebcom_queue_stats_get, input("dst_mac", mac), output("stats", stats));
//     operation_of("kel_core_ic_pcep_mc_group_add", kel_core_ic_pcep_mc_group_add, value("mc_pcep_id", group));
//
// A parameter refers to what it was made from, and must not outlive it; only `copied` and `unread` stand alone.
#pragma once

#include "kelctl/c_program.h"
#include "kelctl/c_text.h"
#include "kelctl/call_text.h"
#include "kelctl/operation.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

namespace kelctl
{

// ---- Parameters: passed() is what they hand over, add_to() how they are written ----

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

    void add_to(call_text &call) const
    {
        call.told.push_back(fmt::format("{}={}", name, number));
        call.arguments.push_back(c_number(number));
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

    void add_to(call_text &call) const
    {
        call.told.push_back(fmt::format("{}=0x{:x}", name, number));
        call.arguments.push_back(fmt::format("(void *)0x{:x}", number));
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
        else if constexpr (is_c_array<Type>)
            return std::tuple(read.data());
        else
            return std::tuple(&read);
    }

    void add_to(call_text &call) const
    {
        call.told.push_back(told(name, read));
        call.declarations.push_back(fmt::format("const {};", c_definition(name, read)));
        call.arguments.push_back(fmt::format("{}{}", is_c_array<Type> ? "" : "&", name));
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

    void add_to(call_text &call) const
    {
        input<Type>(name, read).add_to(call);
    }
};

// What the library writes.
template <typename Type> struct output {
    std::string_view name;
    Type &written;

    output(std::string_view its_name, Type &its_object) : name(its_name), written(its_object)
    {
    }

    auto passed() const
    {
        return std::tuple(&written);
    }

    void add_to(call_text &call) const
    {
        constexpr const char *nothing = std::is_class_v<Type> ? "{0}" : "0";
        call.declarations.push_back(fmt::format("{}{} = {};", c_type<Type>, name, nothing));
        call.arguments.push_back(fmt::format("&{}", name));
    }
};

// The same, for what nobody looks at.
template <typename Type> struct unread {
    std::string_view name;

    explicit unread(std::string_view its_name) : name(its_name)
    {
    }

    auto passed() const
    {
        return output<Type>(name, anywhere).passed();
    }

    void add_to(call_text &call) const
    {
        output<Type>(name, anywhere).add_to(call);
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

    void add_to(call_text &call) const
    {
        call.declarations.push_back(fmt::format("char text[{}] = \"\";", buffer.size()));
        call.arguments.insert(call.arguments.end(), {"text", "sizeof text"});
        call.afterwards.emplace_back("fputs(text, stdout);");
    }
};

// A string; null for none.
struct string_value {
    std::string_view name;
    const char *string;

    auto passed() const
    {
        return std::tuple(string);
    }

    void add_to(call_text &call) const
    {
        call.told.push_back(fmt::format("{}={}", name, string ? string : "null"));
        call.arguments.push_back(string ? c_string(string) : "NULL");
    }
};

// A string that is the same in every call, and not told.
struct constant_string {
    const char *string;

    auto passed() const
    {
        return std::tuple(string);
    }

    void add_to(call_text &call) const
    {
        call.arguments.push_back(c_string(string));
    }
};

// A stream that the library prints on; standard output in a C program.
struct stream_value {
    std::FILE *stream;

    auto passed() const
    {
        return std::tuple(stream);
    }

    void add_to(call_text &call) const
    {
        call.arguments.emplace_back("stdout");
    }
};

// ---- The call ----

template <typename... Parameters> call_text text_of_call(const Parameters &...parameters)
{
    call_text call;
    (parameters.add_to(call), ...);
    return call;
}

template <typename Function, typename... Parameters> auto call_with(Function function, const Parameters &...parameters)
{
    return std::apply(function, std::tuple_cat(parameters.passed()...));
}

// `name` is the function's, and lasts as long as the program.
template <typename Function, typename... Parameters>
operation operation_of(std::string_view name, Function function, const Parameters &...parameters)
{
    const auto text = [=] { return text_of_call(parameters...); };
    return {[=] { return fmt::format("{}({})", name, fmt::join(text().told, ", ")); },
            [=] { return call_with(function, parameters...); },
            [=](c_program &program, uint32_t code) { program.add(name, text(), code); }};
}

} // namespace kelctl
