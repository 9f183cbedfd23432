/*
 * fault_text.h - many fault rules: separated by semicolons or line ends, blanks around each, and a # before what is a
 * comment up to the end of its line.
 */
#ifndef SOFTNODE_FAULT_TEXT_H
#define SOFTNODE_FAULT_TEXT_H

#include "softnode/faults/fault_rule.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace softnode
{

/** What is wrong with a rule of a text, and where; lines and columns, of octets, count from 1. */
struct FaultTextProblem {
    std::string rule = {};
    std::uint32_t line = 0;
    std::uint32_t column = 0;
    std::string what = {};
};

/** Reads rules. Answers what is wrong with the first bad one, or nothing. */
std::optional<FaultTextProblem> read_fault_text(std::string_view text, std::vector<FaultRule> &rules);

/** The same for rules that are given without a file. Answers what is wrong as "RULE": message, empty for nothing. */
std::string read_given_faults(std::string_view text, std::vector<FaultRule> &rules);

/**
 * Reads the rules of a file, of 16 MiB at most, however long a device goes on. Answers what is wrong as
 * FILE:LINE:COLUMN: message, or FILE: message, empty for nothing.
 */
std::string read_fault_file(const std::string &file, std::vector<FaultRule> &rules);

} // namespace softnode

#endif
