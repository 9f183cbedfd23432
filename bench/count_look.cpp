// A held node under callgrind: a client's look at its counters against as many operations as it may cost, and beside few
// paths and many. Callgrind writes a file of counts for each, named "WHAT | BESIDE WHAT | HOW MANY". To be run by
// bench/check_growth.
#include "kelctl/commands/commands.h"
#include "kelctl/language/command_line.h"
#include "kelctl/remote/node_server.h"

#include <fmt/core.h>
#include <valgrind/callgrind.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace kelctl;

namespace
{

constexpr int many_paths = 300;
constexpr int first_port = 6; // with those after it, the lanes of one unit
constexpr int ports = 8;

// A look may cost twice this. Ten a second then slow operations down by 2 % at most where one takes 100 us or less.
constexpr int operations_against_a_look = 12;

// Client and server are one thread, which lets the other go on where it would wait.
class asked_node
{
public:
    asked_node(const std::string &path, session &asked)
        : node_({.path = path}, "none", asked, [] { return result(); }), client_(socket(AF_UNIX, SOCK_STREAM, 0))
    {
        sockaddr_un address = {.sun_family = AF_UNIX, .sun_path = {}};
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        if (connect(client_, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
            throw std::runtime_error("the node cannot be reached");
        line();
    }

    ~asked_node()
    {
        close(client_);
    }

    asked_node(const asked_node &) = delete;
    asked_node &operator=(const asked_node &) = delete;

    void ask(const std::string &request)
    {
        const std::string sent = request + "\n";
        if (send(client_, sent.data(), sent.size(), 0) != static_cast<ssize_t>(sent.size()))
            throw std::runtime_error("the node does not listen");
        if (const std::string answer = line(); answer.find(R"("status":0)") == std::string::npos)
            throw std::runtime_error(request + ": " + answer);
    }

private:
    std::string line()
    {
        std::string received;
        char part[65536];
        while (!received.ends_with('\n')) {
            node_.serve();
            const ssize_t size = recv(client_, part, sizeof part, MSG_DONTWAIT);
            if (size > 0)
                received.append(part, static_cast<size_t>(size));
        }
        return received;
    }

    node_server node_;
    const int client_;
};

void count(const std::string &name, const std::function<void()> &work)
{
    work(); // nothing is as slow as the first time
    CALLGRIND_ZERO_STATS;
    work();
    CALLGRIND_DUMP_STATS_AT(name.c_str());
}

void count_all(const std::string &socket)
{
    session here(commands(), source::script, {.json = true, .quiet = true});
    const auto run = [&here](const std::string &line) {
        if (here.perform(parse(commands(), words_of(line), source::script)).status != exit_done)
            throw std::runtime_error(line);
    };
    run("ebcom start");
    for (int port = first_port; port < first_port + ports; ++port)
        run(fmt::format("ebcom path add 02:00:00:01:01:{:02} --port {}", port, port));
    run("pcep start");
    run("pcep add 7 --remote-id 1 --local 02:00:00:02:00:01 --remote 02:00:00:02:00:02 --vlan 1");
    asked_node node(socket, here);
    const auto look = [&node] { node.ask(R"({"ask":"sample"})"); };
    const auto operate = [&node](int times) {
        for (int i = 0; i < times; ++i)
            node.ask(fmt::format(R"({{"command":["ebcom","path","{}","02:00:00:02:7f:01","--port","RLU2Q"]}})",
                                 i % 2 == 0 ? "add" : "remove"));
    };
    const auto look_beside = [&look](int paths) { count(fmt::format("a look | beside paths | {}", paths), look); };
    CALLGRIND_START_INSTRUMENTATION;
    count(fmt::format("a look | against operations | {}", operations_against_a_look),
          [&] { operate(operations_against_a_look); });
    count("a look | against operations | 1", look);
    look_beside(ports);
    CALLGRIND_STOP_INSTRUMENTATION; // which takes time
    run(fmt::format("ebcom path add 02:00:00:01:02:00 --port {} --count {}", first_port, many_paths - ports));
    CALLGRIND_START_INSTRUMENTATION;
    look_beside(many_paths);
}

} // namespace

int main()
{
    std::string folder = std::filesystem::temp_directory_path() / "count-look-XXXXXX";
    if (!mkdtemp(folder.data()))
        return 1;
    count_all(folder + "/node.sock");
    std::filesystem::remove_all(folder);
    return 0;
}
