// The operations that a thread is in, outermost first. A recording may begin and end within some, and may lack records:
// those operations are cut off. Who uses it decides what a frame holds.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <vector>

namespace kel_trace
{

// How many operations a recording shows in part only.
struct cut_operations {
    size_t at_beginning = 0; // left, and not entered
    size_t at_end = 0;       // entered, and not left
    size_t within = 0;       // entered, and still open when one around them was left

    bool operator==(const cut_operations &) const = default;
    cut_operations &operator+=(const cut_operations &other)
    {
        at_beginning += other.at_beginning;
        at_end += other.at_end;
        within += other.within;
        return *this;
    }
};

// `Frame` has a member `name`.
template <typename Frame> class open_operations
{
public:
    void enter(Frame frame)
    {
        open_.push_back(std::move(frame));
    }

    // Leaves the innermost operation of this name and those within it, and returns false when there is none. The frame
    // is handed to `left`, after it was taken off.
    template <typename Left> bool leave(std::string_view name, cut_operations &cut, Left left)
    {
        const auto found =
            std::find_if(open_.rbegin(), open_.rend(), [name](const Frame &f) { return f.name == name; });
        if (found == open_.rend()) {
            ++cut.at_beginning;
            return false;
        }
        cut.within += static_cast<size_t>(found - open_.rbegin());
        Frame frame = std::move(*found);
        open_.erase(found.base() - 1, open_.end());
        left(frame);
        return true;
    }

    bool empty() const
    {
        return open_.empty();
    }
    size_t size() const
    {
        return open_.size();
    }
    Frame &innermost()
    {
        return open_.back();
    }
    Frame *find(std::string_view name)
    {
        const auto found =
            std::find_if(open_.rbegin(), open_.rend(), [name](const Frame &f) { return f.name == name; });
        return found == open_.rend() ? nullptr : &*found;
    }

private:
    std::vector<Frame> open_;
};

// "kel_core_ic_ebcom_stop" of the message of an entry or an exit, "kel_core_ic_ebcom_stop()".
inline std::string_view frame_name(std::string_view message)
{
    return message.substr(0, message.find('('));
}

} // namespace kel_trace
