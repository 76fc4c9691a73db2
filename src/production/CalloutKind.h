#pragma once

#include "platform/KestoMediaModel.h"
#include "platform/WinTypes.h"

#include <boost/shared_ptr.hpp>

#include <string>

namespace KestoThumbnailer {

// What a callout draws, by the words in its drawing; letter case counts. All false for an empty pointer and
// for a callout without a drawing.

bool IsRemixArrow(const boost::shared_ptr<const KestoMediaLib::Callout>& callout);
bool IsRemixText(const boost::shared_ptr<const KestoMediaLib::Callout>& callout);
bool IsTypeWinLine(const boost::shared_ptr<const KestoMediaLib::Callout>& callout);
bool IsTypeWinSVG(const boost::shared_ptr<const KestoMediaLib::Callout>& callout);
/// Of any kind.
bool IsBoldTextArrow(const boost::shared_ptr<const KestoMediaLib::Callout>& callout);

/// Whether the drawing has a whole number of that name.
bool HasDrawParam(const boost::shared_ptr<const KestoMediaLib::Callout>& callout, const std::string& name);

/// When a callout that draws itself is done, in model time from its start; 0 for one that does not.
__int64 CalloutFadeTime(const boost::shared_ptr<const KestoMediaLib::Callout>& callout);

} // namespace KestoThumbnailer
