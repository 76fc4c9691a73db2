#pragma once

#include "KestoMediaLib/EditableMedia.h"
#include "KestoMediaLib/ValueAttribute.h"
#include "platform/KestoMediaCallout.h"

#include <map>
#include <string>
#include <vector>

namespace KestoMediaLib {

/// A drawing of kind, shape, style and parameters.
class KESTO_EXPORT VectorDrawing final : public VectorNode {
public:
    using Params = std::map<std::string, VectorNodeParam>;

    VectorDrawing(std::string kind, std::string shape, std::string style, Params params);

    std::string kind() const override { return drawingKind; }
    boost::shared_ptr<const Attribute<std::string>> shapeAttribute() const override { return shape; }
    boost::shared_ptr<const Attribute<std::string>> styleAttribute() const override { return style; }
    std::optional<VectorNodeParam> param(const std::string& name) const override;

private:
    std::string drawingKind;
    boost::shared_ptr<const ValueAttribute<std::string>> shape;
    boost::shared_ptr<const ValueAttribute<std::string>> style;
    Params named;
};

class KESTO_EXPORT EdgeModifications final : public EdgeModificationStore {
public:
    void add(EdgeModification modification);

    std::vector<EdgeModification> modifications(const std::string& name) const override;
    SafeRational time(const std::string& name) const override;

private:
    std::vector<EdgeModification> records;
};

/// `scale()` is the scale of the placement.
class KESTO_EXPORT CalloutMedia final : public VisualMediaOf<Callout> {
public:
    /// `drawing` may be empty.
    explicit CalloutMedia(boost::shared_ptr<const VectorNode> drawing);
    /// A copy with a drawing attribute of its own.
    CalloutMedia(const CalloutMedia& other);

    void setDrawing(boost::shared_ptr<const VectorNode> drawing);
    void addEdgeModification(EdgeModification modification);

    boost::shared_ptr<const Attribute<boost::shared_ptr<const VectorNode>>> vectorNode() const override;
    const VectorParam& scale() const override { return placement().scale; }
    const EdgeModificationStore& edgeModifications() const override { return edges; }

    void accept(ConstMediaDispatcher& dispatcher) const override;
    boost::shared_ptr<Media> clone() const override;

private:
    boost::shared_ptr<ValueAttribute<boost::shared_ptr<const VectorNode>>> node;
    EdgeModifications edges;
};

} // namespace KestoMediaLib
