#pragma once

#include <lcms2.h>

#include <array>
#include <cstddef>
#include <utility>
#include <vector>

namespace GdiplusBackend {

using ProfileBytes = std::vector<std::byte>;

/// The bytes of a profile, which is closed.
inline ProfileBytes savedProfile(cmsHPROFILE profile) {
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    ProfileBytes bytes(size);
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

inline ProfileBytes srgbProfile() {
    return savedProfile(cmsCreate_sRGBProfile());
}

constexpr cmsCIExyY daylight = {0.3127, 0.3290, 1.0};

/// With sRGB's primaries (ITU-R BT.709), or red and blue in each other's place.
enum class Primaries { OfSrgb, RedAndBlueSwapped };

/// RGB under a power curve.
inline ProfileBytes rgbProfile(double gamma, Primaries primaries = Primaries::OfSrgb) {
    cmsCIExyYTRIPLE points = {{0.64, 0.33, 1.0}, {0.30, 0.60, 1.0}, {0.15, 0.06, 1.0}};
    if (primaries == Primaries::RedAndBlueSwapped)
        std::swap(points.Red, points.Blue);
    cmsToneCurve* curve = cmsBuildGamma(nullptr, gamma);
    const std::array<cmsToneCurve*, 3> curves = {curve, curve, curve};
    ProfileBytes bytes = savedProfile(cmsCreateRGBProfile(&daylight, &points, curves.data()));
    cmsFreeToneCurve(curve);
    return bytes;
}

inline ProfileBytes grayProfile(double gamma) {
    cmsToneCurve* curve = cmsBuildGamma(nullptr, gamma);
    ProfileBytes bytes = savedProfile(cmsCreateGrayProfile(&daylight, curve));
    cmsFreeToneCurve(curve);
    return bytes;
}

/// Gray with the curve of sRGB (IEC 61966-2-1).
inline ProfileBytes srgbGrayProfile() {
    const std::array<cmsFloat64Number, 5> parameters = {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045};
    cmsToneCurve* curve = cmsBuildParametricToneCurve(nullptr, 4, parameters.data());
    ProfileBytes bytes = savedProfile(cmsCreateGrayProfile(&daylight, curve));
    cmsFreeToneCurve(curve);
    return bytes;
}

/// A printer whose black ink alone darkens, evenly in lightness; the other inks leave no trace on paper.
inline ProfileBytes blackOnlyCmykProfile() {
    const auto sample = [](const cmsUInt16Number inks[], cmsUInt16Number lab[], void*) -> cmsInt32Number {
        const cmsCIELab color = {100.0 * (65535 - inks[3]) / 65535, 0, 0};
        cmsFloat2LabEncodedV2(lab, &color);
        return TRUE;
    };
    cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, 2.1);
    cmsSetDeviceClass(profile, cmsSigOutputClass);
    cmsSetColorSpace(profile, cmsSigCmykData);
    cmsSetPCS(profile, cmsSigLabData);
    cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, 4, 3);
    cmsStage* table = cmsStageAllocCLut16bit(nullptr, 9, 4, 3, nullptr);
    cmsStageSampleCLut16bit(table, sample, nullptr, 0);
    cmsPipelineInsertStage(pipeline, cmsAT_BEGIN, table);
    cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
    cmsPipelineFree(pipeline);
    return savedProfile(profile);
}

} // namespace GdiplusBackend
