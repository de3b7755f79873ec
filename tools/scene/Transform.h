#pragma once

#include "scene/JsonNode.h"

#include "TolenCore/Matrix.h"

namespace Tolen::Scene {

/// Reads a list of steps such as {"translate": [0, 1, 0]}, of which the first one acts first.
/// @throws SceneError
Matrix44f ReadTransform(const JsonNode& node);

} // namespace Tolen::Scene
