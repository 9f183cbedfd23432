/*
 * fault_text.h - many fault rules: separated by semicolons or line ends, blanks around each, and a # before what is a
 * comment up to the end of its line.
 */
#ifndef SOFTNODE_FAULT_TEXT_H
#define SOFTNODE_FAULT_TEXT_H

#include "softnode/faults/fault_rule.h"

#include <string>
#include <string_view>
#include <vector>

namespace softnode
{

/** Reads rules. Answers what is wrong with the first bad one, naming it; empty when all are good. */
std::string read_fault_text(std::string_view text, std::vector<FaultRule> &rules);

/** The same for a text that comes from a file of this name. Answers what is wrong as FILE:LINE:COLUMN: message. */
std::string read_fault_text_of(const std::string &file, std::string_view text, std::vector<FaultRule> &rules);

/**
 * Reads the rules of a file, of 16 MiB at most, however long a device goes on. Answers what is wrong as
 * FILE:LINE:COLUMN: message, or FILE: message.
 */
std::string read_fault_file(const std::string &file, std::vector<FaultRule> &rules);

} // namespace softnode

#endif
