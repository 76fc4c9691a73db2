#include "engine/ffmpeg/ToneMapper.h"

#include <algorithm>
#include <cmath>

namespace EngineBackend {

namespace {

constexpr double paperWhite = 203;
constexpr double nominalPeak = 1000; // of a screen for hybrid log-gamma
constexpr double greatestOfPq = 10000;

// SMPTE ST 2084.
constexpr double m1 = 2610.0 / 16384;
constexpr double m2 = 2523.0 / 4096 * 128;
constexpr double c1 = 3424.0 / 4096;
constexpr double c2 = 2413.0 / 4096 * 32;
constexpr double c3 = 2392.0 / 4096 * 32;

double pqOfLuminance(double luminance) {
    const double power = std::pow(luminance / greatestOfPq, m1);
    return std::pow((c1 + c2 * power) / (1 + c3 * power), m2);
}

double luminanceOfPq(double code) {
    const double power = std::pow(code, 1 / m2);
    return greatestOfPq * std::pow(std::max(power - c1, 0.0) / (c2 - c3 * power), 1 / m1);
}

/// ITU-R BT.2100, table 5.
double sceneLightOfHlg(double code) {
    constexpr double a = 0.17883277;
    constexpr double b = 0.28466892;
    constexpr double c = 0.55991073;
    return code <= 0.5 ? code * code / 3 : (std::exp((code - c) / a) + b) / 12;
}

/// ITU-R BT.2390, 5.4.1, with a black of 0.
double compressedLuminance(double luminance, double peak) {
    if (peak <= paperWhite)
        return std::min(luminance, paperWhite);
    const double scale = pqOfLuminance(peak);
    const double code = std::min(pqOfLuminance(luminance) / scale, 1.0);
    const double most = pqOfLuminance(paperWhite) / scale;
    const double knee = 1.5 * most - 0.5;
    if (code < knee)
        return luminance;
    const double t = (code - knee) / (1 - knee);
    const double t2 = t * t;
    const double t3 = t2 * t;
    const double bent =
        (2 * t3 - 3 * t2 + 1) * knee + (t3 - 2 * t2 + t) * (1 - knee) + (3 * t2 - 2 * t3) * most;
    return luminanceOfPq(bent * scale);
}

/// IEC 61966-2-1.
double codeOfSrgb(double light) {
    return light <= 0.0031308 ? 12.92 * light : 1.055 * std::pow(light, 1 / 2.4) - 0.055;
}

double fraction(std::size_t step, std::size_t steps) {
    return static_cast<double>(step) / static_cast<double>(steps - 1);
}

template <std::size_t count, class Value>
Value nearest(const std::array<Value, count>& table, float place) {
    const float index = std::clamp(place, 0.0F, 1.0F) * static_cast<float>(count - 1) + 0.5F;
    return table[static_cast<std::size_t>(index)];
}

} // namespace

ToneMapper::ToneMapper(const HdrDescription& description)
    : hdr(description)
    , greatest(
          static_cast<float>((hdr.transfer == HdrTransfer::Pq ? greatestOfPq : nominalPeak) / paperWhite)) {
    for (std::size_t step = 0; step < steps; ++step) {
        const double place = fraction(step, steps);
        lightOfCode[step] = static_cast<float>(
            hdr.transfer == HdrTransfer::Pq ? luminanceOfPq(place) / paperWhite : sceneLightOfHlg(place));
        // The system gamma of 1.2 for the nominal peak.
        luminanceGain[step] = static_cast<float>(nominalPeak / paperWhite * std::pow(place, 0.2));
        const double luminance = place * place * greatest * paperWhite;
        curve[step] =
            static_cast<float>(step == 0 ? 1 : compressedLuminance(luminance, hdr.peak) / luminance);
    }
    for (std::size_t step = 0; step < fineSteps; ++step)
        codeOfLight[step] =
            static_cast<std::uint8_t>(std::lround(255 * codeOfSrgb(fraction(step, fineSteps))));
}

ToneMapper::Light ToneMapper::displayed(const std::uint16_t* encodedPixel) const {
    constexpr int surplusBits = 4;
    const Light light = {lightOfCode[encodedPixel[0] >> surplusBits],
                         lightOfCode[encodedPixel[1] >> surplusBits],
                         lightOfCode[encodedPixel[2] >> surplusBits]};
    if (hdr.transfer == HdrTransfer::Pq)
        return light;
    const float luminance = 0.2627F * light.red + 0.6780F * light.green + 0.0593F * light.blue;
    const float gain = nearest(luminanceGain, luminance);
    return {light.red * gain, light.green * gain, light.blue * gain};
}

/// All three by one factor, so that hues stay.
ToneMapper::Light ToneMapper::compressed(Light light) const {
    const float strongest = std::max({light.red, light.green, light.blue});
    const float factor = nearest(curve, std::sqrt(strongest / greatest));
    return {light.red * factor, light.green * factor, light.blue * factor};
}

std::uint8_t ToneMapper::encoded(float light) const {
    return nearest(codeOfLight, light);
}

void ToneMapper::map(std::span<const std::uint16_t> from, std::span<std::uint8_t> to) const {
    const std::size_t count = std::min(from.size() / 3, to.size() / 4);
    for (std::size_t i = 0; i < count; ++i) {
        const Light light = compressed(displayed(&from[3 * i]));
        Light shown = light;
        if (hdr.isBt2020) // ITU-R BT.2087, from these primaries to those of BT.709
            shown = {1.6605F * light.red - 0.5876F * light.green - 0.0728F * light.blue,
                     -0.1246F * light.red + 1.1329F * light.green - 0.0083F * light.blue,
                     -0.0182F * light.red - 0.1006F * light.green + 1.1187F * light.blue};
        std::uint8_t* const pixel = &to[4 * i];
        pixel[0] = encoded(shown.blue);
        pixel[1] = encoded(shown.green);
        pixel[2] = encoded(shown.red);
        pixel[3] = 255;
    }
}

} // namespace EngineBackend
