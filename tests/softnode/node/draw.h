/*
 * draw.h - numbers for properties, drawn from the whole of a range, also in the first cases, that are meant to be small.
 */
#ifndef TESTS_SOFTNODE_DRAW_H
#define TESTS_SOFTNODE_DRAW_H

#include <rapidcheck.h>

#include <cstdint>

/* Both of them included. */
template <class Number> Number draw_between(Number least, Number most)
{
    return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange<Number>(least, most + 1));
}

/* Of any magnitude up to so many bits. */
inline std::uint32_t draw_of_any_size(std::uint32_t bits)
{
    const auto size = draw_between<std::uint32_t>(0, bits);
    return draw_between<std::uint32_t>(0, (1U << size) - 1);
}

/* True once in so many times. */
inline bool draw_once_in(std::uint32_t times)
{
    return draw_between<std::uint32_t>(1, times) == times;
}

#endif
