#include "platform/KestoMediaModel.h"

#include <utility>

namespace KestoMediaLibUtl {

ConvertMedia::ConvertMedia(boost::shared_ptr<const KestoMediaLib::Media> source)
    : media(std::move(source)) {}

boost::shared_ptr<const KestoMediaLib::Callout> ConvertMedia::GetCallout() const {
    KestoMediaLib::MediaTypeFromMediaDispatcher type;
    if (media)
        media->accept(type);
    return type.GetCallout();
}

} // namespace KestoMediaLibUtl
