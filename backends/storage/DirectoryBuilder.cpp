#include "storage/DirectoryBuilder.h"

#include <algorithm>
#include <bit>
#include <string_view>
#include <utility>

namespace StorageBackend {

namespace {

using namespace CompoundFormat;

DirectoryEntry emptyEntry() {
    DirectoryEntry entry = {};
    entry.left = entry.right = entry.child = noEntry;
    return entry;
}

class DirectoryBuilder {
public:
    NewDirectory build(const NewElement& root);

private:
    using Children = std::vector<std::uint32_t>; // entries in their order

    std::uint32_t addEntry(std::u16string_view name, EntryType type);
    void addChildren(std::uint32_t storage, const NewElement& element);
    void placeStream(std::uint32_t index, const NewElement& stream);
    void placeSmallStream(DirectoryEntry& entry, const NewElement& stream);
    std::uint32_t linkTree(std::span<const std::uint32_t> children, int level, int redLevel);

    NewDirectory made;
    std::vector<std::pair<std::uint32_t, const NewElement*>> storagesToFill;
};

NewDirectory DirectoryBuilder::build(const NewElement& root) {
    const std::uint32_t index = addEntry(u"Root Entry", EntryType::Root);
    made.entries[index].firstSector = endOfChain;
    storagesToFill.emplace_back(index, &root);
    while (!storagesToFill.empty()) {
        const auto [storage, element] = storagesToFill.back();
        storagesToFill.pop_back();
        addChildren(storage, *element);
    }
    made.entries[0].size = made.miniStream.size();
    return std::move(made);
}

std::uint32_t DirectoryBuilder::addEntry(std::u16string_view name, EntryType type) {
    DirectoryEntry entry = emptyEntry();
    std::copy(name.begin(), name.end(), entry.name.begin());
    entry.nameBytes = static_cast<std::uint16_t>((name.size() + 1) * sizeof(char16_t));
    entry.type = type;
    entry.color = EntryColor::Black;
    made.entries.push_back(entry);
    return static_cast<std::uint32_t>(made.entries.size() - 1);
}

void DirectoryBuilder::addChildren(std::uint32_t storage, const NewElement& element) {
    Children children;
    for (const auto& [name, child] : element.children) {
        const std::uint32_t index = addEntry(name, child->isStream ? EntryType::Stream : EntryType::Storage);
        children.push_back(index);
        if (child->isStream)
            placeStream(index, *child);
        else
            storagesToFill.emplace_back(index, child.get());
    }
    // Split in halves, a tree is full but for its last level. With that one red, all ways down have the same
    // number of black nodes.
    const int levels = static_cast<int>(std::bit_width(children.size()));
    const bool isFull = std::has_single_bit(children.size() + 1);
    made.entries[storage].child = linkTree(children, 1, isFull ? 0 : levels);
}

void DirectoryBuilder::placeStream(std::uint32_t index, const NewElement& stream) {
    DirectoryEntry& entry = made.entries[index];
    entry.size = stream.size;
    if (stream.sectors.empty())
        placeSmallStream(entry, stream);
    else
        entry.firstSector = stream.sectors.front();
}

void DirectoryBuilder::placeSmallStream(DirectoryEntry& entry, const NewElement& stream) {
    entry.firstSector = stream.small.empty() ? endOfChain : static_cast<std::uint32_t>(made.miniTable.size());
    if (stream.small.empty())
        return;
    made.miniStream.insert(made.miniStream.end(), stream.small.begin(), stream.small.end());
    const std::size_t sectors = (made.miniStream.size() + miniSectorSize - 1) / miniSectorSize;
    made.miniStream.resize(sectors * miniSectorSize);
    while (made.miniTable.size() + 1 < sectors)
        made.miniTable.push_back(static_cast<std::uint32_t>(made.miniTable.size() + 1));
    made.miniTable.push_back(endOfChain);
}

std::uint32_t DirectoryBuilder::linkTree(std::span<const std::uint32_t> children, int level, int redLevel) {
    if (children.empty())
        return noEntry;
    const std::size_t middle = children.size() / 2;
    const std::uint32_t top = children[middle];
    const std::uint32_t left = linkTree(children.first(middle), level + 1, redLevel);
    const std::uint32_t right = linkTree(children.subspan(middle + 1), level + 1, redLevel);
    DirectoryEntry& entry = made.entries[top];
    entry.left = left;
    entry.right = right;
    if (level == redLevel)
        entry.color = EntryColor::Red;
    return top;
}

} // namespace

NewDirectory buildDirectory(const NewElement& root) {
    return DirectoryBuilder().build(root);
}

} // namespace StorageBackend
