// The page that people look at: index.html, as it is. It has its scripts and styles in <script> and <style> elements,
// without attributes, and loads nothing but nodes.json.
#pragma once

#include <string>
#include <string_view>

namespace kel_exporter
{

// Lives as long as the program.
std::string_view page();

// The Content-Security-Policy under which a browser runs the scripts and styles of this page, by their hashes, and
// nothing else: no attributes such as onclick or style, and no resources of other servers.
std::string content_policy(std::string_view html);

} // namespace kel_exporter
