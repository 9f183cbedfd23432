/*
 * registry_test.cpp - objects by handle.
 */
#include "softnode/common/registry.h"

#include <gtest/gtest.h>

#include <string>

using namespace softnode;

TEST(Registry, FindsWhatWasAdded)
{
    Registry<std::string> names(Kind::queue);
    const Handle one = names.add("one");
    const Handle two = names.add("two");
    EXPECT_EQ(names.check(one), Refusal::granted);
    EXPECT_EQ(names.at(one), "one");
    EXPECT_EQ(names.at(two), "two");
    EXPECT_EQ(names.size(), 2U);
}

TEST(Registry, ARemovedObjectIsGone)
{
    Registry<std::string> names(Kind::queue);
    const Handle one = names.add("one");
    names.remove(one);
    EXPECT_EQ(names.check(one), Refusal::gone);
    EXPECT_EQ(names.size(), 0U);
}

TEST(Registry, HandlesAreNotUsedAgainAfterClear)
{
    Registry<std::string> names(Kind::queue);
    const Handle before = names.add("before");
    names.clear();
    const Handle after = names.add("after");
    EXPECT_NE(before, after);
    EXPECT_EQ(names.check(before), Refusal::gone);
    EXPECT_EQ(names.check(after), Refusal::granted);
}

TEST(Registry, IteratesInTheOrderOfCreation)
{
    Registry<std::string> names(Kind::queue);
    const Handle first = names.add("a");
    names.add("b");
    names.add("c");
    names.remove(first);
    names.add("d");
    std::string order;
    for (const auto &[handle, name] : names)
        order += name;
    EXPECT_EQ(order, "bcd");
}
