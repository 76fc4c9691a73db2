#pragma once

#include "platform/KestoMediaCallout.h"

namespace KestoMediaLibTools {

/// Whether `node` has a parameter of that name and of exactly type `T`, one of those of `VectorNodeParam`. An
/// empty node has none.
template <class T>
bool hasVectorNodeParam(const boost::shared_ptr<const KestoMediaLib::VectorNode>& node,
                        const std::string& name) {
    if (!node)
        return false;
    const auto param = node->param(name);
    return param && std::holds_alternative<T>(*param);
}

} // namespace KestoMediaLibTools
