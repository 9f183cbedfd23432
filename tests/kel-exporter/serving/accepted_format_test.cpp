// Headers as clients send them.
#include "kel-exporter/serving/accepted_format.h"

#include <gtest/gtest.h>

namespace kel_exporter
{
namespace
{

TEST(AcceptedFormat, IsOpenMetricsForPrometheus)
{
    for (const char *accept :
         {"application/openmetrics-text;version=1.0.0,application/openmetrics-text;version=0.0.1;q=0.75,"
          "text/plain;version=0.0.4;q=0.5,*/*;q=0.1",
          "application/openmetrics-text; version=1.0.0; charset=utf-8", "Application/OpenMetrics-Text",
          "text/plain, application/openmetrics-text", "text/plain;q=0.3 , application/openmetrics-text ; q=0.30"})
        EXPECT_EQ(accepted_format(accept), text_format::open_metrics) << accept;
}

TEST(AcceptedFormat, IsClassicForAllOthers)
{
    for (const char *accept :
         {"", "*/*", "text/plain", "text/html,application/xhtml+xml,*/*;q=0.8",
          "application/openmetrics-text;version=2.0.0", "application/openmetrics-text;q=0",
          "application/openmetrics-text;q=0.4,text/plain;q=0.5", "application/openmetrics-text;q=x",
          "application/openmetrics-texts", ",;=,;;q=,", "application/json"})
        EXPECT_EQ(accepted_format(accept), text_format::classic) << accept;
}

} // namespace
} // namespace kel_exporter
