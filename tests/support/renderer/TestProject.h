#pragma once

#include "platform/KestoMediaModel.h"
#include "support/renderer/RenderScript.h"

#include <boost/rational.hpp>
#include <boost/shared_ptr.hpp>

namespace TestSupport {

/// A project without content, whose frames are what its script says.
class TestProject final : public KestoMediaLib::Project, private KestoMediaLib::ICommandInterface {
public:
    TestProject(float canvasWidth, float canvasHeight,
                const boost::rational<unsigned long>& frameRate = boost::rational<unsigned long>(30));

    boost::shared_ptr<const KestoMediaLib::Timeline> timeline() const override { return canvas; }
    boost::rational<unsigned long> frameRate() const override { return rate; }
    KestoMediaLib::ICommandInterface& commandInterface() override { return *this; }

    const boost::shared_ptr<RenderScript> script;

private:
    void executeCommand(const boost::shared_ptr<KestoMediaLib::Command>& command) override;

    boost::shared_ptr<const KestoMediaLib::Timeline> canvas;
    boost::rational<unsigned long> rate;
};

/// A media of no kind, to be told apart from others by its address.
class TestMedia final : public KestoMediaLib::Media {
public:
    void accept(KestoMediaLib::ConstMediaDispatcher&) const override {}
    boost::weak_ptr<const KestoMediaLib::Track> parentTrack() const override { return {}; }
};

boost::shared_ptr<TestProject>
makeTestProject(float canvasWidth, float canvasHeight,
                const boost::rational<unsigned long>& frameRate = boost::rational<unsigned long>(30));
boost::shared_ptr<const KestoMediaLib::Media> makeTestMedia();

} // namespace TestSupport
