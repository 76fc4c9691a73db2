#include "KestoRenderLib/CalloutModule.h"

#include "KestoRenderLib/RenderModules.h"

namespace KestoRenderLib {

DrawCallout* drawCalloutFunction() {
    static DrawCallout* const function =
        reinterpret_cast<DrawCallout*>(renderModuleFunction(L"kesto_callout.so", drawCalloutName));
    return function;
}

} // namespace KestoRenderLib
