#pragma once

#include "platform/KestoMedia.h"
#include "platform/KestoMediaAnimation.h"
#include "platform/KestoMediaAttribute.h"

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace KestoMediaLib {

/// A named value of a drawing. Whole numbers and fractions are different types.
using VectorNodeParam = std::variant<bool, __int64, double, std::string>;

/// What a callout draws: a kind, a shape within the kind, a style of the shape, and named parameters.
class KESTO_EXPORT VectorNode : public KestoObject {
public:
    virtual std::string kind() const = 0;
    virtual boost::shared_ptr<const Attribute<std::string>> shapeAttribute() const = 0;
    virtual boost::shared_ptr<const Attribute<std::string>> styleAttribute() const = 0;

    /// Names are compared with letter case.
    virtual std::optional<VectorNodeParam> param(const std::string& name) const = 0;
};

/// Something that happens to a media from its start on, or up to its end.
struct EdgeModification {
    enum class Edge { Start, End };

    std::string name;
    Edge edge = Edge::Start;
    SafeRational duration; ///< in seconds
};

class KESTO_EXPORT EdgeModificationStore : public KestoObject {
public:
    /// In the order in which they were added; empty if there is none of that name.
    virtual std::vector<EdgeModification> modifications(const std::string& name) const = 0;
    /// The moment, in seconds from the media's start, when the first modification of that name at the start
    /// is done: its duration. 0 if there is none.
    virtual SafeRational time(const std::string& name) const = 0;
};

/// A drawn annotation: an arrow, a text, a shape.
class KESTO_EXPORT Callout : public VisualMedia {
public:
    /// The drawing, which may be changed for another; either pointer may be empty.
    virtual boost::shared_ptr<const Attribute<boost::shared_ptr<const VectorNode>>> vectorNode() const = 0;
    /// Two components, 1 for the natural size. The result lives as long as the callout.
    virtual const VectorParam& scale() const = 0;
    virtual const EdgeModificationStore& edgeModifications() const = 0;
};

} // namespace KestoMediaLib
