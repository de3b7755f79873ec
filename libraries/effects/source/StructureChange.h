#pragma once

#include "ParameterInterface.h"
#include "StructureNode.h"

#include "TolenCore/LifeToken.h"

#include <utility>
#include <vector>

namespace Tolen::Effects {

/// Carries a change of structure from the node where it was made up to everybody who hears of it.
///
/// Every node is told once, however many ways lead to it, and after all those below it that are
/// told. Nodes above which nobody listens are not visited unless the change makes them complete, so
/// that shaders are wired at the same cost in any order. There is no recursion by depth. Listeners
/// may make further changes, which are carried through before they return, and may destroy nodes.
class StructureChange {
public:
    /// @param origin where the change was made
    /// @return false when code can't be made or a listener answered false; everybody has been told
    ///         all the same
    static bool Run(StructureNode* origin, StructureOrigin kind = StructureOrigin::Other);

    /// Brings up to date who is complete from @p node upwards, and tells no listener.
    static void UpdateCompleteness(StructureNode* node);

private:
    struct Entry {
        StructureNode* pNode;
        LifeToken::Watch isAlive;
        /// The inputs that hold the node and have listeners.
        std::vector<std::pair<ParameterInterface*, LifeToken::Watch>> inputs;
    };

    static std::vector<StructureNode*> _UpdateCompleteness(StructureNode* origin);
    /// The nodes to tell, each behind those below it.
    void _Collect(StructureNode* origin);
    bool _Tell(StructureOrigin kind);
    void _UpdateHeard();

    std::vector<Entry> _entries;
};

} // namespace Tolen::Effects
