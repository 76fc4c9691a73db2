#include "KestoRenderLib/CalloutLook.h"
#include "KestoRenderLib/callout/CalloutPainter.h"

#include "platform/Export.h"

#include <new>

extern "C" KESTO_EXPORT KestoRenderLib::DrawCallout kestoDrawCallout;

bool kestoDrawCallout(const KestoRenderLib::CalloutPaint& paint) {
    try {
        return KestoRenderLib::paintCallout(paint);
    } catch (const std::bad_alloc&) {
        return false;
    }
}
