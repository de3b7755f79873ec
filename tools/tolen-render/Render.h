#pragma once

namespace Tolen::Render {

struct Options;

/// Renders what the command line asks for.
/// @throws SceneError, std::runtime_error
void RenderScene(const Options& options);

} // namespace Tolen::Render
