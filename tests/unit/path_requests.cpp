#include "path_requests.h"

#include "transcript.h"

#include <gtest/gtest.h>

void service_up()
{
    ASSERT_EQ(kel_core_ic_ebcom_start(), 0U);
    transcript::forget();
}

void path_up(const kel_ebcom_path_config &config)
{
    ASSERT_EQ(kel_core_ic_ebcom_path_add(&config), 0U);
    transcript::forget();
}
