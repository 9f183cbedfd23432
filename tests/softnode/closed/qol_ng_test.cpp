/*
 * qol_ng_test.cpp - the node-restart service through its C function.
 */
#include "control.h"

#include "platform/qol_ng.h"

namespace
{

class QolNg : public ControlledNode
{
};

} // namespace

TEST_F(QolNg, ARestartRequestIsKept)
{
    EXPECT_EQ(qol_ng_restart_request_line_and_file(42, "main.cpp", 1, "out of patience", 0, nullptr), 0);
    EXPECT_EQ(qol_ng_restart_request_line_and_file(43, "main.cpp", 1, "still", 0, nullptr), 0);
    EXPECT_EQ(look_into_node().at("restarts"), notation::read_json(R"([
        {"line": 42, "file": "main.cpp", "reason": "out of patience"},
        {"line": 43, "file": "main.cpp", "reason": "still"}
    ])"));
}

TEST_F(QolNg, ARestartRequestWithoutFileOrReasonIsRefused)
{
    EXPECT_EQ(qol_ng_restart_request_line_and_file(42, nullptr, 1, "reason", 0, nullptr), ORK_INVAL);
    EXPECT_EQ(qol_ng_restart_request_line_and_file(42, "main.cpp", 1, nullptr, 0, nullptr), ORK_INVAL);
    EXPECT_TRUE(look_into_node().at("restarts").empty());
}
