// The table of commands: complete, without contradictions, and with an example in every row that its own grammar takes.
#include "kelctl/commands/commands.h"

#include "kelctl/language/command_line.h"
#include "kelctl/language/help.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <memory>
#include <set>
#include <sstream>

namespace kelctl
{
namespace
{

using testing::IsEmpty;

source first_source(const command &row)
{
    return row.sources.front();
}

// What the built library exports, as its symbol table tells.
std::set<std::string> exported_functions()
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> list(popen("nm -D --defined-only " KEL_LIBRARY, "r"),
                                                                pclose);
    std::set<std::string> names;
    std::array<char, 256> line;
    while (list && std::fgets(line.data(), line.size(), list.get())) {
        std::istringstream columns(line.data());
        std::string address;
        std::string type;
        std::string name;
        columns >> address >> type >> name;
        if (type == "T")
            names.insert(name.substr(0, name.find('@')));
    }
    return names;
}

TEST(Commands, CallEveryExportedFunctionAndNoOther)
{
    std::multiset<std::string> called;
    for (const command &row : commands().rows())
        for (const variant &one : row.variants)
            called.emplace(one.function);
    called.erase(""); // what kelctl does by itself
    const std::set<std::string> exported = exported_functions();
    EXPECT_EQ(exported.size(), 45u);
    EXPECT_EQ(called, std::multiset<std::string>(exported.begin(), exported.end()));
}

TEST(Commands, HaveNamesOfTheirOwnInSmallLetters)
{
    std::set<std::string_view> names;
    for (const command &row : commands().rows()) {
        EXPECT_TRUE(names.insert(row.name).second) << row.name;
        for (const char c : row.name)
            EXPECT_TRUE(std::islower(static_cast<unsigned char>(c)) || c == ' ' || c == '-' || row.name == "?")
                << row.name;
    }
}

TEST(Commands, NoneBeginsWithTheWordsOfAnother)
{
    for (const command &row : commands().rows())
        for (const source where : row.sources)
            EXPECT_THAT(commands().next_words(row.name, where), IsEmpty()) << row.name;
}

TEST(Commands, CanAllBeCarriedOutAndHaveHelpAndAnExample)
{
    for (const command &row : commands().rows()) {
        ASSERT_FALSE(row.variants.empty()) << row.name;
        for (const variant &one : row.variants)
            EXPECT_EQ(one.run == nullptr, row.name == expect_name) << row.name; // what follows that one is carried out
        EXPECT_FALSE(row.help.empty()) << row.name;
        EXPECT_FALSE(row.sources.empty()) << row.name;
        EXPECT_TRUE(row.example.starts_with(row.name)) << row.name;
    }
}

TEST(Commands, ExamplesAreParsedToTheirOwnRows)
{
    for (const command &row : commands().rows()) {
        const invocation asked = parse(commands(), words_of(row.example), first_source(row));
        EXPECT_EQ(asked.row, row.name == expect_name ? commands().find("pcep remove") : &row) << row.example;
        EXPECT_EQ(asked.expected.has_value(), row.name == expect_name) << row.example;
    }
}

TEST(Commands, ArgumentsFitTogether)
{
    for (const command &row : commands().rows()) {
        std::set<std::string> names;
        for (const argument &one : row.arguments) {
            EXPECT_TRUE(names.insert(one.name).second) << row.name << ": " << one.name;
            EXPECT_FALSE(one.help.empty()) << row.name << ": " << one.name;
            EXPECT_TRUE(one.is_option() || !one.is_flag()) << row.name << ": " << one.name;
            EXPECT_TRUE(one.needs.empty() || row.find_argument(one.needs)) << row.name << ": " << one.name;
            EXPECT_TRUE(!one.repeated || &one == &row.arguments.back()) << row.name << ": " << one.name;
            if (!one.otherwise.empty()) {
                EXPECT_NO_THROW(one.kind.read(one.otherwise)) << row.name << ": " << one.name;
            }
        }
    }
}

// The kinds that take any word.
bool takes_anything(const argument &one)
{
    return one.is_flag() || one.kind.placeholder == "TEXT" || one.kind.placeholder == "FILE" || one.repeated;
}

TEST(Commands, ArgumentsRefuseWhatIsNotOfTheirKind)
{
    for (const command &row : commands().rows())
        for (const argument &one : row.arguments)
            if (!takes_anything(one)) {
                EXPECT_THROW(one.kind.read("?!"), wrong_value) << row.name << ": " << one.name;
                EXPECT_THROW(one.kind.read(""), wrong_value) << row.name << ": " << one.name;
            }
}

TEST(Commands, MissingArgumentsAreTold)
{
    for (const command &row : commands().rows()) {
        const bool complete = std::none_of(row.arguments.begin(), row.arguments.end(), [](const argument &one) {
            return one.required && one.otherwise.empty() && !one.is_flag();
        });
        if (complete) {
            EXPECT_NO_THROW(parse(commands(), words_of(row.name), first_source(row))) << row.name;
        } else {
            EXPECT_THROW(parse(commands(), words_of(row.name), first_source(row)), wrong_line) << row.name;
        }
    }
}

TEST(Commands, GroupsAreFirstWordsOfSeveral)
{
    for (const command_group &group : commands().groups())
        EXPECT_FALSE(commands().next_words(group.name, source::script).empty()) << group.name;
    std::set<std::string_view> named;
    for (const command_group &group : commands().groups())
        named.insert(group.name);
    for (const command &row : commands().rows()) {
        const size_t blank = row.name.find(' ');
        EXPECT_TRUE(blank == std::string_view::npos || named.contains(row.name.substr(0, blank))) << row.name;
    }
}

TEST(Commands, UndoingOnesTakeTheArgumentsOfWhatTheyUndo)
{
    size_t undoable = 0;
    for (const command &row : commands().rows()) {
        if (row.undo.empty())
            continue;
        ++undoable;
        const command *undo = commands().find(row.undo);
        ASSERT_NE(undo, nullptr) << row.name;
        for (const argument &one : undo->arguments) {
            EXPECT_TRUE(!one.required || row.find_argument(one.name)) << row.name << ": " << one.name;
        }
    }
    EXPECT_EQ(undoable, 9u);
}

void expect_narrow(const std::string &help)
{
    std::istringstream lines(help);
    for (std::string line; std::getline(lines, line);)
        EXPECT_LE(line.size(), 80u) << line;
}

TEST(Commands, HelpFitsEightyColumns)
{
    for (const source where : {source::program, source::script, source::shell}) {
        for (const command &row : commands().rows())
            expect_narrow(help_of(row, where, 80));
        expect_narrow(help_of_words(commands(), "", where, 80));
        for (const command_group &group : commands().groups())
            expect_narrow(help_of_words(commands(), group.name, where, 80));
    }
}

} // namespace
} // namespace kelctl
