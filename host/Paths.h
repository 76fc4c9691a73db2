#pragma once

#include <optional>
#include <string>

namespace KestoHost {

/// `path` as the library takes it; nothing when its bytes are not UTF-8 (RFC 3629).
std::optional<std::wstring> wideFromUtf8(const std::string& path);

// What is no character becomes U+FFFD.

std::wstring wideWithReplacements(const std::string& text);
std::string utf8FromWide(const std::wstring& text);

/// One text for all spellings of a name that the library takes for one: either slash, and any case of ASCII
/// letters. Links are followed as far as the path exists. The text itself names no file.
std::string forgivenName(std::string path);

/// Whether writing `output` would replace what is read as `input`: links count, and so do the spellings that
/// the library forgives, as far as they differ in slashes and the case of ASCII letters. Not without an
/// input.
bool isSameFile(const std::string& input, const std::string& output);

/// Why no file could be made at `output`, in words that follow a colon; empty when nothing speaks against it.
std::string whyNotWritable(const std::string& output);

} // namespace KestoHost
