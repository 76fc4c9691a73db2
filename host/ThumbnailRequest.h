#pragma once

#include "Arguments.h"
#include "Report.h"

#include <optional>
#include <string>

namespace KestoHost {

constexpr int trackByPathAlone = -1;

/// One thumbnail to be made. Its names are as they were typed.
struct ThumbnailRequest {
    std::string input;
    std::string output;
    Bounds bounds;
    double seconds = 0;
    bool isTimeAsked = false; ///< else a picture that moves is shown as a still one
    int track = trackByPathAlone;
};

/// What is known of a request before it is run: no size, no time, no failure.
ThumbReport reportFor(const ThumbnailRequest& request);

/// Why a request can't be tried at all: by its names, without a look into the input.
std::optional<Failure> refusalOf(const ThumbnailRequest& request);

/// Why no picture came of an input, after the attempt: it is read anew. Its name is valid UTF-8.
Failure withoutPicture(const std::string& input);

/// Why the output was not written, after the attempt.
Failure unwritten(const std::string& output);

/// For what has no better word.
Failure internalFailure(const std::string& input, const char* what);

} // namespace KestoHost
