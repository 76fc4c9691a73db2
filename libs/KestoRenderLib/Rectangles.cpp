#include "platform/KestoRenderProject.h"

namespace KestoRenderLib {

KestoMediaLib::Rect<int> toKestoMLRectInt(const Size& size) {
    return {0, 0, size.width, size.height};
}

KestoMediaLib::Rect<double> toKestoMLRectDouble(const Rect& rect) {
    const double left = rect.left;
    const double top = rect.top;
    return {left, top, rect.right - left, rect.bottom - top};
}

} // namespace KestoRenderLib
