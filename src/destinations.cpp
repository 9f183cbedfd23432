#include "destinations.h"

#include <glib.h>

#include <cstdlib>
#include <cstring>

namespace
{

constexpr size_t mac_size = 6;

// One path's copy of its MAC address. The copies of one address on one port are a ring, in which the newest is
// followed by the oldest.
struct destination {
    void *mac; // on the heap, exactly 6 octets
    size_t port;
    destination *next;
    destination *elsewhere; // of a newest one: the newest one on the next higher port
};

// By MAC address, the newest destination on its lowest port.
GHashTable *destinations;

// The key is the MAC address itself, as a number. Put together from two words: written octet by octet and then read
// as one word, it would have to be waited for.
gpointer key_of(const uint8_t *mac)
{
    uint16_t high;
    uint32_t low;
    static_assert(sizeof high + sizeof low == mac_size && sizeof(gpointer) >= mac_size);
    memcpy(&high, mac, sizeof high);
    memcpy(&low, mac + sizeof high, sizeof low);
    return GSIZE_TO_POINTER(static_cast<uint64_t>(GUINT16_FROM_BE(high)) << 32 | GUINT32_FROM_BE(low));
}

// Addresses that follow one another stay beside one another in the table, and so in the cache.
guint hash_key(gconstpointer key)
{
    const uint64_t number = GPOINTER_TO_SIZE(key);
    return static_cast<guint>(number ^ number >> 32);
}

// Where the newest destination on the port is linked in, or would be.
destination *&link_of(destination *&first, size_t port)
{
    destination **link = &first;
    while (*link && (*link)->port < port)
        link = &(*link)->elsewhere;
    return *link;
}

bool is_on(const destination *newest, size_t port)
{
    return newest && newest->port == port;
}

void free_oldest(destination *&newest)
{
    destination *oldest = newest->next;
    if (oldest == newest)
        newest = newest->elsewhere;
    else
        newest->next = oldest->next;
    free(oldest->mac);
    g_free(oldest);
}

} // namespace

bool kel::add_destination(size_t port, const uint8_t *mac)
{
    void *copy = malloc(mac_size);
    if (!copy)
        return false;
    memcpy(copy, mac, mac_size);

    if (!destinations)
        destinations = g_hash_table_new(hash_key, nullptr);
    auto *first = static_cast<destination *>(g_hash_table_lookup(destinations, key_of(mac)));
    destination *&newest = link_of(first, port);
    auto *added = g_new(destination, 1);
    if (is_on(newest, port)) {
        *added = {copy, port, newest->next, newest->elsewhere};
        newest->next = added;
    } else {
        *added = {copy, port, added, newest};
    }
    newest = added;
    g_hash_table_insert(destinations, key_of(mac), first);
    return true;
}

// Takes all that the MAC address has out of the table, and puts back what is left.
bool kel::remove_destination(size_t port, const uint8_t *mac)
{
    gpointer taken = nullptr;
    if (!destinations || !g_hash_table_steal_extended(destinations, key_of(mac), nullptr, &taken))
        return false;
    auto *first = static_cast<destination *>(taken);
    destination *&newest = link_of(first, port);
    const bool found = is_on(newest, port);
    if (found)
        free_oldest(newest);
    if (first)
        g_hash_table_insert(destinations, key_of(mac), first);
    return found;
}

bool kel::find_destination(const uint8_t *mac, size_t &port)
{
    if (!destinations)
        return false;
    const auto *first = static_cast<const destination *>(g_hash_table_lookup(destinations, key_of(mac)));
    if (!first)
        return false;
    port = first->port;
    return true;
}

void kel::forget_destinations(size_t port)
{
    if (!destinations)
        return;
    GHashTableIter each;
    gpointer value = nullptr;
    g_hash_table_iter_init(&each, destinations);
    while (g_hash_table_iter_next(&each, nullptr, &value)) {
        auto *first = static_cast<destination *>(value);
        destination *&newest = link_of(first, port);
        while (is_on(newest, port))
            free_oldest(newest);
        if (first)
            g_hash_table_iter_replace(&each, first);
        else
            g_hash_table_iter_remove(&each);
    }
}
