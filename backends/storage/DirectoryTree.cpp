#include "storage/DirectoryTree.h"

#include "storage/ElementName.h"

#include <algorithm>
#include <bit>

namespace StorageBackend {

namespace {

using namespace CompoundFormat;

/// Empty for a length that none has.
std::u16string_view nameOf(const DirectoryEntry& entry) {
    const std::size_t units = entry.nameBytes / sizeof(char16_t); // with the terminator
    const bool isPossible =
        entry.nameBytes % sizeof(char16_t) == 0 && units >= 2 && units <= entry.name.size();
    return isPossible ? std::u16string_view(entry.name.data(), units - 1) : std::u16string_view();
}

class TreeReader {
public:
    TreeReader(std::span<const DirectoryEntry> directory, int majorVersion)
        : entries(directory)
        , version(majorVersion)
        , elements(directory.size())
        , met(directory.size(), false) {}

    Result<std::vector<Element>> read();

private:
    Result<void> readElement(std::uint32_t index);
    Result<void> readChildren(std::uint32_t storage);
    void sortChildren(Element& storage) const;

    std::span<const DirectoryEntry> entries;
    int version;
    std::vector<Element> elements;
    std::vector<bool> met;
    std::vector<std::uint32_t> storagesToRead;
};

Result<std::vector<Element>> TreeReader::read() {
    if (entries.empty() || entries[0].type != EntryType::Root)
        return corrupt();
    if (auto done = readElement(0); !done)
        return tl::unexpected(done.error());
    while (!storagesToRead.empty()) {
        const std::uint32_t storage = storagesToRead.back();
        storagesToRead.pop_back();
        if (auto done = readChildren(storage); !done)
            return tl::unexpected(done.error());
    }
    return std::move(elements);
}

Result<void> TreeReader::readElement(std::uint32_t index) {
    if (index >= entries.size() || met[index])
        return corrupt();
    met[index] = true;
    const DirectoryEntry& entry = entries[index];
    const bool isRoot = index == 0;
    const bool isKnown = isRoot ? entry.type == EntryType::Root
                                : entry.type == EntryType::Storage || entry.type == EntryType::Stream;
    const std::u16string_view name = nameOf(entry);
    const bool isNamed = !name.empty() && name.find(u'\0') == std::u16string_view::npos;
    if (!isKnown || (!isNamed && !isRoot))
        return corrupt();
    Element& element = elements[index];
    element.name = name;
    element.type = entry.type;
    element.clsid = std::bit_cast<CLSID>(entry.clsid);
    element.stateBits = entry.stateBits;
    element.created = entry.created;
    element.modified = entry.modified;
    element.firstSector = entry.firstSector;
    // Writers of version 3 may leave anything in the upper half ([MS-CFB] 2.6.1).
    element.size = version == 3 ? entry.size & 0xFFFFFFFFU : entry.size;
    if (!element.isStream())
        storagesToRead.push_back(index);
    return {};
}

/// Without recursion: a tree may be as deep as the directory is long.
Result<void> TreeReader::readChildren(std::uint32_t storage) {
    std::vector<std::uint32_t> toRead = {entries[storage].child};
    while (!toRead.empty()) {
        const std::uint32_t index = toRead.back();
        toRead.pop_back();
        if (index == noEntry)
            continue;
        if (auto done = readElement(index); !done)
            return done;
        elements[storage].children.push_back(index);
        toRead.push_back(entries[index].left);
        toRead.push_back(entries[index].right);
    }
    sortChildren(elements[storage]);
    return {};
}

/// Not all writers keep the order of the trees.
void TreeReader::sortChildren(Element& storage) const {
    std::sort(storage.children.begin(), storage.children.end(), [this](std::uint32_t a, std::uint32_t b) {
        const int order = compareNames(elements[a].name, elements[b].name);
        return order != 0 ? order < 0 : a < b;
    });
}

} // namespace

Result<std::vector<Element>> readDirectoryTree(std::span<const DirectoryEntry> entries, int majorVersion) {
    return TreeReader(entries, majorVersion).read();
}

} // namespace StorageBackend
