#pragma once

#include "platform/KestoMediaModel.h"
#include "platform/Threading.h"

#include <boost/rational.hpp>
#include <boost/shared_ptr.hpp>

#include <functional>
#include <string>
#include <vector>

namespace TestSupport {

enum class ProjectOrigin { File, JsonText, MediaFile };

/// One call of `KestoRenderLib::ProjectGenerator`.
struct ProjectRequest {
    ProjectOrigin origin = ProjectOrigin::File;
    std::string text;                            ///< the path, or the JSON
    std::string basePath;                        ///< of `JsonText`
    boost::rational<unsigned long> frameRate{0}; ///< of `MediaFile`
};

/// What the project generator answers with as long as this lives; without one, with no project at all. One at
/// a time. Any thread may ask for projects.
class GeneratedProjects {
public:
    using Maker = std::function<boost::shared_ptr<KestoMediaLib::Project>(const ProjectRequest&)>;

    /// `maker` is called on the thread that asks, with no lock held.
    explicit GeneratedProjects(Maker maker);
    ~GeneratedProjects();
    GeneratedProjects(const GeneratedProjects&) = delete;
    GeneratedProjects& operator=(const GeneratedProjects&) = delete;

    std::vector<ProjectRequest> requests() const;

    struct Answers;

private:
    boost::shared_ptr<Answers> answers;
};

} // namespace TestSupport
