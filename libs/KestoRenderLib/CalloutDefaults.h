#pragma once

#include "KestoRenderLib/CalloutLook.h"

#include <cstdint>

namespace KestoRenderLib {

/// A look of that shape, bold or plain, in a box of that size, before any parameter is read.
CalloutLook defaultLook(CalloutLook::Shape shape, bool isBold, double width, double height);

/// The border that goes with a fill, and the text that can be read on it.
std::uint32_t borderFor(std::uint32_t fill);
std::uint32_t textFor(std::uint32_t fill);

/// How wide a border is that has a colour alone.
double usualBorder(bool isBold, double width, double height);

} // namespace KestoRenderLib
