// The arguments that a command was given, read and by their names in its row.
#pragma once

#include "kelctl/language/argument_kind.h"

#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// A handful at most: in one block of memory, in the order of their names.
class arguments
{
public:
    // The name is the row's, which has to outlive them.
    void set(std::string_view name, argument_value value);

    void erase(std::string_view name);

    bool has(std::string_view name) const
    {
        return find(name) != nullptr;
    }

    // Null: it was not given.
    const argument_value *find(std::string_view name) const;

    // Ask only for what is there, as what its kind reads: anything else is a mistake in a row and throws.
    template <typename Value> const Value &get(std::string_view name) const
    {
        return std::get<Value>(value(name));
    }

    // Numbers, rates, sizes and ports, as the type that the kind's range fits.
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

    bool operator==(const arguments &) const = default;

private:
    struct given_argument {
        std::string_view name;
        argument_value value;

        bool operator==(const given_argument &) const = default;
    };

    const argument_value &value(std::string_view name) const;

    std::vector<given_argument> values_;
};

} // namespace kelctl
