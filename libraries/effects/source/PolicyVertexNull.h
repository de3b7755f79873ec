#pragma once

#include "TolenCore/FastDelegate.h"

#include <string>

namespace Tolen {
class IKLProgram;
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IAttributeVertex;
class IEffect;
class IGraph;
class ShaderVertex;

/// The vertex side of effects that have no vertex stage: there is nothing to do.
class PolicyVertexNull {
public:
    bool Init(IEffect*, IKLProgram*) { return true; }
    bool InitGraph(IGraph*) { return true; }
    bool Compile(IEffect*) { return true; }
    void Shutdown() {}
    void SetName(const std::string&) {}
    ShaderVertex* GetShaderVertex() const { return nullptr; }

    bool VisitAttributes(FastDelegate2<const std::string&, IAttributeVertex*, bool>&) {
        return true;
    }
    bool AddListenerChangeAttribute(FastDelegate1<IEffect*, bool>&) { return true; }
    bool RemoveListenerChangeAttribute(FastDelegate1<IEffect*, bool>&) { return true; }
};

} // namespace Tolen::Effects
