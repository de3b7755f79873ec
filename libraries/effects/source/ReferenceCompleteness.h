#pragma once

#include <vector>

namespace Tolen {
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IGraph;
class IReferenceParameter;
class ReferenceParameterInterface;
class ReferenceShader;
class ReferenceShaderNode;

/// Answers whether references of a graph are complete with all that hangs below them. Every shader
/// is asked once, however many paths lead to it and however deep it hangs, and gives its messages
/// once.
class ReferenceCompleteness {
public:
    /// @param graph  borrowed, has the references; null answers false
    /// @param result takes the messages; may be null
    ReferenceCompleteness(IGraph* graph, Result* result);

    bool IsComplete(const ReferenceShaderNode* node);
    bool IsComplete(const ReferenceParameterInterface* parameter);

    /// Looks at @p node alone, when everything below it is asked as well.
    static bool IsCompleteHere(const ReferenceShaderNode* node, Result* result);

private:
    /// A node on the way down.
    struct Step {
        const ReferenceShaderNode* pNode;
        std::vector<const ReferenceShader*> below; ///< not asked yet, the next one last
    };

    void _Enter(const ReferenceShaderNode* node);
    void _Leave();
    bool _IsSettled(const ReferenceShader* reference, bool& isComplete) const;
    bool _IsMet(const ReferenceShaderNode* node) const;
    bool _AskParameters(const ReferenceShaderNode* node,
                        std::vector<const ReferenceShader*>& below) const;
    static bool _AskInterface(const ReferenceParameterInterface* parameter,
                              std::vector<const ReferenceShader*>& below);

    Result* _pResult;
    unsigned long long _walk = 0; ///< marks the nodes that were met; 0 when there is no graph
    std::vector<Step> _way;
};

} // namespace Tolen::Effects
