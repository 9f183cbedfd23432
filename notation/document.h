// A plain tree of values: what a program found out, before anybody decides how it is written. Its JSON is in json.h.
//
//     document port = {{"name", "RLU1P"}, {"queue", nullptr}};     // braces around names and values make an object
//     port["members"] = document::array({1, 2});
//
// Nearly every file of a program sees this header, so it has little for a compiler to do: no variant, no inline copies.
//
// A document owns all below it; copies are deep. References to items and members are valid until one is added beside
// them.
#pragma once

#include <bit>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace notation
{

// A document does not hold what it was asked for, or a text is no JSON.
struct document_error : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// A number that is not negative is `natural`, whatever its type was, so that equal numbers are equal documents.
enum class kind : uint8_t { null, boolean, natural, negative, real, text, array, object };

class document
{
public:
    struct member;

    // What a value may be written as becomes a document by itself.
    document(std::nullptr_t = nullptr);
    document(std::integral auto value) : document(kind_of(value), static_cast<uint64_t>(value))
    {
    }
    document(std::floating_point auto number) : document(kind::real, std::bit_cast<uint64_t>(double{number}))
    {
    }
    document(const char *text);
    document(std::string_view text);
    document(std::string text);
    document(std::initializer_list<member> members);
    template <typename Element> document(const std::vector<Element> &items) : document(array())
    {
        for (const Element &item : items)
            push_back(item);
    }

    // Empty ones, which braces alone do not make: a document without members is null.
    static document array(std::initializer_list<document> items = {});
    static document object();

    document(const document &other);
    document(document &&other) noexcept;
    document &operator=(const document &other);
    document &operator=(document &&other) noexcept;
    ~document();

    bool operator==(const document &other) const;

    kind holds() const
    {
        return holds_;
    }
    bool is_null() const
    {
        return holds_ == kind::null;
    }
    bool is_array() const
    {
        return holds_ == kind::array;
    }
    bool is_object() const
    {
        return holds_ == kind::object;
    }
    bool is_number() const;

    // The value. They throw document_error when it is of another kind, or a number which the type cannot hold.
    bool boolean() const;
    double real() const;
    const std::string &text() const;
    template <std::integral Number> Number number() const
    {
        if (holds_ == kind::natural && std::in_range<Number>(bits_))
            return static_cast<Number>(bits_);
        if (holds_ == kind::negative && std::in_range<Number>(static_cast<int64_t>(bits_)))
            return static_cast<Number>(bits_);
        fail("a whole number of that range");
    }

    // How many items or members there are; none but in an array or an object.
    size_t size() const;
    bool empty() const;

    // The items of an array; anything else has none.
    const document *begin() const;
    const document *end() const;
    const document &operator[](size_t index) const;
    document &operator[](size_t index);
    document &push_back(document item); // null becomes an array

    // The members of an object in the order of their adding; anything else has none.
    const std::vector<member> &members() const;
    std::vector<member> &members();
    const document *find(std::string_view name) const; // null: no such member
    const document &at(std::string_view name) const;   // throws document_error: no such member
    document &operator[](std::string_view name);       // adds the member; null becomes an object

private:
    document(kind holds, uint64_t bits);
    static constexpr kind kind_of(std::integral auto value)
    {
        if constexpr (std::same_as<decltype(value), bool>)
            return kind::boolean;
        else
            return std::cmp_less(value, 0) ? kind::negative : kind::natural;
    }
    void expect(kind expected) const;
    [[noreturn]] static void fail(std::string_view expected);

    kind holds_;
    uint64_t bits_; // of a boolean or a number
    std::string text_;
    std::vector<document> items_;
    std::vector<member> members_;
};

struct document::member {
    std::string name;
    document value;

    bool operator==(const member &other) const;
};

} // namespace notation
