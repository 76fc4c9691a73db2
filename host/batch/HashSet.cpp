#include "HashSet.h"

#include <functional>
#include <string_view>

namespace KestoHost {

namespace {

constexpr std::size_t placesAtFirst = 64; // a power of two, as all later sizes
constexpr std::uint64_t freePlace = 0;

} // namespace

HashSet::HashSet()
    : places(placesAtFirst, freePlace) {}

void HashSet::add(const std::string& text) {
    const std::uint64_t hash = hashOf(text);
    std::uint64_t& place = places[placeOf(hash)];
    if (place == hash)
        return;
    place = hash;
    ++count;
    if (count > places.size() / 4 * 3)
        grow();
}

bool HashSet::contains(const std::string& text) const {
    return places[placeOf(hashOf(text))] != freePlace;
}

std::uint64_t HashSet::hashOf(const std::string& text) {
    static_assert(sizeof(std::size_t) == sizeof(std::uint64_t));
    const std::uint64_t hash = std::hash<std::string_view>()(text);
    return hash == freePlace ? ~freePlace : hash;
}

/// Where `hash` lies, or where it would be put.
std::size_t HashSet::placeOf(std::uint64_t hash) const {
    const std::size_t mask = places.size() - 1;
    std::size_t index = hash & mask;
    while (places[index] != freePlace && places[index] != hash)
        index = (index + 1) & mask;
    return index;
}

void HashSet::grow() {
    std::vector<std::uint64_t> old(places.size() * 2, freePlace);
    old.swap(places);
    for (const std::uint64_t hash : old)
        if (hash != freePlace)
            places[placeOf(hash)] = hash;
}

} // namespace KestoHost
