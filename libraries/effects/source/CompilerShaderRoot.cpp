#include "CompilerShaderRoot.h"

#include "CollectorDeclaration.h"
#include "GeneratedCode.h"
#include "ShaderVertex.h"
#include "TolenEffects/IGraph.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IReferenceGraph.h"
#include "TolenEffects/IReferenceShader.h"
#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorPrintKsl.h"

#include "TolenOpenKLWrapper/IKLShader.h"

#include "TolenCore/Console.h"

namespace Tolen::Effects {

namespace {

/// Classes of rays, each with a ray count of its own.
constexpr int kCountRayClasses = 8;
constexpr const char* kOutputRayCount = "kl_OutputRayCount";

} // namespace

CompilerShaderRoot::CompilerShaderRoot(IMgrEffects* manager, IReferenceGraph* graph,
                                       IKLShader* shader)
    : _pMgrEffects(manager), _pReferenceGraph(graph), _pKLShader(shader) {}

IGraph* CompilerShaderRoot::_GetGraph() const { return _pReferenceGraph->GetGraph(); }

IReferenceShader* CompilerShaderRoot::_GetRoot() const { return _GetGraph()->GetReferenceShader(); }

bool CompilerShaderRoot::Compile(Result* result) {
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    CollectorDeclarationRayAttribute rayAttributes(module.get());
    auto collectRayAttribute =
        MakeDelegate(&rayAttributes, &CollectorDeclarationRayAttribute::Collect);
    if (!_pMgrEffects->VisitRayAttributes(collectRayAttribute) ||
        !_CollectDeclarations(module.get()) || !_CollectSetup(module.get(), _pReferenceGraph) ||
        !_CollectMain(module.get(), _pReferenceGraph) || !_CollectDeclarationsGraph(module.get()) ||
        !_CollectDeclarationsMethods(module.get())) {
        return false;
    }
    VisitorPrintKsl printer(result, _pMgrEffects, false);
    if (!printer.Visit(module.get())) {
        return false;
    }
    _pKLShader->SetName(_GetGraph()->GetNameMangled() + "_root");
    if (_pKLShader->SetString(printer.GetText(), result)) {
        return true;
    }
    if (_GetRefusal() != nullptr) {
        ConsolePrint("%s", _GetRefusal());
    }
    return false;
}

bool CompilerShaderRoot::_CollectSetup(Module* module, IReferenceGraph* graph) {
    IReferenceShader* const root = graph->GetGraph()->GetReferenceShader();
    CompoundStatement* const body = module->CreateCompoundStatement();
    if (root->HasMethod("Init")) {
        AddCallStatement(module, body, root->GetMethodMangled("Init"));
    }
    if (root->HasMethod("GetRayCount")) {
        _CollectGetRayCount(module, body, root->GetMethodMangled("GetRayCount"));
    }
    DefineFunctionVoid(module, "setup", body);
    return true;
}

bool CompilerShaderRoot::_CollectDeclarationsMethods(Module* module) {
    IReferenceShader* const root = _GetRoot();
    for (const char* method : {"Init", "GetRayCount"}) {
        if (root->HasMethod(method) && !root->CollectDeclarationMethod(module, method)) {
            return false;
        }
    }
    return root->CollectDeclarationMethod(module, _GetEntry());
}

bool CompilerShaderRootFrame::_CollectDeclarations(Module*) { return true; }

bool CompilerShaderRootFrame::_CollectMain(Module* module, IReferenceGraph* graph) {
    IReferenceShader* const root = graph->GetGraph()->GetReferenceShader();
    if (!root->HasMethod("Render")) {
        return false;
    }
    CompoundStatement* const body = module->CreateCompoundStatement();
    AddCallStatement(module, body, root->GetMethodMangled("Render"));
    DefineFunctionVoid(module, "main", body);
    return true;
}

void CompilerShaderRootFrame::_CollectGetRayCount(Module* module, CompoundStatement* body,
                                                const std::string& method) {
    AddAssignmentStatement(module, body, CreateVariableNamed(module, kOutputRayCount),
                           CreateCall(module, method));
}

bool CompilerShaderRootFrame::_CollectDeclarationsGraph(Module*) { return true; }

bool CompilerShaderRootPrefixRay::_CollectDeclarations(Module* module) {
    CollectorDeclarationVariableGlobal variables(module);
    auto collect = MakeDelegate(&variables, &CollectorDeclarationVariableGlobal::Collect);
    return _pMgrEffects->VisitVariablesGlobal(collect);
}

bool CompilerShaderRootPrefixRay::_CollectMain(Module* module, IReferenceGraph* reference) {
    IGraph* const graph = reference->GetGraph();
    IReferenceShader* const root = graph->GetReferenceShader();
    if (!root->HasMethod("Shade")) {
        return false;
    }
    CompoundStatement* const body = module->CreateCompoundStatement();
    if (graph->HasConstructorStatic()) {
        AddCallStatement(module, body, graph->GetConstructorStatic());
    }
    if (graph->HasConstructor()) {
        AddCallStatement(module, body, graph->GetConstructor());
    }
    AddCallStatement(module, body, root->GetMethodMangled("Shade"));
    DefineFunctionVoid(module, "main", body);
    return true;
}

void CompilerShaderRootPrefixRay::_CollectGetRayCount(Module* module, CompoundStatement* body,
                                                    const std::string& method) {
    for (int rayClass = 0; rayClass < kCountRayClasses; ++rayClass) {
        FunctionCall* const count = CreateCall(module, method);
        count->AddParameter(module->CreateIntConstant(rayClass));
        AddAssignmentStatement(
            module, body,
            module->CreateSubscript(CreateVariableNamed(module, kOutputRayCount),
                                    module->CreateIntConstant(rayClass)),
            count);
    }
}

bool CompilerShaderRootPrefixRay::_CollectDeclarationsGraph(Module* module) {
    IGraph* const graph = _GetGraph();
    if (graph->HasConstructorStatic() && !graph->CollectDeclarationConstructorStatic(module)) {
        return false;
    }
    return !graph->HasConstructor() || graph->CollectDeclarationConstructor(module);
}

bool CompilerShaderRootRay::_CollectDeclarations(Module* module) {
    return _CollectVertexAttributeDeclarations(module) &&
           CompilerShaderRootPrefixRay::_CollectDeclarations(module);
}

bool CompilerShaderRootRay::_CollectVertexAttributeDeclarations(Module* module) {
    CollectorDeclarationAttributeRay attributes(module);
    auto collect = MakeDelegate(&attributes, &CollectorDeclarationAttributeRay::Collect);
    return _pShaderVertex->VisitAttributes(collect);
}

} // namespace Tolen::Effects
