// What a frame of a recording costs, beside the same frame of the same file taken as a video.
//
//     mosk_frame_bench FILE SECONDS...

#include <KestoThumbnailer/platform/FrameCodecLib.h>
#include <KestoThumbnailer/platform/MOSK.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int rounds = 15;

void require(bool condition, const char* what) {
    if (condition)
        return;
    std::fprintf(stderr, "mosk_frame_bench: %s\n", what);
    std::exit(EXIT_FAILURE); // NOLINT(concurrency-mt-unsafe): there is one thread
}

/// From the open of the file on.
void takeAsVideo(const std::string& file, double seconds) {
    const std::unique_ptr<FrameCodecLib::DecoderFactory> factory(FrameCodecLib::DecoderFactory::Create());
    const std::unique_ptr<FrameCodecLib::Decoder> decoder(factory->CreateDecoder(file, -1, 1));
    require(decoder != nullptr, "no video");
    FrameCodecLib::FrameTiming timing;
    const boost::rational<__int64> time(static_cast<__int64>(seconds * 1000), 1000);
    const std::unique_ptr<FrameCodecLib::Bitmap> frame(decoder->GetFrameAtTime(time, timing, 0));
    require(frame && frame->Lock(), "no frame of the video");
    // Whoever takes a frame copies it into a bitmap, as a recording's frame is copied into its buffer.
    const std::size_t bytes =
        static_cast<std::size_t>(frame->GetStride()) * static_cast<std::size_t>(frame->GetHeight());
    const std::unique_ptr<unsigned char[]> copy(new unsigned char[bytes]);
    std::memcpy(copy.get(), frame->GetPixels(), bytes);
}

void takeAsRecording(const std::string& file, double seconds) {
    const auto reader =
        MOSK::Reader::create(file, MOSK::AudioFormat::create16BitSignedInterleaved(44100, 2), nullptr);
    require(reader && !reader->tracks().empty(), "no recording");
    const auto track = reader->tracks().front();
    const unsigned int bytes = track->width() * track->height() * 4;
    const std::unique_ptr<unsigned char[]> pixels(new unsigned char[bytes]);
    require(track->decodeFrameAtTime(seconds, pixels.get(), bytes, nullptr), "no frame of the recording");
}

double millisecondsOf(void (*take)(const std::string&, double), const std::string& file, double seconds) {
    const auto start = std::chrono::steady_clock::now();
    take(file, seconds);
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double medianOf(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

} // namespace

int main(int count, char** arguments) {
    require(count > 2, "a file and at least one time are expected");
    const std::string file = arguments[1];
    for (int i = 2; i < count; ++i) {
        const double seconds = std::strtod(arguments[i], nullptr);
        std::vector<double> asVideo;
        std::vector<double> asRecording;
        takeAsVideo(file, seconds); // loads the libraries
        for (int round = 0; round < rounds; ++round) {
            asVideo.push_back(millisecondsOf(&takeAsVideo, file, seconds));
            asRecording.push_back(millisecondsOf(&takeAsRecording, file, seconds));
        }
        const double video = medianOf(asVideo);
        const double recording = medianOf(asRecording);
        std::printf("%s s: video %.2f ms, recording %.2f ms, ratio %.3f\n", arguments[i], video, recording,
                    recording / video);
    }
    return EXIT_SUCCESS;
}
