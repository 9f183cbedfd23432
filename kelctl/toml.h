// The TOML parser, as it has to be for files that anybody may have written. Include it only from here.
#pragma once

// A hostile file must not nest deeper than the stack.
#define TOML_MAX_NESTED_VALUES 32

// Some hostile files break what the parser asserts, and are then read to an error all the same. So the assertions must
// neither end the process nor, as they do without debugging, become promises to the compiler.
#define TOML_ASSERT(condition) static_assert(true)
#pragma push_macro("NDEBUG")
#undef NDEBUG
#include <toml++/toml.h>
#pragma pop_macro("NDEBUG")
