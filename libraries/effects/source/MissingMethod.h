#pragma once

#include <string>

namespace Tolen::Effects {

class IMgrEffects;
struct LocationRange;

/// Tell, in the manager's current result, that the interface or class @p owner doesn't have the
/// method that the code at @p place needs. @return false
/// @{
bool ReportMissingMethodOfInterface(IMgrEffects* manager, const LocationRange& place,
                                    const std::string& owner, const std::string& method);
bool ReportMissingMethodOfClass(IMgrEffects* manager, const LocationRange& place,
                                const std::string& owner, const std::string& method);
/// @}

} // namespace Tolen::Effects
