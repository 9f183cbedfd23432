/*
 * json_text.h - JSON documents as texts.
 */
#ifndef SOFTNODE_JSON_TEXT_H
#define SOFTNODE_JSON_TEXT_H

#include <nlohmann/json.hpp>

#include <string>

namespace softnode
{

/* Keeps the keys in the order they are written in. */
using Json = nlohmann::ordered_json;

/** Indented by two. What is not UTF-8, as texts of callers may be, is replaced. */
inline std::string written(const Json &document)
{
    return document.dump(2, ' ', false, Json::error_handler_t::replace);
}

} // namespace softnode

#endif
