// Paths as their tests ask for them, over a started service.
//
//     service_up();
//     path_up(to_ob);
//     EXPECT_EQ(kel_core_ic_ebcom_path_rem(&to_ob), 0U);
#pragma once

#include "kel/kel_core_ic_ebcom.h"

// From port 6, RLU1P, not shaped.
inline constexpr kel_ebcom_path_config to_ob = {{2, 0, 0, 2, 0, 1}, 0, 6, 0, 0, 0};

// Start the service, add a path, and forget how.
void service_up();
void path_up(const kel_ebcom_path_config &config);
