#pragma once

#include <string>

/// Takes the member of a `.plumex` container off a path: 0 when there was one, else 1, with the whole text in
/// `diskPath` and `memberName` as it was. What comes out is in lower case.
int SplitContainerPath(const std::wstring& path, std::wstring& diskPath, std::wstring& memberName);

/// 1 when the file, or the member of a container, is there; else 0. Any thread.
int MemberExists(const std::wstring& path);
