#pragma once

#include "KestoMediaLib/CalloutMedia.h"
#include "KestoMediaLib/FileMedia.h"
#include "KestoMediaLib/projectfile/ReadContext.h"

namespace KestoMediaLib::ProjectReading {

constexpr double largestCanvas = 16384;

/// The members "file" and "stream".
SourceFile readSourceFile(ObjectReader& object, ReadContext& context);

/// The members of one placement.
Placement readPlacement(ObjectReader& object, ReadContext& context);

/// The members "width" and "height".
struct ReadExtent {
    std::optional<KeyFramedParam> width;
    std::optional<KeyFramedParam> height;
};
ReadExtent readExtent(ObjectReader& object, ReadContext& context);

/// The members "drawing" and "edges".
boost::shared_ptr<CalloutMedia> readCallout(ObjectReader& object, ReadContext& context);

} // namespace KestoMediaLib::ProjectReading
