#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace TestSupport {

/// What a track was asked for.
struct FrameCall {
    double seconds = 0;
    unsigned int size = 0;
    bool wantsActualTime = false;

    friend bool operator==(const FrameCall&, const FrameCall&) = default;
};

struct ScriptedTrack {
    std::int32_t typeCode = 0;
    unsigned int width = 0;
    unsigned int height = 0;
    std::function<std::uint32_t(int x, int y)> pixelAt; ///< 0xAARRGGBB, premultiplied; none: nothing decodes
    std::int32_t kind = 0;
};

struct RecordingRequest {
    std::string path;
    int sampleRate = 0;
    int channels = 0;
    bool hasDecoderFactory = false;

    friend bool operator==(const RecordingRequest&, const RecordingRequest&) = default;
};

/// The recordings that there are as long as this lives, one at a time. One thread at a time.
class ScriptedRecordings {
public:
    ScriptedRecordings();
    ~ScriptedRecordings();
    ScriptedRecordings(const ScriptedRecordings&) = delete;
    ScriptedRecordings& operator=(const ScriptedRecordings&) = delete;

    std::map<std::string, std::vector<ScriptedTrack>> tracksOf; ///< by the path of the file
    std::function<void(const std::string& path)> onOpen;        ///< may throw

    std::vector<RecordingRequest> requests;
    std::vector<FrameCall> frameCalls;
};

} // namespace TestSupport
