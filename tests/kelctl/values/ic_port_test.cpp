// Names and numbers of ports.
#include "kelctl/values/ic_port.h"

#include "dump_file.h"
#include "kel/kel_core_ic_ebcom.h"
#include "kel/kel_node_names.h"
#include "kelctl/library/trace_log.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <map>

namespace kelctl
{
namespace
{

TEST(IcPort, IsFoundByItsNameInEitherCase)
{
    EXPECT_EQ(port_by_name("RLU1P"), 6);
    EXPECT_EQ(port_by_name("rlu4w"), 42);
    EXPECT_EQ(port_by_name("mz-kes_q"), 47);
    EXPECT_EQ(port_by_name("NONE"), 0);
    EXPECT_EQ(port_by_name("RLU5P"), std::nullopt);
    EXPECT_EQ(port_by_name("UNKNOWN"), std::nullopt);
    EXPECT_EQ(port_by_name(""), std::nullopt);
}

TEST(IcPort, NumbersGoFrom0To50)
{
    EXPECT_TRUE(is_port(0));
    EXPECT_TRUE(is_port(50));
    EXPECT_FALSE(is_port(51));
    EXPECT_FALSE(is_port(-1));
    EXPECT_FALSE(is_port(0x1'0000'0006));
}

TEST(IcPort, ThirtyThreeCarryEbcom)
{
    int carrying = 0;
    for (int32_t port = -1; port <= 51; ++port)
        carrying += carries_ebcom(port) ? 1 : 0;
    EXPECT_EQ(carrying, 33);
    for (const int32_t port : {0, 6, 13, 19, 42})
        EXPECT_TRUE(carries_ebcom(port)) << port;
    for (const int32_t port : {-1, 1, 5, 14, 18, 43, 50})
        EXPECT_FALSE(carries_ebcom(port)) << port;
}

TEST(IcPort, NoSuchPortOffersTheNearestName)
{
    EXPECT_EQ(no_such_port("51"), "unknown port 51");
    EXPECT_EQ(no_such_port("DEBUGS"), "unknown port \"DEBUGS\"; did you mean \"DEBUG\"?");
    EXPECT_EQ(no_such_port("RLU9P"), "unknown port \"RLU9P\""); // four are as near
}

// The handles of the library's registry in its order: of each scheduler, and of each of its queues.
std::vector<std::string> registry(trace_log &log)
{
    const dump_file_removed afterwards;
    log.start_operation();
    EXPECT_EQ(kel_core_ic_ebcom_qos_handle_dump(), 0u);
    std::vector<std::string> handles;
    for (const trace_entry &entry : log.operation_records())
        if (entry.event == "LAB")
            handles.push_back(entry.message.substr(entry.message.find('=') + 1));
    return handles;
}

TEST(IcPort, QosRowIsWhereTheLibraryKeepsThePortsQueue)
{
    trace_log log;
    if (!log.installed())
        GTEST_SKIP() << "there is no tracer on this machine";
    ASSERT_EQ(kel_ic_ebcom_init_qos(), 0u);
    std::map<int32_t, std::string> queues;
    for (int32_t port = 0; port < KEL_IELL_PORT_COUNT; ++port) {
        kel_ebcom_path_config config{};
        config.dst_mac[5] = static_cast<uint8_t>(port);
        config.iell_port = port;
        ork_ebcom_pcep_path path{};
        EXPECT_EQ(kel_ic_ebcom_add_shaper(&config, &path) == 0, carries_ebcom(port)) << port;
        queues[port] = fmt::format("{}", path.queue_hdl);
    }
    constexpr size_t lines_of_a_group = 9;
    const auto handles = registry(log);
    ASSERT_EQ(handles.size(), 5 * lines_of_a_group);
    for (int32_t port = 0; port < KEL_IELL_PORT_COUNT; ++port)
        if (const auto row = qos_row(port)) {
            const auto line =
                static_cast<size_t>(row->scheduler) * lines_of_a_group + 1 + static_cast<size_t>(row->queue);
            EXPECT_EQ(handles[line], queues[port]) << port;
        }
    EXPECT_EQ(kel_ic_ebcom_deinit_qos(), 0u);
}

TEST(IcPort, TextHasNameAndNumber)
{
    EXPECT_EQ(port_text(19), "RLU1R (19)");
    EXPECT_EQ(port_group(19), "RLU1");
    EXPECT_EQ(port_group(0), "NONE");
}

} // namespace
} // namespace kelctl
