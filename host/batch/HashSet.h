#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace KestoHost {

/// A set of texts that keeps 64 bits of each, for runs over millions of names. It may take a text for one
/// that it holds, with odds of its size to 2^64; it never misses one.
class HashSet {
public:
    HashSet();

    void add(const std::string& text);
    bool contains(const std::string& text) const;

private:
    static std::uint64_t hashOf(const std::string& text);
    std::size_t placeOf(std::uint64_t hash) const;
    void grow();

    // Open addressing: a hash lies at the first free place from its low bits on; 0 is a free place.
    std::vector<std::uint64_t> places;
    std::size_t count = 0;
};

} // namespace KestoHost
