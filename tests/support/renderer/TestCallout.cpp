#include "support/renderer/TestCallout.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

namespace TestSupport {

namespace {

using KestoMediaLib::Attribute;
using KestoMediaLib::SafeRational;
using KestoMediaLib::VectorNode;

template <class T>
class AskedValue final : public Attribute<T> {
public:
    explicit AskedValue(std::function<T()> answer)
        : ask(std::move(answer)) {}
    T value() const override { return ask(); }

private:
    std::function<T()> ask;
};

class TestDrawing final : public VectorNode {
public:
    explicit TestDrawing(const CalloutLook& drawn)
        : look(drawn) {}

    std::string kind() const override { return look.kind; }
    boost::shared_ptr<const Attribute<std::string>> shapeAttribute() const override {
        return text(look.changingShape ? look.changingShape : [shape = look.shape] { return shape; });
    }
    boost::shared_ptr<const Attribute<std::string>> styleAttribute() const override {
        return text([style = look.style] { return style; });
    }
    std::optional<KestoMediaLib::VectorNodeParam> param(const std::string& name) const override {
        const auto found = look.params.find(name);
        if (found == look.params.end())
            return std::nullopt;
        return found->second;
    }

private:
    boost::shared_ptr<const Attribute<std::string>> text(const std::function<std::string()>& answer) const {
        if (!look.hasAttributes)
            return {};
        return boost::make_shared<AskedValue<std::string>>(answer);
    }

    CalloutLook look;
};

class TestCallout final : public KestoMediaLib::Callout,
                          private KestoMediaLib::VectorParam,
                          private KestoMediaLib::EdgeModificationStore {
    class Constant final : public KestoMediaLib::AnimationParam<double> {
    public:
        explicit Constant(double constant)
            : held(constant) {}
        double valueAt(const KestoMediaLib::RationalTime&) const override { return held; }

    private:
        double held;
    };

public:
    explicit TestCallout(const CalloutLook& drawn)
        : look(drawn)
        , horizontalScale(drawn.horizontalScale)
        , verticalScale(drawn.verticalScale) {}

    void accept(KestoMediaLib::ConstMediaDispatcher& dispatcher) const override {
        dispatcher.visitCallout(*this);
    }
    boost::weak_ptr<const KestoMediaLib::Track> parentTrack() const override { return {}; }
    float width(const SafeRational&) const override { return look.width; }
    float height(const SafeRational&) const override { return look.height; }

    boost::shared_ptr<const Attribute<boost::shared_ptr<const VectorNode>>> vectorNode() const override {
        if (!look.hasAttributes && !look.hasDrawing)
            return {};
        boost::shared_ptr<const VectorNode> drawing;
        if (look.hasDrawing)
            drawing = boost::make_shared<TestDrawing>(look);
        return boost::make_shared<AskedValue<boost::shared_ptr<const VectorNode>>>(
            [drawing] { return drawing; });
    }
    const KestoMediaLib::VectorParam& scale() const override { return *this; }
    const KestoMediaLib::EdgeModificationStore& edgeModifications() const override { return *this; }

private:
    const KestoMediaLib::AnimationParam<double>& at(int component) const override {
        return component == 0 ? horizontalScale : verticalScale;
    }

    std::vector<KestoMediaLib::EdgeModification> modifications(const std::string& name) const override {
        std::vector<KestoMediaLib::EdgeModification> named;
        std::copy_if(look.edges.begin(), look.edges.end(), std::back_inserter(named),
                     [&](const auto& edge) { return edge.name == name; });
        return named;
    }
    SafeRational time(const std::string& name) const override {
        const auto named = modifications(name);
        return named.empty() ? SafeRational() : named.front().duration;
    }

    CalloutLook look;
    Constant horizontalScale;
    Constant verticalScale;
};

} // namespace

boost::shared_ptr<const KestoMediaLib::Callout> makeTestCallout(const CalloutLook& look) {
    return boost::make_shared<TestCallout>(look);
}

} // namespace TestSupport
