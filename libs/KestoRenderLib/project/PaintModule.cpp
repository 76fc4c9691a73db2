#include "KestoRenderLib/project/PaintModule.h"

#include "KestoRenderLib/RenderModules.h"

namespace KestoRenderLib {

PaintThroughAffine* paintThroughAffineFunction() {
    static PaintThroughAffine* const function = reinterpret_cast<PaintThroughAffine*>(
        renderModuleFunction(L"kesto_paint.so", paintThroughAffineName));
    return function;
}

} // namespace KestoRenderLib
