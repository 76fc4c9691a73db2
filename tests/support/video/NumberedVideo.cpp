// Writes YUV4MPEG2 to a file: `numbered_video FILE WIDTH HEIGHT FRAMES [RATE]`, frames that carry their
// number; or `numbered_video FILE bars DEPTH LUMA,CB,CR...`, four equal frames of one bar a colour, 4:2:0 in
// 8 or 10 bits.

#include "support/FrameNumber.h"

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

void writeHeader(std::ofstream& out, int width, int height, const std::string& colours,
                 const std::string& rate = "25:1") {
    out << "YUV4MPEG2 W" << width << " H" << height << " F" << rate << " Ip A1:1 C" << colours << '\n';
}

void writeNumbers(std::ofstream& out, int width, int height, int frames, const std::string& rate) {
    writeHeader(out, width, height, "420jpeg", rate);
    const std::string grey(static_cast<std::size_t>((width + 1) / 2 * ((height + 1) / 2) * 2), '\x80');
    std::string luma(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), '\0');
    for (int number = 0; number < frames; ++number) {
        for (std::size_t i = 0; i < luma.size(); ++i) {
            const int x = static_cast<int>(i) % width;
            const int y = static_cast<int>(i) / width;
            const bool isWhite = FrameNumber::isWhite(static_cast<unsigned>(number), x, y, width, height);
            luma[i] = static_cast<char>(isWhite ? 235 : 16);
        }
        out << "FRAME\n" << luma << grey;
    }
}

struct Colour {
    int planes[3] = {};
};

Colour parseColour(const std::string& text) {
    Colour colour;
    std::istringstream in(text);
    char comma = 0;
    in >> colour.planes[0] >> comma >> colour.planes[1] >> comma >> colour.planes[2];
    return colour;
}

void putSample(std::string& plane, int value, int depth) {
    plane += static_cast<char>(value & 0xFF);
    if (depth > 8)
        plane += static_cast<char>(value >> 8);
}

void writeBars(std::ofstream& out, int depth, const std::vector<Colour>& colours) {
    constexpr int barWidth = 16;
    constexpr int height = 32;
    const int width = barWidth * static_cast<int>(colours.size());
    writeHeader(out, width, height, depth > 8 ? "420p10" : "420jpeg");
    std::string frame;
    for (int plane = 0; plane < 3; ++plane) {
        const int step = plane == 0 ? 1 : 2;
        for (int y = 0; y < height; y += step)
            for (int x = 0; x < width; x += step)
                putSample(frame, colours[static_cast<std::size_t>(x / barWidth)].planes[plane], depth);
    }
    for (int number = 0; number < 4; ++number)
        out << "FRAME\n" << frame;
}

} // namespace

int main(int count, char** arguments) {
    const std::vector<std::string> texts(arguments + 1, arguments + count);
    if (texts.size() < 4)
        return EXIT_FAILURE;
    std::ofstream out(texts[0], std::ios::binary);
    if (texts[1] == "bars") {
        std::vector<Colour> colours;
        for (std::size_t i = 3; i < texts.size(); ++i)
            colours.push_back(parseColour(texts[i]));
        writeBars(out, std::stoi(texts[2]), colours);
    } else {
        writeNumbers(out, std::stoi(texts[1]), std::stoi(texts[2]), std::stoi(texts[3]),
                     texts.size() > 4 ? texts[4] : "25:1");
    }
    return out.flush() ? EXIT_SUCCESS : EXIT_FAILURE;
}
