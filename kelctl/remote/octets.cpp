// GLib knows both encodings.
#include "kelctl/remote/octets.h"

#include <glib.h>

#include <memory>

namespace kelctl
{
namespace
{

constexpr const char *base64 = "base64";

template <typename Type> std::unique_ptr<Type, void (*)(void *)> owned(Type *allocated)
{
    return {allocated, g_free};
}

} // namespace

notation::document document_of_octets(const std::string &octets)
{
    if (g_utf8_validate(octets.data(), static_cast<gssize>(octets.size()), nullptr))
        return octets;
    const auto encoded = owned(g_base64_encode(reinterpret_cast<const guchar *>(octets.data()), octets.size()));
    return {{base64, encoded.get()}};
}

std::string octets_of(const notation::document &message)
{
    if (!message.is_object())
        return message.text();
    gsize size = 0;
    const auto octets = owned(g_base64_decode(message.at(base64).text().c_str(), &size));
    return {reinterpret_cast<const char *>(octets.get()), size};
}

} // namespace kelctl
