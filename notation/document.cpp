// The tree of values. Constructors and copies are here, and not in the header, so that they are compiled once.
#include "notation/document.h"

namespace notation
{

document::document(kind holds, uint64_t bits) : holds_(holds), bits_(bits)
{
}

document::document(std::nullptr_t) : document(kind::null, 0)
{
}

document::document(const char *text) : document(std::string(text))
{
}

document::document(std::string_view text) : document(std::string(text))
{
}

document::document(std::string text) : document(kind::text, 0)
{
    text_ = std::move(text);
}

document::document(std::initializer_list<member> members) : document(kind::object, 0)
{
    members_ = members;
}

document document::array(std::initializer_list<document> items)
{
    document made(kind::array, 0);
    made.items_ = items;
    return made;
}

document document::object()
{
    return {kind::object, 0};
}

document::document(const document &other) = default;
document::document(document &&other) noexcept = default;
document &document::operator=(const document &other) = default;
document &document::operator=(document &&other) noexcept = default;
document::~document() = default;

// Written out: Clang 14 does not get through comparing a type with itself by default.
bool document::operator==(const document &other) const
{
    return holds_ == other.holds_ && bits_ == other.bits_ && text_ == other.text_ && items_ == other.items_ &&
           members_ == other.members_;
}

bool document::member::operator==(const member &other) const
{
    return name == other.name && value == other.value;
}

bool document::is_number() const
{
    return holds_ == kind::natural || holds_ == kind::negative || holds_ == kind::real;
}

bool document::boolean() const
{
    expect(kind::boolean);
    return bits_ != 0;
}

double document::real() const
{
    expect(kind::real);
    return std::bit_cast<double>(bits_);
}

const std::string &document::text() const
{
    expect(kind::text);
    return text_;
}

size_t document::size() const
{
    return items_.size() + members_.size();
}

bool document::empty() const
{
    return size() == 0;
}

const document *document::begin() const
{
    return items_.data();
}

const document *document::end() const
{
    return items_.data() + items_.size();
}

const document &document::operator[](size_t index) const
{
    if (index >= items_.size())
        fail("an array of that length");
    return items_[index];
}

document &document::operator[](size_t index)
{
    if (index >= items_.size())
        fail("an array of that length");
    return items_[index];
}

// What is null becomes a list or an object when the first item or member is added: whoever builds a document up need
// not say before what it will be.
document &document::push_back(document item)
{
    if (is_null())
        holds_ = kind::array;
    expect(kind::array);
    return items_.emplace_back(std::move(item));
}

const std::vector<document::member> &document::members() const
{
    return members_;
}

std::vector<document::member> &document::members()
{
    return members_;
}

// A walk over the members: most objects have a handful, and their order is kept without a second list.
const document *document::find(std::string_view name) const
{
    for (const member &one : members_)
        if (one.name == name)
            return &one.value;
    return nullptr;
}

const document &document::at(std::string_view name) const
{
    if (const document *found = find(name))
        return *found;
    fail("an object with \"" + std::string(name) + "\"");
}

document &document::operator[](std::string_view name)
{
    if (is_null())
        holds_ = kind::object;
    expect(kind::object);
    for (member &one : members_)
        if (one.name == name)
            return one.value;
    return members_.emplace_back(member{std::string(name), nullptr}).value;
}

void document::expect(kind expected) const
{
    static constexpr std::string_view names[] = {"null",   "a boolean", "a whole number", "a negative number",
                                                 "a real", "a string",  "an array",       "an object"};
    if (holds_ != expected)
        fail(names[static_cast<size_t>(expected)]);
}

// Says what was expected only: the document itself may be large, and come from anywhere.
void document::fail(std::string_view expected)
{
    throw document_error("the document does not hold " + std::string(expected));
}

} // namespace notation
