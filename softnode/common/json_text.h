/*
 * json_text.h - JSON documents as texts.
 */
#ifndef SOFTNODE_JSON_TEXT_H
#define SOFTNODE_JSON_TEXT_H

#include "notation/json.h"

#include <string>

namespace softnode
{

using Json = notation::document;

/** Indented by two. What is not UTF-8, as texts of callers may be, is replaced. */
inline std::string written(const Json &document)
{
    return notation::to_json(document, 2);
}

} // namespace softnode

#endif
