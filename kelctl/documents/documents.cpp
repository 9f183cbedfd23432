// kelctl-documents: prints the manual pages. The build runs it; it is not installed.
#include "kelctl/commands/commands.h"
#include "kelctl/documents/manual.h"
#include "kelctl/documents/node_manual.h"

#include <cstdio>
#include <string_view>

namespace
{

using namespace kelctl;

constexpr struct {
    std::string_view name;
    std::string (*text)();
} documents[] = {
    {"kelctl.1", [] { return program_manual(commands(), KELCTL_VERSION); }},
    {"node.toml.5", [] { return node_file_manual(commands(), KELCTL_VERSION); }},
};

} // namespace

int main(int argc, char **argv)
{
    for (const auto &[name, text] : documents)
        if (argc == 2 && name == argv[1])
            return std::fputs(text().c_str(), stdout) < 0 || std::fflush(stdout) != 0;
    std::fputs("usage: kelctl-documents kelctl.1|node.toml.5\n", stderr);
    return 2;
}
