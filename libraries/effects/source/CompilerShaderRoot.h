#pragma once

#include <memory>
#include <string>

namespace Tolen {
class IKLShader;
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class CompoundStatement;
class Expression;
class FunctionCall;
class IGraph;
class IMgrEffects;
class IReferenceGraph;
class IReferenceShader;
class Module;
class ShaderVertex;

/// Writes the small API shader with the entry points `setup` and `main`, which declare what they
/// need of the graph's shader and forward to the root's methods. Lives for one compile; owns
/// nothing.
class CompilerShaderRoot {
public:
    virtual ~CompilerShaderRoot() = default;

    /// @param result takes the messages; may be null
    bool Compile(Result* result);

protected:
    /// @param shader the API shader that takes the text
    CompilerShaderRoot(IMgrEffects* manager, IReferenceGraph* graph, IKLShader* shader);

    IGraph* _GetGraph() const;
    IReferenceShader* _GetRoot() const;

    /// What stands before the functions, the ray attributes apart.
    virtual bool _CollectDeclarations(Module* module) = 0;
    virtual bool _CollectSetup(Module* module, IReferenceGraph* graph);
    virtual bool _CollectMain(Module* module, IReferenceGraph* graph) = 0;
    virtual void _CollectGetRayCount(Module* module, CompoundStatement* body,
                                   const std::string& method) = 0;
    virtual bool _CollectDeclarationsGraph(Module* module) = 0;
    /// The root's method that does the work.
    virtual const char* _GetEntry() const = 0;
    /// The console line when the API refuses the text; null for none.
    virtual const char* _GetRefusal() const = 0;

    IMgrEffects* _pMgrEffects;        ///< borrowed
    IReferenceGraph* _pReferenceGraph; ///< borrowed
    IKLShader* _pKLShader;            ///< borrowed

private:
    bool _CollectDeclarationsMethods(Module* module);
};

/// The root of a frame stage: `main` renders one sample.
class CompilerShaderRootFrame : public CompilerShaderRoot {
public:
    CompilerShaderRootFrame(IMgrEffects* manager, IReferenceGraph* graph, IKLShader* shader)
        : CompilerShaderRoot(manager, graph, shader) {}

protected:
    bool _CollectDeclarations(Module* module) override;
    bool _CollectMain(Module* module, IReferenceGraph* graph) override;
    void _CollectGetRayCount(Module* module, CompoundStatement* body,
                           const std::string& method) override;
    bool _CollectDeclarationsGraph(Module* module) override;
    const char* _GetEntry() const override { return "Render"; }
    const char* _GetRefusal() const override { return nullptr; }
};

/// The root of a prefix stage: `main` runs for each ray ahead of the program of what it reached.
class CompilerShaderRootPrefixRay : public CompilerShaderRoot {
public:
    CompilerShaderRootPrefixRay(IMgrEffects* manager, IReferenceGraph* graph, IKLShader* shader)
        : CompilerShaderRoot(manager, graph, shader) {}

protected:
    bool _CollectDeclarations(Module* module) override;
    bool _CollectMain(Module* module, IReferenceGraph* graph) override;
    void _CollectGetRayCount(Module* module, CompoundStatement* body,
                           const std::string& method) override;
    bool _CollectDeclarationsGraph(Module* module) override;
    const char* _GetEntry() const override { return "Shade"; }
    const char* _GetRefusal() const override {
        return "CompilerShaderRootPrefixRay::Compile SetString\n";
    }
};

/// The root of a ray stage: `main` shades one hit. It differs from the prefix in what rays read of
/// the vertices.
class CompilerShaderRootRay : public CompilerShaderRootPrefixRay {
public:
    /// @param vertex the effect's vertex stage, borrowed
    CompilerShaderRootRay(IMgrEffects* manager, ShaderVertex* vertex, IReferenceGraph* graph,
                          IKLShader* shader)
        : CompilerShaderRootPrefixRay(manager, graph, shader), _pShaderVertex(vertex) {}

protected:
    bool _CollectDeclarations(Module* module) override;
    const char* _GetRefusal() const override {
        return "CompilerShaderRootRay::Compile SetString\n";
    }

private:
    bool _CollectVertexAttributeDeclarations(Module* module);

    ShaderVertex* _pShaderVertex; ///< borrowed
};

} // namespace Tolen::Effects
