#include "SheetRun.h"

#include "support/FrameNumber.h"

#include <regex>
#include <sstream>
#include <stdexcept>

namespace {

VttCue readCue(std::istream& lines) {
    static const std::regex times("(\\d{2,}:\\d\\d:\\d\\d\\.\\d{3}) --> (\\d{2,}:\\d\\d:\\d\\d\\.\\d{3})");
    static const std::regex place("(.*)#xywh=(\\d+),(\\d+),(\\d+),(\\d+)");
    std::string first;
    std::string second;
    std::getline(lines, first);
    std::getline(lines, second);
    std::smatch when;
    std::smatch where;
    if (!std::regex_match(first, when, times) || !std::regex_match(second, where, place))
        throw std::runtime_error("no cue: " + first + " / " + second);
    return {when[1],
            when[2],
            where[1],
            std::stoi(where[2]),
            std::stoi(where[3]),
            std::stoi(where[4]),
            std::stoi(where[5])};
}

} // namespace

std::vector<VttCue> readVtt(const std::string& text) {
    std::istringstream lines(text);
    std::string line;
    std::getline(lines, line);
    if (line != "WEBVTT")
        throw std::runtime_error("no WebVTT file: " + line);
    std::vector<VttCue> cues;
    while (std::getline(lines, line)) {
        if (!line.empty())
            throw std::runtime_error("expected an empty line: " + line);
        cues.push_back(readCue(lines));
    }
    return cues;
}

std::optional<int> numberIn(const PictureFile& picture, int x, int y, int width, int height) {
    std::vector<std::uint32_t> part;
    for (int row = y; row < y + height; ++row)
        for (int column = x; column < x + width; ++column)
            part.push_back(picture.at(column, row));
    return FrameNumber::read(reinterpret_cast<const unsigned char*>(part.data()), width, height, width * 4);
}

std::optional<int> numberIn(const PictureFile& picture) {
    return numberIn(picture, 0, 0, picture.width, picture.height);
}

ProgramRun SheetMaking::make(const std::string& input, const std::vector<std::string>& arguments) const {
    std::vector<std::string> words = {
        "sheet", input, "-o", folder / "sheet.png", "--vtt", folder / "sheet.vtt"};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return runProgram(words);
}

std::vector<int> SheetMaking::numbers() const {
    const PictureFile picture = sheet();
    std::vector<int> numbers;
    for (const VttCue& cue : cues())
        numbers.push_back(numberIn(picture, cue.x, cue.y, cue.width, cue.height).value_or(-1));
    return numbers;
}
