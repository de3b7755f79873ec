#pragma once

#include <string>
#include <vector>

namespace Tolen::Effects {

class IGraph;
class IPrototypeInterface;
class ReferencePrototypeShader;

/// An interface in a graph: the classes there that implement it. Made and owned by the interface's
/// prototype.
class ReferencePrototypeInterface {
public:
    ReferencePrototypeInterface() = default;
    ~ReferencePrototypeInterface();
    ReferencePrototypeInterface(const ReferencePrototypeInterface&) = delete;
    ReferencePrototypeInterface& operator=(const ReferencePrototypeInterface&) = delete;

    /// @param prototype, graph borrowed
    bool Init(IPrototypeInterface* prototype, IGraph* graph);
    void Shutdown();

    /// Enters a class, borrowed. Removing one that isn't there prints a line and answers false.
    bool AddReferencePrototypeShader(ReferencePrototypeShader* reference);
    bool RemoveReferencePrototypeShader(ReferencePrototypeShader* reference);

    std::string GetMethodNameMangled(const std::string& method) const;
    IGraph* GetGraph() const { return _pGraph; }

private:
    IPrototypeInterface* _pPrototypeInterface = nullptr;        ///< borrowed, owns this object
    IGraph* _pGraph = nullptr;                                  ///< borrowed
    std::vector<ReferencePrototypeShader*> _referencePrototypeShaders; ///< borrowed
};

} // namespace Tolen::Effects
