#include "KestoMediaLib/PlainMedia.h"

#include "platform/KestoMediaDispatcher.h"

#include <boost/make_shared.hpp>

namespace KestoMediaLib {

void ColorMedia::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitColor(*this);
}

boost::shared_ptr<Media> ColorMedia::clone() const {
    return boost::make_shared<ColorMedia>(*this);
}

void PlaceholderMedia::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitPlaceholder(*this);
}

boost::shared_ptr<Media> PlaceholderMedia::clone() const {
    return boost::make_shared<PlaceholderMedia>(*this);
}

void GapMedia::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitGap(*this);
}

boost::shared_ptr<Media> GapMedia::clone() const {
    return boost::make_shared<GapMedia>(*this);
}

} // namespace KestoMediaLib
