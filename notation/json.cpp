// Writing and reading through the JSON library, which takes the compiler longer than all else here.
#include "notation/json.h"

#include <nlohmann/json.hpp>

namespace notation
{
namespace
{

using json = nlohmann::ordered_json;

constexpr size_t deepest = 500;

json json_of(const document &from);

json array_of(const document &from)
{
    json array = json::array();
    for (const document &item : from)
        array.push_back(json_of(item));
    return array;
}

json object_of(const document &from)
{
    json::object_t object;
    object.reserve(from.size());
    for (const auto &[name, value] : from.members())
        object.push_back({name, json_of(value)}); // no name comes twice
    return object;
}

json json_of(const document &from)
{
    switch (from.holds()) {
    case kind::null:
        return nullptr;
    case kind::boolean:
        return from.boolean();
    case kind::natural:
        return from.number<uint64_t>();
    case kind::negative:
        return from.number<int64_t>();
    case kind::real:
        return from.real();
    case kind::text:
        return from.text();
    case kind::array:
        return array_of(from);
    case kind::object:
        return object_of(from);
    }
    return nullptr;
}

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
        open_.pop_back();
        return true;
    }
    bool end_array()
    {
        return end_object();
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
        place(std::move(value));
        return true;
    }

    document &place(document value)
    {
        if (open_.empty())
            return root_ = std::move(value);
        if (open_.back()->is_object())
            return (*open_.back())[name_] = std::move(value);
        return open_.back()->push_back(std::move(value));
    }

    bool open(document value)
    {
        open_.push_back(&place(std::move(value)));
        return open_.size() <= deepest;
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
    return json_of(document).dump(indent, ' ', false, json::error_handler_t::replace);
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
