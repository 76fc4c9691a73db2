#include "platform/FrameCodecLib.h"

#include <fstream>
#include <iostream>
#include <memory>
#include <string>

// Opens the video that the first argument names, and tells whether FFmpeg and the engine were loaded before
// and after.

namespace {

bool isMapped(const std::string& part) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find(part) != std::string::npos)
            return true;
    return false;
}

} // namespace

int main(int count, char** arguments) {
    if (count != 2)
        return 2;
    const std::unique_ptr<FrameCodecLib::DecoderFactory> factory(FrameCodecLib::DecoderFactory::Create());
    std::cout << isMapped("libavcodec") << isMapped("kesto_engine.so");
    const std::unique_ptr<FrameCodecLib::Decoder> decoder(factory->CreateDecoder(arguments[1], -1, 1));
    std::cout << ' ' << isMapped("libavcodec") << isMapped("kesto_engine.so")
              << (decoder ? " opened\n" : " null\n");
    return 0;
}
