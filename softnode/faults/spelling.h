/*
 * spelling.h - helping somebody who misspelt a name: the one that was probably meant, and all there are.
 */
#ifndef SOFTNODE_SPELLING_H
#define SOFTNODE_SPELLING_H

#include <span>
#include <string>
#include <string_view>

namespace softnode
{

/** The known name that takes the fewest changed letters; empty when too many would have to change, or for several. */
std::string_view closest(std::string_view name, std::span<const std::string_view> known);

/** The names in lines of at most 100 columns, indented, separated by commas. */
std::string in_lines(std::span<const std::string_view> names);

} // namespace softnode

#endif
