// kel-exporter-documents: prints the manual page, which is made from the program's table. For the build.
#include "kel-exporter/language/request.h"
#include "options/documents/manual.h"

namespace
{

constexpr std::string_view description =
    R"(kel-exporter asks held nodes over their sockets, as "kelctl --node" does, and serves what they answer over HTTP.
It only reads. It needs no privilege but that of connecting to the nodes: their owner's, root's, or that of the group of
"kelctl up --group".

/metrics is for Prometheus, in OpenMetrics where the client accepts it and in the classic text format elsewhere;
docs/metrics.md lists the metrics. / is a page for people, /nodes.json what that page shows.

No request waits for a node. Each node is asked four times as often as it is asked for, but at most five times a second
and at least once, and not at all when nobody has asked for five minutes. Only a request after that waits for the nodes,
half a second at most. A node that answers later, as one that carries out a long command, is shown with the
values that it had, and their age.

Who can connect can read. On another address than the loopback, put a server in front that asks who it is.)";

constexpr options::meaning environment[] = {
    {"XDG_RUNTIME_DIR", "where nodes of this user are, beside /run/kelctl"},
};

} // namespace

int main()
{
    return options::print_manual(kel_exporter::program, {.about = "shows held nodes as metrics and as a page",
                                                         .description = description,
                                                         .environment = environment,
                                                         .example = "kel-exporter --listen 127.0.0.1:9477 --node edge",
                                                         .see_also = "kelctl(1), kel-trace(1)"});
}
