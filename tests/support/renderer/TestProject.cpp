#include "support/renderer/TestProject.h"

#include <boost/make_shared.hpp>

namespace TestSupport {

namespace {

class FixedLength final : public KestoMediaLib::Attribute<float> {
public:
    explicit FixedLength(float pixels)
        : length(pixels) {}
    float value() const override { return length; }

private:
    float length;
};

class EmptyMixer final : public KestoMediaLib::Mixer {
public:
    std::vector<boost::shared_ptr<const KestoMediaLib::Track>> tracks() const override { return {}; }
};

class BareTimeline final : public KestoMediaLib::Timeline {
public:
    BareTimeline(float canvasWidth, float canvasHeight)
        : width(boost::make_shared<FixedLength>(canvasWidth))
        , height(boost::make_shared<FixedLength>(canvasHeight)) {}

    boost::shared_ptr<const KestoMediaLib::Attribute<float>> attributeWidth() const override { return width; }
    boost::shared_ptr<const KestoMediaLib::Attribute<float>> attributeHeight() const override {
        return height;
    }
    boost::shared_ptr<const KestoMediaLib::Mixer> mixer() const override { return bareMixer; }

private:
    boost::shared_ptr<const KestoMediaLib::Mixer> bareMixer = boost::make_shared<EmptyMixer>();
    boost::shared_ptr<const KestoMediaLib::Attribute<float>> width;
    boost::shared_ptr<const KestoMediaLib::Attribute<float>> height;
};

} // namespace

TestProject::TestProject(float canvasWidth, float canvasHeight,
                         const boost::rational<unsigned long>& frameRate)
    : script(boost::make_shared<RenderScript>())
    , canvas(boost::make_shared<BareTimeline>(canvasWidth, canvasHeight))
    , rate(frameRate) {}

void TestProject::executeCommand(const boost::shared_ptr<KestoMediaLib::Command>& command) {
    command->execute();
}

boost::shared_ptr<TestProject> makeTestProject(float canvasWidth, float canvasHeight,
                                               const boost::rational<unsigned long>& frameRate) {
    return boost::make_shared<TestProject>(canvasWidth, canvasHeight, frameRate);
}

boost::shared_ptr<const KestoMediaLib::Media> makeTestMedia() {
    return boost::make_shared<TestMedia>();
}

} // namespace TestSupport
