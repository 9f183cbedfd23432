// The arguments that a command was given, read and by their names in its row.
#pragma once

#include "kelctl/language/argument_kind.h"

#include <map>
#include <string>
#include <string_view>

namespace kelctl
{

class arguments
{
public:
    void set(std::string_view name, argument_value value);

    void erase(std::string_view name);

    bool has(std::string_view name) const;

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

    const std::map<std::string, argument_value, std::less<>> &all() const
    {
        return values_;
    }

private:
    const argument_value &value(std::string_view name) const;

    std::map<std::string, argument_value, std::less<>> values_;
};

} // namespace kelctl
