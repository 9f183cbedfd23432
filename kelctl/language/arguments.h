// The arguments of one command after reading, by the names in its row:
//
//     const uint32_t id = asked.given.id("ID");
//     const bool reset = asked.given.has("--reset");
#pragma once

#include "kelctl/language/argument_kind.h"

#include <compare>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// At most a handful: a sorted vector is one allocation, and faster to search than a map.
class arguments
{
public:
    // Adds or replaces. The name is not copied: it is the row's, and the row must outlive this.
    void set(std::string_view name, argument_value value);

    // Does nothing when it was not given.
    void erase(std::string_view name);

    bool has(std::string_view name) const
    {
        return find(name) != nullptr;
    }

    // Null when it was not given.
    const argument_value *find(std::string_view name) const;

    // The value, as the type that the argument's kind reads. Throws when it was not given or has another type: both are
    // mistakes of a row, not of a person.
    template <typename Value> const Value &get(std::string_view name) const
    {
        return std::get<Value>(value(name));
    }

    // A number, rate, size or port, as a type that holds the kind's range.
    template <typename Number> Number number(std::string_view name) const
    {
        return static_cast<Number>(get<int64_t>(name));
    }

    const mac_address &mac(std::string_view name) const
    {
        return get<mac_address>(name);
    }

    uint32_t id(std::string_view name) const
    {
        return number<uint32_t>(name);
    }

    const std::string &text(std::string_view name) const
    {
        return get<std::string>(name);
    }

    // Defined once: defaulted here, every file that includes this would compile the comparison of all types of values.
    bool operator==(const arguments &other) const;
    std::strong_ordering operator<=>(const arguments &other) const;

private:
    struct given_argument {
        std::string_view name;
        argument_value value;

        auto operator<=>(const given_argument &) const = default;
    };

    const argument_value &value(std::string_view name) const;

    std::vector<given_argument> values_;
};

} // namespace kelctl
