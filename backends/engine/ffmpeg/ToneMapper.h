#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace EngineBackend {

/// The two systems of high dynamic range: perceptual quantisation and hybrid log-gamma (ITU-R BT.2100).
enum class HdrTransfer { Pq, Hlg };

struct HdrDescription {
    HdrTransfer transfer = HdrTransfer::Pq;
    double peak = 1000;   ///< the brightest that the picture shows, in candelas per square metre
    bool isBt2020 = true; ///< its primaries; else those of BT.709

    friend bool operator==(const HdrDescription&, const HdrDescription&) = default;
};

/// Shows high dynamic range on an ordinary screen: what is as bright as paper, 203 candelas per square metre
/// (ITU-R BT.2408), and what is brighter share the upper end of the scale, by the curve of ITU-R BT.2390,
/// 5.4.1; darker parts keep their brightness. Colours outside of sRGB are clipped to it.
class ToneMapper {
public:
    explicit ToneMapper(const HdrDescription& description);

    const HdrDescription& description() const { return hdr; }

    /// `from` has 16-bit R, G, B a pixel as the transfer encodes them; `to`, as long in pixels, gets B, G, R
    /// and an alpha of 255.
    void map(std::span<const std::uint16_t> from, std::span<std::uint8_t> to) const;

private:
    struct Light {
        float red;
        float green;
        float blue;
    };

    Light displayed(const std::uint16_t* encoded) const;
    Light compressed(Light light) const;
    std::uint8_t encoded(float light) const;

    static constexpr std::size_t steps = 4096;
    static constexpr std::size_t fineSteps = 16384;

    HdrDescription hdr;
    float greatest; ///< the greatest value of light, where 1 is the white of paper
    std::array<float, steps> lightOfCode = {};
    std::array<float, steps> luminanceGain = {}; ///< of hybrid log-gamma, by luminance of the scene
    std::array<float, steps> curve = {};         ///< a factor, by the square root of light
    std::array<std::uint8_t, fineSteps> codeOfLight = {};
};

} // namespace EngineBackend
