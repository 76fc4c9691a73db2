#include "platform/KestoRenderProject.h"

#include <utility>

namespace KestoRenderLib {

SimpleMetaBitmap::SimpleMetaBitmap(boost::shared_ptr<MetaBitmap> bitmap)
    : frame(std::move(bitmap)) {}

} // namespace KestoRenderLib
