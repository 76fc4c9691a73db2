#include "support/renderer/GeneratedProjects.h"

#include "platform/KestoRenderProject.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace TestSupport {

struct GeneratedProjects::Answers {
    Maker maker;
    mutable Mutex lock;
    std::vector<ProjectRequest> requests KESTO_GUARDED_BY(lock);
};

namespace {

Mutex currentLock;
boost::shared_ptr<GeneratedProjects::Answers> current KESTO_GUARDED_BY(currentLock);

boost::shared_ptr<GeneratedProjects::Answers> currentAnswers() {
    const MutexLock held(currentLock);
    return current;
}

boost::shared_ptr<KestoMediaLib::Project> answer(const ProjectRequest& request) {
    const auto answers = currentAnswers();
    if (!answers)
        return {};
    {
        const MutexLock held(answers->lock);
        answers->requests.push_back(request);
    }
    return answers->maker ? answers->maker(request) : boost::shared_ptr<KestoMediaLib::Project>();
}

} // namespace

GeneratedProjects::GeneratedProjects(Maker maker)
    : answers(boost::make_shared<Answers>()) {
    answers->maker = std::move(maker);
    const MutexLock held(currentLock);
    current = answers;
}

GeneratedProjects::~GeneratedProjects() {
    const MutexLock held(currentLock);
    current.reset();
}

std::vector<ProjectRequest> GeneratedProjects::requests() const {
    const MutexLock held(answers->lock);
    return answers->requests;
}

} // namespace TestSupport

namespace KestoRenderLib {

using TestSupport::ProjectOrigin;

boost::shared_ptr<KestoMediaLib::Project>
ProjectGenerator::CreateProjectFromMediaOrQrlprojFullPathName(const std::string& path) {
    return TestSupport::answer({.origin = ProjectOrigin::File, .text = path, .basePath = {}});
}

boost::shared_ptr<KestoMediaLib::Project>
ProjectGenerator::CreateProjectFromQrlprojJsonContent(const std::string& json, const std::string& basePath) {
    return TestSupport::answer({.origin = ProjectOrigin::JsonText, .text = json, .basePath = basePath});
}

boost::shared_ptr<KestoMediaLib::Project>
ProjectGenerator::Create_MediaProject(const std::string& path,
                                      const boost::rational<unsigned long>& frameRate) {
    return TestSupport::answer(
        {.origin = ProjectOrigin::MediaFile, .text = path, .basePath = {}, .frameRate = frameRate});
}

} // namespace KestoRenderLib
