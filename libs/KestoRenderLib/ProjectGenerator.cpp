#include "platform/KestoRenderProject.h"

namespace KestoRenderLib {

// FIXME: no kind of project can be read yet.
boost::shared_ptr<KestoMediaLib::Project>
ProjectGenerator::CreateProjectFromMediaOrQrlprojFullPathName(const std::string&) {
    return {};
}

boost::shared_ptr<KestoMediaLib::Project>
ProjectGenerator::CreateProjectFromQrlprojJsonContent(const std::string&, const std::string&) {
    return {};
}

boost::shared_ptr<KestoMediaLib::Project>
ProjectGenerator::Create_MediaProject(const std::string&, const boost::rational<unsigned long>&) {
    return {};
}

} // namespace KestoRenderLib
