#pragma once

#include "TolenEffects/IGraph.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/ListenerSet.h"

#include <memory>
#include <string>

namespace Tolen {
class IKLProgram;
} // namespace Tolen

namespace Tolen::Effects {

class IAttributeVertex;
class IEffect;
class ShaderVertex;

/// The vertex side of surface effects: it owns the generated vertex shader and feeds it with the
/// attributes that the graph's shaders ask for.
class PolicyVertexSurface : public CreationOrder {
public:
    PolicyVertexSurface();
    ~PolicyVertexSurface();
    PolicyVertexSurface(const PolicyVertexSurface&) = delete;
    PolicyVertexSurface& operator=(const PolicyVertexSurface&) = delete;

    /// @param effect, program borrowed
    bool Init(IEffect* effect, IKLProgram* program);
    /// Lets go of the graph before, if any, and listens to @p graph, borrowed; null only lets go.
    bool InitGraph(IGraph* graph);
    bool Compile(IEffect* effect);
    void Shutdown();
    void SetName(const std::string& name);
    ShaderVertex* GetShaderVertex() const { return _pVertex.get(); }

    bool VisitAttributes(FastDelegate2<const std::string&, IAttributeVertex*, bool>& visit);
    bool AddListenerChangeAttribute(FastDelegate1<IEffect*, bool>& listener);
    bool RemoveListenerChangeAttribute(FastDelegate1<IEffect*, bool>& listener);

private:
    bool _ReleaseGraph();
    bool _OnAddAttribute(IGraph::Attribute attribute);
    bool _OnRemoveAttribute(IGraph::Attribute attribute);
    bool _OnDeleteGraph(IGraph* graph);

    IEffect* _pEffect = nullptr; ///< borrowed
    IGraph* _pGraph = nullptr;   ///< borrowed, the one that is listened to
    std::unique_ptr<ShaderVertex> _pVertex;
    ListenerSet<FastDelegate1<IEffect*, bool>> _listenersChangeAttribute;
    IKLProgram* _pProgram = nullptr; ///< borrowed, for taking the link listener back
};

} // namespace Tolen::Effects
