#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace TestSupport {

/// A movie's bytes, to be changed in its headers (ISO/IEC 14496-12).
class PatchedMovie {
public:
    explicit PatchedMovie(std::string content)
        : bytes(std::move(content)) {}

    const std::string& content() const { return bytes; }

    /// What follows an atom's type counts from 0.
    void setNumber(std::string_view atom, std::size_t place, std::uint32_t value) {
        const std::size_t start = typeOf(atom) + atom.size() + place;
        for (std::size_t i = 0; i < 4; ++i)
            bytes.at(start + i) = static_cast<char>(value >> (24 - 8 * i) & 0xFFU);
    }
    std::uint32_t number(std::string_view atom, std::size_t place) const {
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < 4; ++i)
            value = value << 8 | static_cast<unsigned char>(bytes.at(typeOf(atom) + atom.size() + place + i));
        return value;
    }

    /// To another type of four characters.
    void rename(std::string_view atom, std::string_view type) {
        bytes.replace(typeOf(atom), type.size(), type);
    }

    /// Of sample `sample`, from 0, of the first track.
    void setSampleSize(std::size_t sample, std::uint32_t size) { setNumber("stsz", 12 + 4 * sample, size); }

private:
    // Samples lie before the headers, and may hold anything.
    std::size_t typeOf(std::string_view atom) const {
        const std::size_t found = bytes.find(atom, bytes.rfind("moov"));
        if (found == std::string::npos)
            throw std::runtime_error("no atom " + std::string(atom));
        return found;
    }

    std::string bytes;
};

} // namespace TestSupport
