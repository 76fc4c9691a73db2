#pragma once

#include <cstddef>
#include <list>
#include <utility>

namespace KestoRenderLib {

/// A few values by key, of which the one that was not asked for the longest goes first.
template <class Key, class Value>
class RecentlyUsed {
public:
    using ValueType = Value;

    /// The value of `key`, made by `make()` if it is not there; then `capacity` values at most are kept. It
    /// stays until the next call.
    template <class Make>
    Value& get(const Key& key, std::size_t capacity, const Make& make) {
        for (auto entry = entries.begin(); entry != entries.end(); ++entry)
            if (entry->first == key) {
                entries.splice(entries.begin(), entries, entry);
                return entries.front().second;
            }
        while (!entries.empty() && entries.size() >= capacity)
            entries.pop_back();
        entries.emplace_front(key, make());
        return entries.front().second;
    }

    /// Drops values, the longest unused first, while what `measure` gives for those kept exceeds `limit` in
    /// sum. The one that was used last stays.
    template <class Measure>
    void trim(std::size_t limit, const Measure& measure) {
        std::size_t sum = 0;
        auto entry = entries.begin();
        while (entry != entries.end()) {
            sum += measure(entry->second);
            if (sum > limit && entry != entries.begin())
                break;
            ++entry;
        }
        entries.erase(entry, entries.end());
    }

private:
    std::list<std::pair<Key, Value>> entries; ///< used last in front
};

} // namespace KestoRenderLib
