#pragma once

#include "TolenCore/CreationOrder.h"
#include "TolenCore/LifeToken.h"

#include <utility>
#include <vector>

namespace Tolen::Effects {

class Graph;
class IGraph;
class ReferenceShader;
class Shader;

/// The shaders below one that is about to come into a graph, brought there before it.
///
/// To take a shader into a graph is to take those in its inputs, and those in theirs. So that a
/// long chain doesn't need a deep stack, the ones at its end are taken first, with a use that this
/// object gives back when it goes; the shaders above find them there.
class DeepReferences : public CreationOrder {
public:
    /// @param top   not taken itself; borrowed
    /// @param graph borrowed; listeners may destroy it meanwhile
    DeepReferences(Shader* top, IGraph* graph);
    ~DeepReferences();
    DeepReferences(const DeepReferences&) = delete;
    DeepReferences& operator=(const DeepReferences&) = delete;

private:
    std::vector<Shader*> _FindMissingBelow(Shader* top) const;
    void _Take(const std::vector<Shader*>& shaders);
    void _GiveBack();
    bool _OnDeleteGraph(IGraph* graph);

    IGraph* _pGraph; ///< borrowed; null once it is gone
    /// One use of each is ours; they may be destroyed together with their shaders.
    std::vector<std::pair<ReferenceShader*, LifeToken::Watch>> _references;
};

} // namespace Tolen::Effects
