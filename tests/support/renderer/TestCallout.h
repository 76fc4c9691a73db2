#pragma once

#include "platform/KestoMediaModel.h"

#include <boost/shared_ptr.hpp>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace TestSupport {

/// The words of a drawing, its parameters and its size, all of them constant. Without `hasDrawing` the
/// callout's attribute holds no drawing, without `hasAttributes` there are no attributes either.
struct CalloutLook {
    std::string kind = {};
    std::string shape = {};
    std::string style = {};
    std::map<std::string, KestoMediaLib::VectorNodeParam> params = {};
    float width = 300;
    float height = 300;
    double horizontalScale = 1;
    double verticalScale = 1;
    std::vector<KestoMediaLib::EdgeModification> edges = {};
    bool hasDrawing = true;
    bool hasAttributes = true;
    /// In place of `shape`, asked each time that the shape is.
    std::function<std::string()> changingShape = {};
};

boost::shared_ptr<const KestoMediaLib::Callout> makeTestCallout(const CalloutLook& look);

} // namespace TestSupport
