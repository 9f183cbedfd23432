// What is written of every exported function, compared as a whole with the file beside this one and read by kelctl. After
// a change that is meant, write it anew and look at the difference:
//
//     KEL_RECORD_WRITE_EXPECTED=1 build/dev/bin/kel-record-program-tests
#include "kel-record/preload/closed_functions.h"
#include "kelctl/commands/commands.h"
#include "kelctl/jobs/script.h"
#include "softnode/softnode.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

namespace
{

constexpr const char *expected_file = KEL_RECORD_EXPECTED_DIR "/every_call.expected";

std::string text_of(const std::string &file)
{
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// Of a process over the software accelerator, without the first line, which has its number.
std::string recorded(const std::string &program)
{
    char folder[] = "/tmp/kel-record-XXXXXX";
    if (!mkdtemp(folder))
        return "no folder";
    const std::string file = std::string(folder) + "/calls.kel";
    const std::string command = std::string(KEL_RECORD) + " --output " + file + " -- " + program + " >/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0);
    std::string text = text_of(file);
    std::filesystem::remove_all(folder);
    EXPECT_THAT(text, testing::StartsWith("# kel-record " KEL_RECORD_VERSION ", process "));
    return text.substr(text.find('\n') + 1);
}

std::set<std::string_view> functions_called(const kelctl::script &script)
{
    std::set<std::string_view> called;
    for (const kelctl::invocation &line : script.lines)
        if (line.expected)
            called.insert(line.chosen->function);
    return called;
}

TEST(EveryCall, IsWrittenAsExpectedAndReadByKelctl)
{
    const std::string text = recorded(EVERY_CALL);
    if (std::getenv("KEL_RECORD_WRITE_EXPECTED"))
        std::ofstream(expected_file) << text;
    EXPECT_EQ(text, text_of(expected_file));

    const kelctl::script script = kelctl::parse_script(kelctl::commands(), text);
    for (const kelctl::problem &problem : script.problems)
        ADD_FAILURE() << problem.at.line << ": " << problem.message;
    std::set<std::string_view> exported;
    for (const kelctl::command &row : kelctl::commands().rows())
        for (const kelctl::variant &one : row.variants)
            exported.insert(one.function);
    exported.erase(""); // what kelctl does by itself
    EXPECT_EQ(exported.size(), 45U);
    EXPECT_EQ(functions_called(script), exported);
}

TEST(ClosedFunctions, AreThoseThatFaultRulesName)
{
    char *json = softnode_fault_functions_json();
    const std::string known = json;
    std::free(json);
    size_t count = 0;
    for (const auto &[name, both] : kel_record::closed_functions)
        count += known.find("\"" + std::string(name) + "\"") != std::string::npos;
    EXPECT_EQ(count, std::size(kel_record::closed_functions));
    size_t rules = 0;
    for (size_t at = 0; (at = known.find("\"function\"", at)) != std::string::npos; ++at)
        ++rules;
    EXPECT_EQ(rules, count);
}

} // namespace
