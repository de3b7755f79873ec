#include "MissingMethod.h"

#include "LocationText.h"
#include "MgrEffectsImpl.h"

namespace Tolen::Effects {

namespace {

bool _Report(IMgrEffects* manager, const LocationRange& place, const char* kind,
             const std::string& owner, const std::string& method) {
    manager->GetImplementation()->AddResultMessage("%s: %s \"%s\" has no method named \"%s\".\n",
                                                   LocationText(place).c_str(), kind,
                                                   owner.c_str(), method.c_str());
    return false;
}

} // namespace

bool ReportMissingMethodOfInterface(IMgrEffects* manager, const LocationRange& place,
                                    const std::string& owner, const std::string& method) {
    return _Report(manager, place, "Interface", owner, method);
}

bool ReportMissingMethodOfClass(IMgrEffects* manager, const LocationRange& place,
                                const std::string& owner, const std::string& method) {
    return _Report(manager, place, "Class", owner, method);
}

} // namespace Tolen::Effects
