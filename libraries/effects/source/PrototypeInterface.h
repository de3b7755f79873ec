#pragma once

#include "TolenEffects/IPrototypeInterface.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/FastDelegate.h"

#include <map>
#include <memory>

namespace Tolen::Effects {

class Library;

/// The run-time face of one interface declaration.
class PrototypeInterface : public IPrototypeInterface, public CreationOrder {
public:
    PrototypeInterface();
    ~PrototypeInterface() override;
    PrototypeInterface(const PrototypeInterface&) = delete;
    PrototypeInterface& operator=(const PrototypeInterface&) = delete;

    /// @param library, definition borrowed @return true
    bool Init(Library* library, InterfaceDefinition* definition);
    /// Destroys all references. Safe to repeat.
    void Shutdown();

    ReferencePrototypeInterface* GetReference(IGraph* graph) override;
    /// The reference for @p graph if it has been made, otherwise null.
    ReferencePrototypeInterface* FindReference(IGraph* graph) const;
    const InterfaceDefinition* GetDefinition() const override { return _pDefinition; }
    std::string GetMethodNameMangled(const std::string& method) override;
    bool HasMethod(const std::string& method) const override;
    IMgrEffects* GetMgrEffects() const override;

private:
    std::unique_ptr<ReferencePrototypeInterface> _CreateReference(IGraph* graph);
    bool _OnDeleteGraph(IGraph* graph);

    Library* _pLibrary = nullptr;                ///< borrowed
    InterfaceDefinition* _pDefinition = nullptr; ///< borrowed from the library's module
    std::map<IGraph*, std::unique_ptr<ReferencePrototypeInterface>> _references;
};

} // namespace Tolen::Effects
