#include "backends/gdiplus/properties/ExifBuilder.h"

#include "gdiplus/properties/PropertyItems.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <optional>

namespace GdiplusBackend {

namespace {

constexpr PROPID make = 0x010F;
constexpr PROPID resolution = 0x011A;
constexpr PROPID isoSpeed = 0x8827;
constexpr PROPID latitudeReference = 0x0001;
constexpr PROPID altitude = 0x0006;

std::optional<PropertyEntry> find(const std::vector<PropertyEntry>& properties, PROPID id) {
    const auto found = std::find_if(properties.begin(), properties.end(),
                                    [id](const PropertyEntry& property) { return property.id == id; });
    return found == properties.end() ? std::nullopt : std::optional(*found);
}

template <typename T>
std::vector<T> valuesOf(const PropertyEntry& property) {
    std::vector<T> values(property.value.size() / sizeof(T));
    std::memcpy(values.data(), property.value.data(), values.size() * sizeof(T));
    return values;
}

std::string textOf(const PropertyEntry& property) {
    return {reinterpret_cast<const char*>(property.value.data()), property.value.size()};
}

class BothOrders : public testing::TestWithParam<FileOrder> {};
INSTANTIATE_TEST_SUITE_P(PropertyItems, BothOrders, testing::Values(FileOrder::Intel, FileOrder::Motorola));

} // namespace

TEST_P(BothOrders, GiveTheOrientationAsAShortOfTheMachine) {
    for (const std::uint32_t value : {0U, 1U, 6U, 8U, 9U}) {
        const auto properties =
            propertiesFromExif(ExifBuilder(GetParam()).shorts(PropertyTagOrientation, {value}).build());
        ASSERT_EQ(properties.size(), 1U);
        EXPECT_EQ(properties[0].id, PropertyTagOrientation);
        EXPECT_EQ(properties[0].type, PropertyTagTypeShort);
        EXPECT_THAT(valuesOf<std::uint16_t>(properties[0]), testing::ElementsAre(value));
        EXPECT_EQ(properties[0].value.size(), 2U);
    }
}

TEST_P(BothOrders, GiveAnOrientationThatWasWrittenAsALongAsAShort) {
    const auto properties =
        propertiesFromExif(ExifBuilder(GetParam()).longs(PropertyTagOrientation, {6}).build());
    ASSERT_EQ(properties.size(), 1U);
    EXPECT_EQ(properties[0].type, PropertyTagTypeShort);
    EXPECT_THAT(valuesOf<std::uint16_t>(properties[0]), testing::ElementsAre(6));
}

TEST_P(BothOrders, GiveNumbersInTheOrderOfTheMachine) {
    const auto properties = propertiesFromExif(ExifBuilder(GetParam())
                                                   .rational(resolution, 300, 7)
                                                   .exif()
                                                   .shorts(isoSpeed, {100, 0x1234})
                                                   .longs(0xA002, {4000})
                                                   .build());
    EXPECT_THAT(valuesOf<std::uint32_t>(find(properties, resolution).value()), testing::ElementsAre(300, 7));
    EXPECT_EQ(find(properties, resolution)->type, PropertyTagTypeRational);
    EXPECT_THAT(valuesOf<std::uint16_t>(find(properties, isoSpeed).value()),
                testing::ElementsAre(100, 0x1234));
    EXPECT_THAT(valuesOf<std::uint32_t>(find(properties, 0xA002).value()), testing::ElementsAre(4000));
}

TEST_P(BothOrders, GiveTheEntriesOfAllFourDirectories) {
    using namespace std::string_view_literals;
    const auto properties = propertiesFromExif(ExifBuilder(GetParam())
                                                   .ascii(make, "Some Maker\0"sv)
                                                   .exif()
                                                   .shorts(isoSpeed, {200})
                                                   .gps()
                                                   .ascii(latitudeReference, "N\0"sv)
                                                   .rational(altitude, 5, 2)
                                                   .interoperability()
                                                   .ascii(0x1001, "wide\0"sv)
                                                   .build());
    std::vector<PROPID> ids;
    ids.reserve(properties.size());
    for (const PropertyEntry& property : properties)
        ids.push_back(property.id);
    EXPECT_THAT(ids, testing::ElementsAre(make, isoSpeed, latitudeReference, altitude, 0x1001));
    EXPECT_EQ(textOf(properties[0]), "Some Maker\0"sv);
    EXPECT_EQ(textOf(properties[2]), "N\0"sv);
}

TEST(PropertyItems, TextWithoutItsTerminatorGetsOne) {
    const auto properties = propertiesFromExif(ExifBuilder(FileOrder::Intel).ascii(make, "Maker").build());
    ASSERT_EQ(properties.size(), 1U);
    EXPECT_EQ(properties[0].type, PropertyTagTypeASCII);
    EXPECT_EQ(textOf(properties[0]), std::string("Maker\0", 6));
}

TEST(PropertyItems, UnknownTagsAreGivenToo) {
    const auto properties =
        propertiesFromExif(ExifBuilder(FileOrder::Motorola).raw(0xC123, 7, 6, "opaque").build());
    ASSERT_EQ(properties.size(), 1U);
    EXPECT_EQ(properties[0].type, PropertyTagTypeUndefined);
    EXPECT_EQ(textOf(properties[0]), "opaque");
}

TEST(PropertyItems, NothingIsAddedToASparseBlock) {
    EXPECT_EQ(propertiesFromExif(ExifBuilder(FileOrder::Intel).exif().shorts(isoSpeed, {1}).build()).size(),
              1U);
}

TEST(PropertyItems, AnEmptyBlockGivesNothing) {
    EXPECT_TRUE(propertiesFromExif({}).empty());
}

TEST(PropertyItems, AnEntryThatPointsOutsideIsLeftOutAndTheOthersAreRead) {
    auto block = ExifBuilder(FileOrder::Intel)
                     .raw(make, 2, 0x00FFFFFF, "far away")
                     .shorts(PropertyTagOrientation, {3})
                     .build();
    const auto properties = propertiesFromExif(block);
    ASSERT_EQ(properties.size(), 1U);
    EXPECT_EQ(properties[0].id, PropertyTagOrientation);
}

TEST(PropertyItems, AWrongByteOrderMarkGivesNothing) {
    auto block = ExifBuilder(FileOrder::Intel).shorts(PropertyTagOrientation, {3}).build();
    block[0] = block[1] = std::byte{'X'};
    EXPECT_TRUE(propertiesFromExif(block).empty());
}

TEST(PropertyItems, EveryCutIsReadInSilence) {
    using namespace std::string_view_literals;
    const auto block = ExifBuilder(FileOrder::Motorola)
                           .ascii(make, "A rather long maker\0"sv)
                           .exif()
                           .shorts(isoSpeed, {1, 2, 3})
                           .gps()
                           .rational(altitude, 5, 2)
                           .build();
    testing::internal::CaptureStderr();
    for (std::size_t length = 0; length < block.size(); ++length)
        EXPECT_LE(propertiesFromExif(std::span(block).first(length)).size(), 3U) << length;
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(propertiesFromExif(block).size(), 3U);
}

TEST(PropertyItems, DirectoriesThatNameEachOtherInARingEnd) {
    auto block = ExifBuilder(FileOrder::Intel).shorts(PropertyTagOrientation, {3}).longs(0x8769, {8}).build();
    const auto properties = propertiesFromExif(block);
    EXPECT_TRUE(find(properties, PropertyTagOrientation));
}

} // namespace GdiplusBackend
