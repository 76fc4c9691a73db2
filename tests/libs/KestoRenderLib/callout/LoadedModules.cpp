#include "KestoMediaLib/CalloutMedia.h"
#include "platform/CalloutDrawer.h"

#include <boost/make_shared.hpp>

#include <fstream>
#include <iostream>
#include <string>

// Draws a callout without a drawing and then a rectangle, and tells after each whether the module and Pango
// are loaded.

namespace {

bool isMapped(const std::string& part) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find(part) != std::string::npos)
            return true;
    return false;
}

bool isDrawn(boost::shared_ptr<const KestoMediaLib::VectorNode> drawing) {
    const auto callout = boost::make_shared<KestoMediaLib::CalloutMedia>(std::move(drawing));
    callout->setExtent({20, 10});
    KestoRenderLib::CalloutDrawer drawer(callout, {}, /*editing=*/false);
    return drawer.GenerateOverlay({20, 10}, {1, 1}, true, true) != nullptr;
}

void tell(bool drawn) {
    std::cout << (drawn ? "drawn " : "nothing ") << isMapped("kesto_callout.so") << isMapped("libpango")
              << '\n';
}

} // namespace

int main() {
    tell(isDrawn(nullptr));
    tell(isDrawn(boost::make_shared<KestoMediaLib::VectorDrawing>("remix", "rectangle", "plain",
                                                                  KestoMediaLib::VectorDrawing::Params())));
    return 0;
}
