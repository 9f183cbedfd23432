// Walking along the words before the cursor, as the grammar does.
#include "kelctl/completion.h"

#include "kelctl/command_line.h"
#include "kelctl/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

namespace kelctl
{
namespace
{

class word_completer
{
public:
    word_completer(std::vector<word> before, std::string begun, const known_words &known, place where)
        : before_(std::move(before)), begun_(std::move(begun)), known_(known), where_(where)
    {
    }

    completion complete()
    {
        take_command_words();
        row_ = find_command(name_);
        if (row_ && row_->allowed_in(where_))
            complete_argument();
        else if (next_ == before_.size())
            complete_command_word();
        return std::move(found_);
    }

private:
    void offer(const std::string &word)
    {
        if (same_word(word.substr(0, begun_.size()), begun_))
            found_.words.push_back(word);
    }

    void take_command_words()
    {
        for (; next_ < before_.size(); ++next_) {
            const std::string &text = before_[next_].text;
            const auto known = next_words(name_, where_);
            if (std::find(known.begin(), known.end(), text) != known.end())
                name_ += name_.empty() ? text : fmt::format(" {}", text);
            else if (!name_.empty() || !text.starts_with("--"))
                return;
        }
    }

    void complete_command_word()
    {
        for (const std::string_view word : next_words(name_, where_))
            offer(std::string(word));
        if (begun_.starts_with("-"))
            offer_options(shared_options());
    }

    void complete_argument()
    {
        const argument *valueless = take_arguments();
        if (valueless)
            offer_values(*valueless, "");
        else if (const size_t equals = begun_.find('='); begun_.starts_with("--") && equals != std::string::npos)
            offer_values_behind_equals(begun_.substr(0, equals));
        else if (!begun_.starts_with("-"))
            offer_positional();
        if (!valueless && found_.words.empty() && !found_.files)
            offer_all_options();
    }

    // What was given by now. The option that the begun word is the value of, or null.
    const argument *take_arguments()
    {
        for (; next_ < before_.size(); ++next_) {
            const std::string &text = before_[next_].text;
            if (!text.starts_with("--")) {
                positional_.push_back(text);
                continue;
            }
            given_.insert(text.substr(0, text.find('=')));
            const argument *option = row_->find_argument(text);
            if (!option || option->is_flag())
                continue;
            if (++next_ == before_.size())
                return option;
        }
        return nullptr;
    }

    void offer_values(const argument &argument, const std::string &lead)
    {
        if (!argument.kind.complete)
            return;
        const candidates possible = argument.kind.complete(known_);
        for (const std::string &word : possible.words)
            offer(lead + word);
        found_.files = possible.files && lead.empty();
        if (possible.commands)
            for (const std::string_view word : next_words(fmt::format("{}", fmt::join(positional_, " ")), where_))
                offer(std::string(word));
    }

    void offer_values_behind_equals(const std::string &name)
    {
        if (const argument *option = row_->find_argument(name))
            offer_values(*option, name + "=");
    }

    void offer_positional()
    {
        size_t place = 0;
        for (const argument &one : row_->arguments) {
            if (one.is_option())
                continue;
            if (one.repeated || place++ == positional_.size()) {
                offer_values(one, "");
                return;
            }
        }
    }

    void offer_all_options()
    {
        offer_options(row_->arguments);
        offer_options(shared_options());
    }

    void offer_options(const std::vector<argument> &list)
    {
        for (const argument &one : list)
            if (one.is_option() && !given_.contains(one.name))
                offer(one.name);
    }

    std::vector<word> before_;
    std::string begun_;
    const known_words &known_;
    place where_;
    size_t next_ = 0;
    std::string name_; // the command's words so far
    const command *row_ = nullptr;
    std::vector<std::string> positional_;
    std::set<std::string> given_;
    completion found_;
};

} // namespace

completion complete(std::string_view line, const known_words &known, place where)
{
    try {
        std::vector<word> words = words_of(line);
        std::string begun;
        if (!words.empty() && !line.ends_with(' ') && !line.ends_with('\t')) {
            begun = words.back().text;
            words.pop_back();
        }
        return word_completer(std::move(words), std::move(begun), known, where).complete();
    } catch (const wrong_line &) {
        return {};
    }
}

} // namespace kelctl
