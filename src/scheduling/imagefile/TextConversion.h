#pragma once

#include <string>
#include <string_view>

namespace KestoThumbnailer {

// Text between the narrow and the wide calls of the platform, and letter case for names of file kinds. Any
// thread. What is not a character becomes U+FFFD.

std::wstring WideFromUtf8(std::string_view text);
std::string Utf8FromWide(std::wstring_view text);

// ASCII letters alone, so that no locale decides what a file extension means.

std::wstring UpperAscii(std::wstring text);
std::wstring LowerAscii(std::wstring text);

} // namespace KestoThumbnailer
