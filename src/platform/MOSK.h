#pragma once

#include "platform/Export.h"

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <string>
#include <vector>

/// Recordings in a `.mosk` file: one MP4 file with a track for the screen, the camera and each sound.
namespace MOSK {

/// How sound is to be delivered.
class KESTO_EXPORT AudioFormat {
public:
    static AudioFormat create16BitSignedInterleaved(int sampleRate, int channels);

    int sampleRate() const { return rate; }
    int channels() const { return channelCount; }

private:
    AudioFormat(int sampleRate, int channels)
        : rate(sampleRate)
        , channelCount(channels) {}

    int rate;
    int channelCount;
};

/// Makes decoders of sound for a reader; null wherever this library is asked, and sound then stays undecoded.
class AACDecoderFactory;

/// One track. One thread at a time for all tracks of a reader; a track keeps its file open.
class KESTO_EXPORT MP4TrackReader {
public:
    virtual ~MP4TrackReader() = default;

    /// 0 video, 1 audio, 2 anything else.
    virtual std::int32_t kind() const = 0;
    /// The sample format in four characters, such as "avc1"; "qrl2" is data that goes with the recording.
    virtual std::string format() const = 0;
    /// What the track recorded: 100 the screen, 101 the camera, 102 the microphone, 103 the system's sound;
    /// any other number for a track of no known role.
    virtual std::int32_t typeCode() const = 0;

    /// In pixels, upright and with square pixels; 0 for a track that is no video.
    virtual unsigned int width() const = 0;
    virtual unsigned int height() const = 0;

    /// The frame whose interval covers `seconds`, as `Decoder::GetFrameAtTime` tells, into `buffer`:
    /// `width()` times `height()` pixels without gaps, rows from the top, premultiplied B, G, R, A in memory.
    /// False, with the buffer as it was, when `size` is too small for that, the track is no video, or nothing
    /// could be decoded. `actualTime` gets the start of the frame's interval and may be null.
    virtual bool decodeFrameAtTime(double seconds, unsigned char* buffer, unsigned int size,
                                   double* actualTime) = 0;
};

class KESTO_EXPORT Reader {
public:
    /// Empty when the file can't be read or is no recording. `path` is UTF-8, looked up as `System.h` tells.
    static boost::shared_ptr<Reader> create(const std::string& path, const AudioFormat& audioFormat,
                                            AACDecoderFactory* decoderFactory);

    virtual ~Reader() = default;

    /// In the order of the file.
    virtual std::vector<boost::shared_ptr<MP4TrackReader>> tracks() = 0;
};

} // namespace MOSK
