#pragma once

#include <stdexcept>
#include <string>

namespace Tolen::Scene {

/// A mistake in a scene or on the command line, with the place that it was found at.
///
/// Within this program a mistake ends the run, so it travels as an exception up to main.
class SceneError : public std::runtime_error {
public:
    /// @param place such as "/shaders/3/parameters/color"; may be empty
    SceneError(const std::string& place, const std::string& message)
        : std::runtime_error(place.empty() ? message : place + ": " + message) {}
};

} // namespace Tolen::Scene
