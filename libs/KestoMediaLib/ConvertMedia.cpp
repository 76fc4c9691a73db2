#include "platform/KestoMediaModel.h"

#include <boost/pointer_cast.hpp>

#include <utility>

namespace KestoMediaLibUtl {

ConvertMedia::ConvertMedia(boost::shared_ptr<const KestoMediaLib::Media> source)
    : media(std::move(source)) {}

boost::shared_ptr<const KestoMediaLib::Callout> ConvertMedia::GetCallout() const {
    return boost::dynamic_pointer_cast<const KestoMediaLib::Callout>(media);
}

} // namespace KestoMediaLibUtl
