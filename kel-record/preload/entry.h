// How a function of another library gets one of ours in front of it. The program, and each library, reaches the first
// function of a name: here a jump to a wrapper, which the compiler makes from the function's own declaration.
//
//     INTERPOSE(ork_bind, &wrapper<row_of_ork_bind, decltype(::ork_bind)>::call)
//
// The jump is written in assembly: from a declaration C++ makes a function's type, but not its definition. It leaves
// the return address as it was, by which a wrapper tells who calls. endbr64: where the processor checks indirect calls,
// they may lead here.
#pragma once

#include <atomic>
#include <dlfcn.h>

#define INTERPOSE(function, ...)                                                                                       \
    extern "C" {                                                                                                       \
    extern const decltype(&::function) kel_record_before_##function;                                                   \
    [[gnu::used]] constinit const decltype(&::function) kel_record_before_##function = __VA_ARGS__;                    \
    }                                                                                                                  \
    asm(".pushsection .text\n"                                                                                         \
        ".globl " #function "\n"                                                                                       \
        ".type " #function ", @function\n" #function ":\n"                                                             \
        "endbr64\n"                                                                                                    \
        "jmp *kel_record_before_" #function "(%rip)\n"                                                                 \
        ".size " #function ", . - " #function "\n"                                                                     \
        ".popsection")

namespace kel_record
{

// The function of this name that comes after ours: the real one. Looked up by the first call; threads that look it up
// at the same time find the same.
template <typename Function> class next_function
{
public:
    explicit constexpr next_function(const char *name) : name_(name)
    {
    }

    Function *get()
    {
        if (!found_)
            found_ = reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name_));
        return found_;
    }

private:
    const char *name_;
    std::atomic<Function *> found_ = nullptr;
};

} // namespace kel_record
