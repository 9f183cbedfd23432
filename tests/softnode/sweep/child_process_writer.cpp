/*
 * child_process_writer.cpp - a program that has written something, not yet flushed, when it makes a child that writes
 * something, too.
 */
#include "softnode/sweep/child_process.h"

#include <cstdio>

int main()
{
    std::printf("written once\n");
    softnode::run_in_child(
        [] {
            std::printf("by the child\n");
            return std::string();
        },
        std::chrono::milliseconds(60'000));
    std::printf("afterwards\n");
    return 0;
}
