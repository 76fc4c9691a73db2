#include "gdiplus/properties/PropertyItems.h"

#include <libexif/exif-data.h>

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

namespace GdiplusBackend {

namespace {

struct ExifDeleter {
    void operator()(ExifData* data) const { exif_data_unref(data); }
};
using ExifPtr = std::unique_ptr<ExifData, ExifDeleter>;

constexpr ExifByteOrder machineOrder =
    std::endian::native == std::endian::little ? EXIF_BYTE_ORDER_INTEL : EXIF_BYTE_ORDER_MOTOROLA;

constexpr std::array directories = {EXIF_IFD_0, EXIF_IFD_EXIF, EXIF_IFD_GPS, EXIF_IFD_INTEROPERABILITY};

ExifPtr parse(std::span<const std::byte> exif) {
    // libexif knows a block by the identifier that stands before it in JPEG files.
    constexpr std::array<unsigned char, 6> identifier = {'E', 'x', 'i', 'f', 0, 0};
    std::vector<unsigned char> block(identifier.begin(), identifier.end());
    const auto* bytes = reinterpret_cast<const unsigned char*>(exif.data());
    block.insert(block.end(), bytes, bytes + exif.size());

    ExifPtr data(exif_data_new());
    if (!data)
        throw std::bad_alloc();
    // Values are given as they stand: nothing is added, mended or left out for being unknown.
    exif_data_unset_option(data.get(), EXIF_DATA_OPTION_FOLLOW_SPECIFICATION);
    exif_data_unset_option(data.get(), EXIF_DATA_OPTION_IGNORE_UNKNOWN_TAGS);
    exif_data_set_option(data.get(), EXIF_DATA_OPTION_DONT_CHANGE_MAKER_NOTE);
    exif_data_load_data(data.get(), block.data(), static_cast<unsigned int>(block.size()));
    exif_data_set_byte_order(data.get(), machineOrder);
    return data;
}

/// Orientation is one short, whatever a writer made of it (CIPA DC-008, 4.6.4).
PropertyEntry orientationOf(const ExifEntry& entry) {
    std::uint16_t value = 0;
    if (entry.format == EXIF_FORMAT_LONG && entry.size >= 4)
        value = static_cast<std::uint16_t>(exif_get_long(entry.data, machineOrder));
    else if (entry.format == EXIF_FORMAT_SHORT && entry.size >= 2)
        value = exif_get_short(entry.data, machineOrder);
    else
        value = entry.data[0];
    PropertyEntry property = {.id = PropertyTagOrientation, .type = PropertyTagTypeShort, .value = {}};
    property.value.resize(sizeof value);
    std::memcpy(property.value.data(), &value, sizeof value);
    return property;
}

PropertyEntry propertyOf(const ExifEntry& entry) {
    if (entry.tag == EXIF_TAG_ORIENTATION && exif_entry_get_ifd(&entry) == EXIF_IFD_0)
        return orientationOf(entry);
    PropertyEntry property = {
        .id = static_cast<PROPID>(entry.tag), .type = static_cast<WORD>(entry.format), .value = {}};
    const auto bytes = std::as_bytes(std::span(entry.data, entry.size));
    property.value.assign(bytes.begin(), bytes.end());
    if (entry.format == EXIF_FORMAT_ASCII && property.value.back() != std::byte{0})
        property.value.push_back(std::byte{0});
    return property;
}

} // namespace

std::vector<PropertyEntry> propertiesFromExif(std::span<const std::byte> exif) {
    constexpr std::size_t mostBytes = std::numeric_limits<unsigned int>::max() / 2;
    std::vector<PropertyEntry> properties;
    if (exif.empty() || exif.size() > mostBytes)
        return properties;
    const ExifPtr data = parse(exif);
    for (const ExifIfd directory : directories) {
        const ExifContent& content = *data->ifd[directory];
        for (unsigned int index = 0; index < content.count; ++index)
            if (const ExifEntry& entry = *content.entries[index]; entry.data && entry.size > 0)
                properties.push_back(propertyOf(entry));
    }
    return properties;
}

} // namespace GdiplusBackend
