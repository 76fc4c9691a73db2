#pragma once

#include "platform/Export.h"

#include <cstdint>

// Reading of MP4 and QuickTime files track by track, with edit lists left aside. A handle is for one thread
// at a time. A call that fails gives the invalid value of its kind; where there is none, 0, null or false.

using MP4FileHandle = void*;
using MP4TrackId = std::uint32_t;
using MP4SampleId = std::uint32_t; ///< from 1, in the order of decoding
using MP4Timestamp = std::uint64_t;
using MP4Duration = std::uint64_t;

constexpr MP4FileHandle MP4_INVALID_FILE_HANDLE = nullptr;
constexpr MP4TrackId MP4_INVALID_TRACK_ID = 0;
constexpr MP4SampleId MP4_INVALID_SAMPLE_ID = 0;
constexpr MP4Timestamp MP4_INVALID_TIMESTAMP = static_cast<MP4Timestamp>(-1);
constexpr MP4Duration MP4_INVALID_DURATION = static_cast<MP4Duration>(-1);

extern "C" {

/// `fileName` is UTF-8. Every handle must be closed.
KESTO_EXPORT MP4FileHandle MP4Read(const char* fileName);
KESTO_EXPORT void MP4Close(MP4FileHandle file, std::uint32_t flags);

/// The number of all tracks, when `type` is null and `subType` 0: nothing else is to be asked here.
KESTO_EXPORT std::uint32_t MP4GetNumberOfTracks(MP4FileHandle file, const char* type, std::uint8_t subType);
/// Of the track at `index`, from 0, in the order of the file; `type` and `subType` as above.
KESTO_EXPORT MP4TrackId MP4FindTrackId(MP4FileHandle file, std::uint16_t index, const char* type,
                                       std::uint8_t subType);

/// The four characters of the sample format; the handle's own text.
KESTO_EXPORT const char* MP4GetTrackMediaDataName(MP4FileHandle file, MP4TrackId track);
/// Ticks to the second.
KESTO_EXPORT std::uint32_t MP4GetTrackTimeScale(MP4FileHandle file, MP4TrackId track);
/// In ticks of the track.
KESTO_EXPORT MP4Duration MP4GetTrackDuration(MP4FileHandle file, MP4TrackId track);

/// The sample whose interval covers `when`, in ticks; with `wantSyncSample` it, or the next that can be
/// decoded by itself. Invalid behind the end; at the end itself it may be one that is not there.
KESTO_EXPORT MP4SampleId MP4GetSampleIdFromTime(MP4FileHandle file, MP4TrackId track, MP4Timestamp when,
                                                bool wantSyncSample);
/// In bytes.
KESTO_EXPORT std::uint32_t MP4GetSampleSize(MP4FileHandle file, MP4TrackId track, MP4SampleId sample);

/// Reads into `*bytes`, where `*byteCount` tells how many fit; or into memory that the caller frees with
/// `free`, when `*bytes` is null. `*byteCount` becomes the sample's size. What follows is optional;
/// `renderingOffset` must be null here.
KESTO_EXPORT bool MP4ReadSample(MP4FileHandle file, MP4TrackId track, MP4SampleId sample,
                                std::uint8_t** bytes, std::uint32_t* byteCount, MP4Timestamp* startTime,
                                MP4Duration* duration, MP4Duration* renderingOffset, bool* isSyncSample);

} // extern "C"
