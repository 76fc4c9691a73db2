#include "gif/Animation.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

void require(bool condition) {
    if (!condition)
        std::abort();
}

class InputBytes : public GifBackend::IBytes {
public:
    explicit InputBytes(std::span<const std::uint8_t> input)
        : bytes(input) {}

    std::size_t read(std::uint64_t place, std::span<std::byte> out) override {
        if (place >= bytes.size())
            return 0;
        const auto rest = std::as_bytes(bytes.subspan(static_cast<std::size_t>(place)));
        const std::size_t count = std::min(rest.size(), out.size());
        std::copy_n(rest.begin(), count, out.begin());
        return count;
    }

private:
    std::span<const std::uint8_t> bytes;
};

using Picture = std::shared_ptr<const GifBackend::Picture>;

std::unique_ptr<GifBackend::Animation> open(std::span<const std::uint8_t> input) {
    constexpr GifBackend::Limits limits = {.pixels = 100'000, .time = std::chrono::hours(1)};
    return GifBackend::Animation::open(std::make_unique<InputBytes>(input), limits);
}

} // namespace

/// The first frames, in their order and backwards, are the same pictures.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto forwards = open({data, size});
    const auto backwards = open({data, size});
    if (!forwards)
        return 0;
    const std::size_t count = std::min<std::size_t>(forwards->frames().count(), 50);
    require(count > 0);
    for (const double time : {-1.0, 0.0, 0.25, 10.0, 1e300})
        require(forwards->indexAt(time) < forwards->frames().count());
    std::vector<Picture> pictures;
    for (std::size_t i = 0; i < count; ++i) {
        pictures.push_back(forwards->pictureAt(i));
        require(pictures.back() != nullptr);
    }
    for (std::size_t i = count; i-- > 0;) {
        const Picture picture = backwards->pictureAt(i);
        require(picture && picture->pixels == pictures[i]->pixels);
    }
    require(!forwards->pictureAt(forwards->frames().count()));
    return 0;
}
