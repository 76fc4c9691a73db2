#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace StorageBackend {

/// UTF-32 to UTF-16; empty for a name of no or more than 31 units, or one with a character that is none.
std::optional<std::u16string> toElementName(std::wstring_view name);
/// What stands in a file. A surrogate without its other half stays as it is.
std::wstring toWideName(std::u16string_view name);

/// Names of new elements have none of / \ : and ! ([MS-CFB] 2.6.1).
bool isAllowedForNewElements(std::u16string_view name);

/// The order of the directory trees: by length, then by units in upper case ([MS-CFB] 2.6.4). Names that are
/// equal in it are the same name.
int compareNames(std::u16string_view left, std::u16string_view right);

} // namespace StorageBackend
