#pragma once

#include <string>
#include <string_view>

namespace SystemBackend {

/// UTF-8 to UTF-32; bytes that are no character become U+FFFD.
std::wstring toWide(std::string_view text);

/// `buffer` has room for the text and a terminator.
void copyWithTerminator(std::wstring_view text, wchar_t* buffer);

} // namespace SystemBackend
