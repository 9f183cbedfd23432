// kelctl-documents: prints what is made from the table of commands and installed beside the program. For the build.
#include "kelctl/completion_script.h"
#include "kelctl/manual.h"
#include "kelctl/node_manual.h"

#include <cstdio>
#include <string_view>

namespace
{

using namespace kelctl;

constexpr struct {
    std::string_view name;
    std::string (*text)();
} documents[] = {
    {"kelctl.1", [] { return program_manual(KELCTL_VERSION); }},
    {"node.toml.5", [] { return node_file_manual(KELCTL_VERSION); }},
    {"bash", bash_completion},
    {"zsh", zsh_completion},
};

} // namespace

int main(int argc, char **argv)
{
    for (const auto &[name, text] : documents)
        if (argc == 2 && name == argv[1])
            return std::fputs(text().c_str(), stdout) < 0 || std::fflush(stdout) != 0;
    std::fputs("usage: kelctl-documents kelctl.1|node.toml.5|bash|zsh\n", stderr);
    return 2;
}
