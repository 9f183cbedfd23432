// Typed access to one table of a TOML document. Whatever is not as expected is noted with its place, and reading goes
// on: a caller that finds no new problems has good values only. Knows nothing of what the tables mean.
#pragma once

#include "kelctl/nodefile/toml.h"
#include "kelctl/values/mac_address.h"
#include "kelctl/values/problem.h"
#include "kelctl/values/quantity.h"
#include "kelctl/values/whole_number.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelctl
{

// The document must outlive its readers.
class table_reader
{
public:
    table_reader(const toml::table &table, std::string_view name, problem_list &problems);

    // Notes every key that is not known. A known one that is missing because it is misspelt is not noted again.
    void allow_only(std::span<const std::string_view> known);

    bool has(std::string_view key) const;

    // Where a key's value stands; where the table starts when there is none.
    position at(std::string_view key) const;
    position at() const;

    // The value; null, and a problem, when it is missing.
    const toml::node *required(std::string_view key) const;

    // A whole number within the range; range.min, and a problem, for anything else.
    uint32_t number(std::string_view key, const range &allowed) const;

    // The same, but none for anything else.
    std::optional<uint32_t> sound_number(std::string_view key, const range &allowed) const;

    // A whole number of the first unit, or a text with a unit: 64, "64 KiB".
    uint32_t quantity(std::string_view key, std::span<const unit> units, const range &allowed) const;

    // The same in nanoseconds, always with a unit: "250 ms".
    uint64_t duration(std::string_view key, const range &allowed) const;

    std::optional<std::string> text(std::string_view key) const;

    // The MAC address of one station; no address, and a problem, for anything else.
    mac_address station(std::string_view key) const;

    // The whole numbers of an array of exactly that many; what is wrong with them becomes range.min.
    std::vector<uint32_t> numbers(std::string_view key, size_t count, const range &allowed) const;

    // The whole numbers of an array of any length, as far as they are within the range.
    std::vector<placed_number> list(std::string_view key, const range &allowed) const;

    std::optional<table_reader> table(std::string_view key) const;

    // The tables written [[key]]; none when there are none.
    std::vector<table_reader> tables(std::string_view key) const;

    void note(position at, std::string message) const;

private:
    std::optional<uint32_t> number_of(std::string_view key, const toml::node &node, const range &allowed) const;
    std::optional<uint64_t> parsed(std::string_view key, const toml::node &node, std::span<const unit> units,
                                   const range &allowed) const;
    std::optional<uint64_t> checked(std::string_view key, const toml::node &node, uint64_t value,
                                    const range &allowed) const;
    void note_type(std::string_view key, const toml::node &node, std::string_view expected) const;

    const toml::table *table_;
    std::string name_;
    problem_list *problems_;
    std::vector<std::string_view> misspelt_; // known keys that unknown ones come close to
};

position position_of(const toml::source_region &region);

} // namespace kelctl
