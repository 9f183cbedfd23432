/*
 * handle.cpp - issuing and judging handles.
 */
#include "softnode/common/handle.h"

#include <array>
#include <charconv>

namespace softnode
{

Handle handle_of(const void *pointer)
{
    return static_cast<Handle>(reinterpret_cast<std::uintptr_t>(pointer));
}

void *pointer_of(Handle handle)
{
    return reinterpret_cast<void *>(static_cast<std::uintptr_t>(handle));
}

std::string text_of(Handle handle)
{
    std::array<char, 16> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), static_cast<std::uint64_t>(handle), 16).ptr;
    return "0x" + std::string(digits.data(), end);
}

HandleSeries::HandleSeries(Kind kind) : base_(std::uint64_t{static_cast<std::uint32_t>(kind)} << 32)
{
}

Handle HandleSeries::next()
{
    return static_cast<Handle>(base_ + ++issued_);
}

Refusal HandleSeries::judge(Handle handle, bool alive) const
{
    if (alive)
        return Refusal::granted;
    const auto number = static_cast<std::uint64_t>(handle);
    return number > base_ && number <= base_ + issued_ ? Refusal::gone : Refusal::invalid;
}

} // namespace softnode
