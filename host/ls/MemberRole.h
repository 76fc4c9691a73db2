#pragma once

#include "ls/ContainerContents.h"

namespace KestoHost {

/// What the name of a `.plumex` member tells of it. Names that are not those of recordings are data without a
/// role.
ContainerPart describeMember(const std::string& name);

} // namespace KestoHost
