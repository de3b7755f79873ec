#pragma once

#include "TolenCore/Export.h"

#include <string>

namespace Tolen::Effects {

class IGraph;
class IMgrEffects;
class InterfaceDefinition;
class ReferencePrototypeInterface;

/// An interface of a shader library: methods without bodies that classes promise to have.
///
/// Owned by the library that declares it; lives until the library shuts down.
class TOLEN_EXPORT IPrototypeInterface {
public:
    virtual ~IPrototypeInterface() = default;

    /// The interface as @p graph sees it, made at the first call for that graph. It dies with the
    /// graph or with the prototype, whichever goes first.
    /// @return borrowed; null when it can't be made
    virtual ReferencePrototypeInterface* GetReference(IGraph* graph) = 0;

    /// The declaration, borrowed from the library; null before initialisation.
    virtual const InterfaceDefinition* GetDefinition() const = 0;

    /// "__", the interface's name, "_" and @p method, also for a method that isn't declared.
    virtual std::string GetMethodNameMangled(const std::string& method) = 0;

    /// Whether the interface declares a method of this name, whatever its parameters.
    virtual bool HasMethod(const std::string& method) const = 0;

    /// The manager whose library declares the interface; null before initialisation and after the
    /// shutdown.
    virtual IMgrEffects* GetMgrEffects() const = 0;
};

} // namespace Tolen::Effects
