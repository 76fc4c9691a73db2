#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace TestSupport {

/// A folder of its own for one test, removed with all that is in it.
class TempFolder {
public:
    TempFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "kesto-test-XXXXXX").string();
        if (!::mkdtemp(pattern.data()))
            throw std::runtime_error("no folder for temporary files");
        folder = pattern;
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::filesystem::path operator/(std::string_view name) const { return folder / name; }

    /// Makes a file and gives its path.
    std::filesystem::path write(std::string_view name, std::span<const unsigned char> bytes) const {
        std::ofstream file(folder / name, std::ios::binary);
        for (const unsigned char byte : bytes)
            file.put(static_cast<char>(byte));
        return folder / name;
    }
    std::filesystem::path write(std::string_view name, std::string_view text) const {
        std::ofstream(folder / name, std::ios::binary) << text;
        return folder / name;
    }

private:
    std::filesystem::path folder;
};

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// For the wide calls, in any locale.
inline std::wstring wideOf(const std::filesystem::path& path) {
    const std::u32string text = path.u32string();
    return {text.begin(), text.end()};
}

} // namespace TestSupport
