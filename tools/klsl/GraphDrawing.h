#pragma once

#include <string>

namespace Tolen::Scene {
struct SceneDescription;
class SceneSession;
} // namespace Tolen::Scene

namespace Tolen::Klsl {

/// The graph of a scene in the DOT language: a table for each shader with its inputs, their values
/// and, at each interface input, an edge from the shader that is connected to it; effects at the
/// end. Shaders that nobody made, the defaults of inputs, are shown lighter.
std::string DrawGraph(const Scene::SceneDescription& description, Scene::SceneSession& session);

} // namespace Tolen::Klsl
