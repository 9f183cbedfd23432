// The headers that nearly every test includes, precompiled once for each test program. A test still includes what it uses.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>
