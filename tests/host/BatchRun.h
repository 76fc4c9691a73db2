#pragma once

#include "PictureFile.h"
#include "ProgramRun.h"

#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

/// Runs `batch` in a folder of its own, with an empty folder "out" in it for what is written.
class BatchRun : public testing::Test {
protected:
    BatchRun() { std::filesystem::create_directory(folder / "out"); }

    /// A picture of that many pixels a row, by which thumbnails are told apart: they are as large.
    void picture(const std::string& name, int width) const { folder.write(name, redAndBluePng(width, 10)); }

    /// `batch --out-dir out` and these arguments.
    ProgramRun batch(const std::vector<std::string>& arguments, const std::string& input = {}) const {
        std::vector<std::string> all = {"batch", "--out-dir", "out"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        return runHere(all, input);
    }
    ProgramRun runHere(const std::vector<std::string>& arguments, const std::string& input = {}) const {
        return runProgram(arguments,
                          {.before = {"env", "--chdir=" + (folder / "").string()}, .input = input});
    }

    std::set<std::string> written(const std::string& where = "out") const {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder / where))
            names.insert(entry.path().filename());
        return names;
    }

    int widthOf(const std::string& name) const { return readPng(folder / name).width; }

    TestSupport::TempFolder folder;
};
