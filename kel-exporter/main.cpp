// kel-exporter: from the program's arguments to served pages. The thread that starts serves HTTP and reads what is
// known; each node has a thread that asks it (nodes/watched_nodes.h).
#include "kel-exporter/language/request.h"
#include "kel-exporter/metrics/metrics_text.h"
#include "kel-exporter/metrics/nodes_json.h"
#include "kel-exporter/nodes/watched_nodes.h"
#include "kel-exporter/page/page.h"
#include "kel-exporter/serving/accepted_format.h"
#include "kel-exporter/serving/http_server.h"
#include "kel-exporter/serving/listener.h"
#include "socket/descriptor.h"

#include <fmt/core.h>

#include <csignal>
#include <cstdio>
#include <exception>
#include <poll.h>
#include <string>
#include <sys/signalfd.h>
#include <vector>

namespace
{

using namespace kel_exporter;

enum exit_status { exit_done = 0, exit_failed = 1, exit_wrong_input = 2 };

http_answer metrics(const http_request &asked, watched_nodes &nodes)
{
    const text_format format = accepted_format(asked.accept);
    return {.type = media_type(format), .body = metrics_text(format, nodes.known(), watch_clock::now())};
}

http_answer nodes_document(const http_request &, watched_nodes &nodes)
{
    return {.type = "application/json",
            .body = nodes_json(nodes.known(), watch_clock::now(), std::chrono::system_clock::now())};
}

http_answer page_itself(const http_request &, watched_nodes &)
{
    return {.type = "text/html; charset=utf-8", .body = std::string(page()), .policy = content_policy(page())};
}

// Whole paths: there is nothing below any of them.
constexpr struct {
    std::string_view path;
    http_answer (*answer)(const http_request &asked, watched_nodes &nodes);
} paths[] = {
    {"/metrics", metrics},
    {"/nodes.json", nodes_document},
    {"/", page_itself},
};

http_answer answer_to(const http_request &asked, watched_nodes &nodes)
{
    for (const auto &[path, answer] : paths)
        if (asked.path == path)
            return answer(asked, nodes);
    return {.status = 404, .body = "there are /, /metrics and /nodes.json\n"};
}

// Readable when the program is asked to end. No thread gets these signals but through it. Signals are blocked before
// the first thread is made, so that all threads inherit that.
sockets::descriptor ending_signals()
{
    sigset_t ending;
    sigemptyset(&ending);
    sigaddset(&ending, SIGTERM);
    sigaddset(&ending, SIGINT);
    sigprocmask(SIG_BLOCK, &ending, nullptr);
    signal(SIGPIPE, SIG_IGN);
    return sockets::descriptor(signalfd(-1, &ending, SFD_CLOEXEC));
}

// It listens before it looks for nodes: a wrong address ends the program at once. The address is printed because the
// kernel may have chosen the port.
void serve(const request &asked)
{
    const sockets::descriptor ending = ending_signals();
    const listener where(asked.listen);
    watched_nodes nodes(asked.nodes);
    http_server server(where.number(), [&nodes](const http_request &one) { return answer_to(one, nodes); });
    fmt::print("kel-exporter serves {}\n", where.text());
    std::fflush(stdout);
    pollfd waited[] = {{server.number(), POLLIN, 0}, {ending.number(), POLLIN, 0}};
    while (waited[1].revents == 0) {
        poll(waited, std::size(waited), server.milliseconds());
        server.serve();
    }
}

int carry_out(const std::vector<std::string> &words)
{
    const request asked = parse_request(words);
    if (asked.answer)
        return options::print("kel-exporter", *asked.answer) ? exit_done : exit_failed;
    serve(asked);
    return exit_done;
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return carry_out({argv + 1, argv + argc});
    } catch (const options::wrong_request &wrong) {
        fmt::print(stderr, "kel-exporter: {}\nkel-exporter --help shows the options\n", wrong.what());
        return exit_wrong_input;
    } catch (const std::exception &error) {
        fmt::print(stderr, "kel-exporter: {}\n", error.what());
        return exit_failed;
    }
}
