#include "KestoMediaLib/CalloutMedia.h"

#include "platform/KestoMediaDispatcher.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iterator>
#include <utility>

namespace KestoMediaLib {

VectorDrawing::VectorDrawing(std::string kind, std::string shapeName, std::string styleName, Params params)
    : drawingKind(std::move(kind))
    , shape(boost::make_shared<ValueAttribute<std::string>>(std::move(shapeName)))
    , style(boost::make_shared<ValueAttribute<std::string>>(std::move(styleName)))
    , named(std::move(params)) {}

std::optional<VectorNodeParam> VectorDrawing::param(const std::string& name) const {
    const auto found = named.find(name);
    return found == named.end() ? std::nullopt : std::optional(found->second);
}

void EdgeModifications::add(EdgeModification modification) {
    records.push_back(std::move(modification));
}

std::vector<EdgeModification> EdgeModifications::modifications(const std::string& name) const {
    std::vector<EdgeModification> found;
    std::copy_if(records.begin(), records.end(), std::back_inserter(found),
                 [&name](const EdgeModification& record) { return record.name == name; });
    return found;
}

SafeRational EdgeModifications::time(const std::string& name) const {
    const auto first = std::find_if(records.begin(), records.end(), [&name](const EdgeModification& record) {
        return record.name == name && record.edge == EdgeModification::Edge::Start;
    });
    return first == records.end() ? SafeRational(0) : first->duration;
}

CalloutMedia::CalloutMedia(boost::shared_ptr<const VectorNode> drawing)
    : node(boost::make_shared<ValueAttribute<boost::shared_ptr<const VectorNode>>>(std::move(drawing))) {}

CalloutMedia::CalloutMedia(const CalloutMedia& other)
    : VisualMediaOf(other)
    , node(boost::make_shared<ValueAttribute<boost::shared_ptr<const VectorNode>>>(other.node->value()))
    , edges(other.edges) {}

void CalloutMedia::setDrawing(boost::shared_ptr<const VectorNode> drawing) {
    node->setValue(std::move(drawing));
}

void CalloutMedia::addEdgeModification(EdgeModification modification) {
    edges.add(std::move(modification));
}

boost::shared_ptr<const Attribute<boost::shared_ptr<const VectorNode>>> CalloutMedia::vectorNode() const {
    return node;
}

void CalloutMedia::accept(ConstMediaDispatcher& dispatcher) const {
    dispatcher.visitCallout(*this);
}

boost::shared_ptr<Media> CalloutMedia::clone() const {
    return boost::make_shared<CalloutMedia>(*this);
}

} // namespace KestoMediaLib
