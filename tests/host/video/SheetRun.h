#pragma once

#include "PictureFile.h"
#include "ProgramRun.h"
#include "support/TempFolder.h"

#include <optional>
#include <string>
#include <vector>

/// One cue of a WebVTT file of thumbnails.
struct VttCue {
    std::string start;
    std::string end;
    std::string picture;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

/// Throws `std::runtime_error` for text that is not such a file.
std::vector<VttCue> readVtt(const std::string& text);

/// The number that the frame in a part of a picture carries; nothing for a part that carries none.
std::optional<int> numberIn(const PictureFile& picture, int x, int y, int width, int height);
std::optional<int> numberIn(const PictureFile& picture);

/// Makes sheets in a folder of its own.
class SheetMaking {
public:
    /// Runs `sheet` on `input` with sheet, WebVTT file and these further arguments.
    ProgramRun make(const std::string& input, const std::vector<std::string>& arguments) const;

    PictureFile sheet() const { return readPng(folder / "sheet.png"); }
    std::vector<VttCue> cues() const { return readVtt(TestSupport::readFile(folder / "sheet.vtt")); }
    /// Of each cue's rectangle in turn; -1 where there is none.
    std::vector<int> numbers() const;

    const TestSupport::TempFolder folder;
};
