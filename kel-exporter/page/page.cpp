// The file as octets of the program, and the hashes of its elements. What the page does is in index.html.
#include "kel-exporter/page/page.h"

#include <glib.h>

#include <array>
#include <memory>

__asm__(".pushsection .rodata\n"
        "kel_exporter_page: .incbin \"" KEL_EXPORTER_PAGE "\"\n"
        "kel_exporter_page_end: .byte 0\n"
        ".popsection");

extern const char page_begin[] __asm__("kel_exporter_page") __attribute__((visibility("hidden")));
extern const char page_end[] __asm__("kel_exporter_page_end") __attribute__((visibility("hidden")));

namespace kel_exporter
{
namespace
{

// As the policy has it: " 'sha256-...'", of the octets between the tags.
std::string hash_source(std::string_view content)
{
    std::array<guint8, 32> digest;
    gsize size = digest.size();
    const std::unique_ptr<GChecksum, void (*)(GChecksum *)> sum(g_checksum_new(G_CHECKSUM_SHA256), g_checksum_free);
    g_checksum_update(sum.get(), reinterpret_cast<const guchar *>(content.data()), static_cast<gssize>(content.size()));
    g_checksum_get_digest(sum.get(), digest.data(), &size);
    const std::unique_ptr<gchar, void (*)(void *)> text(g_base64_encode(digest.data(), size), g_free);
    return std::string(" 'sha256-").append(text.get()).append("'");
}

// Of the contents of each element of this name. Searched for as text: the page is our own, and has these elements
// without attributes.
std::string hash_sources(std::string_view html, const std::string &name)
{
    const std::string begin = "<" + name + ">";
    const std::string end = "</" + name + ">";
    std::string sources;
    for (size_t at = html.find(begin); at != html.npos; at = html.find(begin, at)) {
        at += begin.size();
        sources += hash_source(html.substr(at, html.find(end, at) - at));
    }
    return sources.empty() ? " 'none'" : sources;
}

} // namespace

std::string_view page()
{
    return {page_begin, page_end};
}

std::string content_policy(std::string_view html)
{
    return "default-src 'none'; script-src" + hash_sources(html, "script") + "; style-src" +
           hash_sources(html, "style") +
           "; connect-src 'self'; img-src data:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";
}

} // namespace kel_exporter
