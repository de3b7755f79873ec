#pragma once

#include "Source.h"
#include "Workspace.h"

#include <vector>

namespace Tolen::LanguageServer {

/// @p pSource with those of @p sources that declare names which it uses, those that it includes,
/// and those that these need in turn; in the order of @p sources, to which it belongs.
std::vector<SourcePtr> FindNeeded(const SourcePtr& pSource, const std::vector<SourcePtr>& sources,
                                  const Workspace& workspace);

} // namespace Tolen::LanguageServer
