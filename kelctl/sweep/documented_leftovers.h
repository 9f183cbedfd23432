// What operations leave behind when they fail, as their headers document it: the measure of a sweep.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace kelctl
{

struct documented_leftover {
    std::string_view operation;
    std::string_view refused; // the closed function that failed within it
    std::string_view kind;    // of object, in the words of the software accelerator's inventory
    std::string_view why;
};

// For tests, which try each of them.
std::span<const documented_leftover> documented_leftovers();

// Why an object of this kind may be left by one of these operations when `refused` failed. None when nothing documents
// it.
std::optional<std::string_view> why_left(std::span<const std::string_view> operations, std::string_view refused,
                                         std::string_view kind);

} // namespace kelctl
