// A hash table of destinations with static buckets and lists of GLib.
#include "destinations.h"

#include <glib.h>

#include <bit>
#include <cstdlib>
#include <cstring>

namespace
{

constexpr size_t mac_size = 6;

// The paths to one MAC address. Their copies of it are equal, so none belongs to a port.
struct destination {
    uint64_t mac;
    GSList *copies; // one for each path, on the heap, exactly 6 octets
    uint64_t ports; // those with a path, a bit for each
    uint32_t paths_from[kel::port_count];
};

// All destinations, in lists so many that each is short: four in each while 60,000 MAC addresses have paths.
constexpr int list_bits = 14;
GSList *lists[1 << list_bits];

uint32_t path_counts[kel::port_count]; // to all destinations

constexpr uint64_t bit(size_t port)
{
    return uint64_t{1} << port;
}

uint64_t number_of(const uint8_t *mac)
{
    uint64_t number = 0;
    memcpy(&number, mac, mac_size);
    return number;
}

// Addresses that have something in common, as most have, are spread over all lists.
GSList *&list_of(uint64_t mac)
{
    constexpr uint64_t golden_ratio = 0x9E3779B97F4A7C15; // 2^64 times its fraction
    return lists[mac * golden_ratio >> (64 - list_bits)];
}

destination *find(uint64_t mac)
{
    for (GSList *each = list_of(mac); each; each = each->next)
        if (auto *known = static_cast<destination *>(each->data); known->mac == mac)
            return known;
    return nullptr;
}

destination *make(uint64_t mac)
{
    auto *made = g_new(destination, 1);
    *made = {mac, nullptr, 0, {}};
    GSList *&list = list_of(mac);
    list = g_slist_prepend(list, made);
    return made;
}

// Frees the destination with its last path.
void drop_path(destination &from, size_t port)
{
    --path_counts[port];
    if (--from.paths_from[port] == 0)
        from.ports &= ~bit(port);
    free(from.copies->data);
    from.copies = g_slist_delete_link(from.copies, from.copies);
    if (from.copies)
        return;
    GSList *&list = list_of(from.mac);
    list = g_slist_remove(list, &from);
    g_free(&from);
}

// For g_slist_foreach(), which bears that the destination leaves its list. The number of paths is read before, because
// the destination is gone with the last one.
void drop_paths(gpointer known, gpointer port_number)
{
    auto &from = *static_cast<destination *>(known);
    const size_t port = GPOINTER_TO_SIZE(port_number);
    for (uint32_t left = from.paths_from[port]; left > 0; --left)
        drop_path(from, port);
}

} // namespace

bool kel::add_destination(size_t port, const uint8_t *mac)
{
    void *copy = malloc(mac_size);
    if (!copy)
        return false;
    memcpy(copy, mac, mac_size);

    const uint64_t number = number_of(mac);
    destination *known = find(number);
    destination &to = known ? *known : *make(number);
    to.copies = g_slist_prepend(to.copies, copy);
    to.ports |= bit(port);
    ++to.paths_from[port];
    ++path_counts[port];
    return true;
}

bool kel::remove_destination(size_t port, const uint8_t *mac)
{
    destination *known = find(number_of(mac));
    if (!known || known->paths_from[port] == 0)
        return false;
    drop_path(*known, port);
    return true;
}

bool kel::find_destination(const uint8_t *mac, size_t &port)
{
    const destination *known = find(number_of(mac));
    if (!known)
        return false;
    port = static_cast<size_t>(std::countr_zero(known->ports));
    return true;
}

uint32_t kel::destination_count(size_t port)
{
    return path_counts[port];
}

void kel::forget_destinations(size_t port)
{
    if (path_counts[port] == 0)
        return;
    for (GSList *list : lists)
        g_slist_foreach(list, drop_paths, GSIZE_TO_POINTER(port));
}
