// A call into the library, described once by its parameters: they give both the arguments that are passed and the text
// of the call in a failure report. session::call() (session/session.h) makes the call and collects its trace records.
//
//     session.call(asked, kel_core_ic_pcep_mc_group_add, parameter::value("mc_pcep_id", group));
//     session.call(asked, kel_core_ic_ebcom_queue_stats_get, parameter::input("dst_mac", mac),
//                  parameter::output(stats));
//
// A parameter refers to what it was made from, and must not outlive it.
#pragma once

#include "kelctl/library/call_text.h"
#include "kelctl/library/trace_entry.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

namespace kelctl
{

// A call that the library refused.
struct failure {
    std::string operation; // the call with its arguments
    uint32_t code = 0;
    std::vector<trace_entry> records = {}; // that it fired
    std::string hint = {};                 // what to do about it; empty: nothing is known
};

// Parameters of a call. passed() returns the C arguments, text() what a report shows of them; outputs have no text.
namespace parameter
{

// A number that is passed as it is.
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
        return argument_text(name, number);
    }
};

// A handle, passed as a pointer. The one function that takes any refuses nothing, so it has no text.
struct handle {
    uint64_t number;

    auto passed() const
    {
        return std::tuple(reinterpret_cast<void *>(number));
    }
};

// An object that is passed by its address, and that the library only reads.
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
        else if constexpr (requires { read.data(); })
            return std::tuple(read.data());
        else
            return std::tuple(&read);
    }

    std::string text() const
    {
        return argument_text(name, read);
    }
};

// An object that the library writes.
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

// A stream that the library prints on. Not owned.
struct stream_value {
    std::FILE *stream;

    auto passed() const
    {
        return std::tuple(stream);
    }
};

} // namespace parameter

// Calls the function with what the parameters pass, in their order. Returns what it returns.
template <typename Function, typename... Parameters> auto call_with(Function function, const Parameters &...parameters)
{
    return std::apply(function, std::tuple_cat(parameters.passed()...));
}

// Adds nothing for a parameter without a text: what the library writes is not yet known when a call fails.
template <typename Parameter> void add_text(std::string &list, const Parameter &parameter)
{
    if constexpr (requires { parameter.text(); })
        list += (list.empty() ? "" : ", ") + parameter.text();
}

// "kel_core_ic_pcep_mc_member_add(mc_pcep_id=300, uc_pcep_id=7)"
template <typename... Parameters> std::string text_of_call(std::string_view name, const Parameters &...parameters)
{
    std::string list;
    (add_text(list, parameters), ...);
    return std::string(name) + "(" + list + ")";
}

} // namespace kelctl
