// What was done with the library, as a C program against its public headers that does the same.
#pragma once

#include "kelctl/call_text.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kelctl
{

class c_program
{
public:
    // A call that was made, and what it returned: the program ends where it returns something else.
    void add(std::string_view function, const call_text &call, uint32_t code);

    // A comment between two calls, of one line.
    void remark(std::string_view text);

    // The whole program. It gets the own MP id of this process, too.
    std::string text() const;

private:
    std::string statements_;
    std::string helpers_;
};

} // namespace kelctl
