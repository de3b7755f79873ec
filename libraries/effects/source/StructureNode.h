#pragma once

#include "TolenCore/LifeToken.h"

#include <cstdint>
#include <vector>

namespace Tolen::Effects {

class ParameterInterface;

/// Where a change of structure that reaches a node was made.
enum class StructureOrigin {
    Input, ///< here, by an input that holds other shaders than before
    Other, ///< here, by anything else
    Below, ///< somewhere below, which leaves code that exists here as it is
};

/// A shader or a class, as a place where changes of structure arrive and from which they go on.
///
/// A node stands above those that its code calls: a shader above the shaders in its inputs and
/// above its class, a class above the shaders in its static inputs and above the classes that it
/// calls statically. There are no circles but for those of static calls: inputs refuse them.
///
/// Every node knows whether it is complete, which is kept up to date by the changes themselves, so
/// that asking costs nothing; and whether anybody above listens, so that a change is only carried
/// to where it is heard.
class StructureNode {
public:
    StructureNode(const StructureNode&) = delete;
    StructureNode& operator=(const StructureNode&) = delete;

    /// Appends the nodes right above and right below, in an order that every run repeats; a node
    /// may come several times.
    virtual void CollectNodesAbove(std::vector<StructureNode*>& nodes) const = 0;
    virtual void CollectNodesBelow(std::vector<StructureNode*>& nodes) const = 0;

    /// Whether @p lower is this node or stands somewhere below it. Costs no more than what stands
    /// below this node or above @p lower, whichever is less. When the answer is no, this node is
    /// ranked below @p lower from then on, so that it may be put there.
    bool DependsOn(StructureNode* lower);
    /// Whether this node is known to be ranked below @p other, which then doesn't stand below it. To
    /// be asked only while no way down leads through a class, as classes have no ranks.
    bool IsRankedBelow(const StructureNode* other) const { return _rank < other->_rank; }

    /// Whether nothing is missing here or below, as of the last change.
    bool IsCompleteNode() const { return _isCompleteNode; }

    /// Whether a change here has to be told to somebody, here or above.
    bool IsHeard() const { return _isHeard; }
    /// Makes everything below carry its changes up to here, because there is a listener now.
    void MarkHeard();

    /// Tells whether the node is still there.
    LifeToken::Watch GetWatch() const { return _life.GetWatch(); }

protected:
    StructureNode() = default;
    virtual ~StructureNode() = default;

    /// Looks at what is right here and right below: whether that is complete.
    virtual bool _IsCompleteHere() = 0;
    /// Passes on to those above that this node has become complete, or incomplete.
    virtual void _OnChangeCompleteness(bool isComplete) = 0;
    /// Whether somebody listens right here, and not only above.
    virtual bool _HasListeners() const = 0;
    /// Brings the code here up to date and tells the listeners.
    /// @return false when the code can't be made or a listener answered false
    virtual bool _OnChangeStructureNode(StructureOrigin origin) = 0;
    /// The inputs that hold this node and have listeners of their own.
    virtual std::vector<ParameterInterface*> _GetInputsHeard() const { return {}; }

    /// Called when @p node has come to stand right below this one, which may have had none before.
    void _MarkHeardBelow(StructureNode* node);

    LifeToken _life;

private:
    friend class StructureChange;

    /// One direction of a search, which marks the nodes that it has met.
    struct Side;
    bool _IsHeardAbove() const;
    static void _Lower(std::vector<StructureNode*>& nodes);
    static void _Raise(std::vector<StructureNode*>& nodes);

    /// Higher than those of all shaders in the inputs of this one.
    std::int64_t _rank = 0;
    bool _isCompleteNode = false;
    bool _isHeard = false;
    /// Marks of a walk in progress; each walk takes its marks away before anybody is called.
    bool _isMetBelow = false;
    bool _isMetAbove = false;
};

} // namespace Tolen::Effects
