#pragma once

#include <cstdint>
#include <string>

/// Which of its kind a track of a `.mosk` file is, from 0: `path` names it as a member, as in
/// `name.mosk!Svideo3.mp4`, by its place among all tracks. 0 for anything else. Lets through what reading the
/// file throws.
std::int32_t MoskStreamOrdinal(const std::wstring& path);
