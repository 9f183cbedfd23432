// Written directly; reading, letters that have to be escaped, and real numbers are the JSON library's, which takes the
// compiler longer than all else here.
#include "notation/json.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace notation
{
namespace
{

using json = nlohmann::ordered_json;

// Levels of arrays and objects: documents are destroyed and compared by recursion.
constexpr size_t deepest = 500;

bool is_plain(char letter)
{
    return letter >= ' ' && letter <= '~' && letter != '"' && letter != '\\';
}

// Writes as it comes upon values. Numbers are written as they are held, so that 64 bits stay exact.
class writer
{
public:
    explicit writer(int indent) : indent_(indent)
    {
    }

    std::string take()
    {
        return std::move(text_);
    }

    void write(const document &value)
    {
        switch (value.holds()) {
        case kind::null:
            text_ += "null";
            break;
        case kind::boolean:
            text_ += value.boolean() ? "true" : "false";
            break;
        case kind::natural:
            text_ += std::to_string(value.number<uint64_t>());
            break;
        case kind::negative:
            text_ += std::to_string(value.number<int64_t>());
            break;
        case kind::real:
            text_ += json(value.real()).dump();
            break;
        case kind::text:
            write_text(value.text());
            break;
        case kind::array:
            write_list('[', value, ']', [this](const document &item) { write(item); });
            break;
        case kind::object:
            write_list('{', value.members(), '}', [this](const document::member &one) {
                write_text(one.name);
                text_ += indent_ < 0 ? ":" : ": ";
                write(one.value);
            });
            break;
        }
    }

private:
    // Most texts need no escaping, and are written without a look at the JSON library.
    void write_text(const std::string &text)
    {
        if (std::ranges::all_of(text, is_plain))
            text_.append(1, '"').append(text).append(1, '"');
        else
            text_ += json(text).dump(-1, ' ', false, json::error_handler_t::replace);
    }

    template <typename List, typename Write> void write_list(char open, const List &list, char close, Write write_one)
    {
        text_ += open;
        ++depth_;
        bool first = true;
        for (const auto &one : list) {
            if (!std::exchange(first, false))
                text_ += ',';
            start_line();
            write_one(one);
        }
        --depth_;
        if (!first)
            start_line();
        text_ += close;
    }

    void start_line()
    {
        if (indent_ >= 0)
            text_.append(1, '\n').append(depth_ * static_cast<size_t>(indent_), ' ');
    }

    const int indent_; // negative: all on one line
    size_t depth_ = 0;
    std::string text_;
};

// Puts together what the parser comes upon.
class builder
{
public:
    document take()
    {
        return std::move(root_);
    }

    bool null()
    {
        return put(nullptr);
    }
    bool boolean(bool truth)
    {
        return put(truth);
    }
    bool number_integer(int64_t number)
    {
        return put(number);
    }
    bool number_unsigned(uint64_t number)
    {
        return put(number);
    }
    bool number_float(double number, const std::string &)
    {
        return put(number);
    }
    bool string(std::string &text)
    {
        return put(std::move(text));
    }
    bool binary(const json::binary_t &)
    {
        return false; // JSON has none
    }
    bool start_object(size_t)
    {
        return open(document::object());
    }
    bool start_array(size_t)
    {
        return open(document::array());
    }
    bool end_object()
    {
        unite_namesakes(open_.back()->members());
        return end_array();
    }
    bool end_array()
    {
        open_.pop_back();
        return true;
    }
    bool key(std::string &name)
    {
        name_ = std::move(name);
        return true;
    }
    bool parse_error(size_t, const std::string &, const std::exception &)
    {
        return false;
    }

private:
    bool put(document value)
    {
        add(std::move(value));
        return true;
    }

    document &add(document value)
    {
        if (open_.empty())
            return root_ = std::move(value);
        if (open_.back()->is_object())
            return open_.back()->members().emplace_back(document::member{std::move(name_), std::move(value)}).value;
        return open_.back()->push_back(std::move(value));
    }

    bool open(document value)
    {
        open_.push_back(&add(std::move(value)));
        return open_.size() <= deepest;
    }

    // The last one counts, in the place of the first. Not found out member by member: a text may have a million of
    // them. Sorted by name and, within a name, in their order.
    static void unite_namesakes(std::vector<document::member> &members)
    {
        std::vector<document::member *> sorted;
        sorted.reserve(members.size());
        for (document::member &one : members)
            sorted.push_back(&one);
        std::ranges::sort(sorted, {}, [](auto *one) { return std::pair(std::string_view(one->name), one); });
        std::vector<bool> gone(members.size());
        for (size_t i = sorted.size(); i-- > 1;)
            if (sorted[i]->name == sorted[i - 1]->name) {
                sorted[i - 1]->value = std::move(sorted[i]->value);
                gone[static_cast<size_t>(sorted[i] - members.data())] = true;
            }
        std::erase_if(members, [&](auto &one) { return gone[static_cast<size_t>(&one - members.data())]; });
    }

    document root_;
    std::vector<document *> open_; // within each other; none of them grows but the last
    std::string name_;             // of the next member
};

} // namespace

std::string to_json(const document &document)
{
    return to_json(document, -1);
}

std::string to_json(const document &document, int indent)
{
    writer made(indent);
    made.write(document);
    return made.take();
}

document read_json(std::string_view text)
{
    if (auto read = try_read_json(text))
        return *std::move(read);
    throw document_error("not JSON");
}

std::optional<document> try_read_json(std::string_view text)
{
    builder made;
    if (!json::sax_parse(text, &made))
        return std::nullopt;
    return made.take();
}

} // namespace notation
