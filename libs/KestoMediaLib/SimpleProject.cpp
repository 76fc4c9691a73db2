#include "KestoMediaLib/ProjectModel.h"

#include <boost/make_shared.hpp>

namespace KestoMediaLib {

SimpleProject::SimpleProject(const boost::rational<unsigned long>& frameRate)
    : shared(boost::make_shared<ProjectModel>(frameRate)) {}

void SimpleProject::setCanvasWidth(double width) {
    shared->editableTimeline()->setWidth(static_cast<float>(width));
}

void SimpleProject::setCanvasHeight(double height) {
    shared->editableTimeline()->setHeight(static_cast<float>(height));
}

boost::shared_ptr<Project> SimpleProject::project() const {
    return shared;
}

} // namespace KestoMediaLib
