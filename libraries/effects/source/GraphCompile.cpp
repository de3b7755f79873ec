#include "Graph.h"

#include "CollectorDeclaration.h"
#include "ErrorTranslation.h"
#include "GeneratedCode.h"
#include "ModuleOrder.h"
#include "ProfileScope.h"
#include "ReferencePrototypeShader.h"
#include "RenameFunctions.h"
#include "ScopedResult.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IReferenceShader.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorPrintKsl.h"
#include "VisitorFindEmptyAndNeverCalledFunctions.h"

#include "TolenOpenKLWrapper/IOpenKLContext.h"

#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <algorithm>
#include <cstdlib>

namespace Tolen::Effects {

namespace {

bool _AreOptimizationsEnabled() {
    const char* const disabled = std::getenv("TLN_DISABLE_EFFECTS_OPTIMIZATIONS");
    return disabled == nullptr || std::atoi(disabled) == 0;
}

} // namespace

bool Graph::Compile(Result* result) {
    // A compile that a listener of this one asks for has nothing to add.
    const std::shared_ptr<bool> isCompiling = _isCompiling;
    if (*isCompiling) {
        return false;
    }
    if (!IsComplete(result)) {
        if (result != nullptr) {
            result->Add("Graph::Compile failed, graph %s is incomplete", GetName().c_str());
        }
        return false;
    }
    *isCompiling = true;
    const bool compiled = _Compile(result);
    // The listeners may have destroyed this graph; from here on only locals are touched.
    *isCompiling = false;
    return compiled;
}

bool Graph::_Compile(Result* result) {
    const ProfileScope scope("Graph::_Compile", _pMgrEffects->GetProfiler());
    const ScopedResult current(_pMgrEffects, result);

    const std::unique_ptr<Module> module(Module::Create(nullptr));
    if (module == nullptr) {
        ConsolePrint("Graph::_Compile Module Creation\n");
        return false;
    }
    if (!_CollectModule(module.get())) {
        return false;
    }
    if (_AreOptimizationsEnabled()) {
        // Sorted ahead of the pass too, so that its marks don't follow the order of collection.
        SortModule(module.get());
        VisitorFindEmptyAndNeverCalledFunctions pass(this);
        for (const std::string& method : _GetMethodsForUsers()) {
            pass.AddRoot(method);
        }
        module->AcceptVisitor(&pass);
    }
    VisitorPrintKsl printer(result, _pMgrEffects, true);
    if (!printer.Visit(module.get()) || !_CompileText(printer, result)) {
        return false;
    }
    _isCompiled = true;
    _hasQueuedUpdates = false;
    _ListenToRoot(true);
    _outputsUsed = printer.GetOutputsUsed();
    _listenersCompile.Fire(this);
    return true;
}

bool Graph::_CompileText(VisitorPrintKsl& printer, Result* result) {
    // The shader of the last compile is given up only now that there is a text for the next.
    _DestroyKLShader();
    _pKLShader = _pMgrEffects->GetOpenKLContext()->CreateShader(_type);
    if (_pKLShader == nullptr) {
        return false;
    }
    ++_countCompiles;
    _pKLShader->SetName(GetNameMangled() + "_" + std::to_string(_countCompiles));
    Result messages;
    if (_pKLShader->SetString(printer.GetText(), &messages)) {
        return true;
    }
    if (result != nullptr && !messages.IsEmpty()) {
        result->Add("%s", _TranslateErrorMessage(messages.GetLast(), printer).c_str());
    }
    ConsolePrint("Graph::_Compile SetString\n");
    return false;
}

bool Graph::_CollectModule(Module* module) {
    CollectorDeclarationRayAttribute rayAttributes(module);
    auto collectRayAttribute =
        MakeDelegate(&rayAttributes, &CollectorDeclarationRayAttribute::Collect);
    CollectorDeclarationVariableGlobal variables(module);
    auto collectVariable = MakeDelegate(&variables, &CollectorDeclarationVariableGlobal::Collect);
    if (!_pMgrEffects->VisitRayAttributes(collectRayAttribute) ||
        !_pMgrEffects->VisitVariablesGlobal(collectVariable)) {
        return false;
    }
    if (_type == IKLShader::kType_Ray && !_CollectVertexAttributeDeclarations(module)) {
        return false;
    }
    if (HasConstructorStatic() && !_CollectConstructorStatic(module)) {
        return false;
    }
    if (HasConstructor() && !_CollectConstructor(module)) {
        return false;
    }
    if (!_CollectShaders(module)) {
        return false;
    }
    if (_countUsers != 0) {
        // A program that links this text may hold the same shaders and classes in another one.
        std::set<std::string> kept = _GetMethodsForUsers();
        kept.insert({GetConstructor(), GetConstructorStatic()});
        RenameFunctions(module, kept, _rKey.ToString());
    }
    return CollectorDeclarationFunctions(module).Collect();
}

bool Graph::_CollectShaders(Module* module) {
    const LifeToken::Watch alive = _life.GetWatch();
    _isCollecting = true;
    const bool collected = _delegatesCollectShader.Fire(module);
    if (!alive) {
        return false;
    }
    _isCollecting = false;
    return collected;
}

bool Graph::_CollectConstructor(Module* module) {
    CompoundStatement* const body = module->CreateCompoundStatement();
    if (_pReferenceShader->HasConstructor()) {
        AddCallStatement(module, body, _pReferenceShader->GetConstructor());
    }
    DefineFunctionVoid(module, GetConstructor(), body);
    return true;
}

bool Graph::_CollectConstructorStatic(Module* module) {
    // By name, and by age where two libraries have a class of one name, so that the text does not
    // depend on where the classes lie in memory.
    std::vector<std::pair<std::string, ReferencePrototypeShader*>> classes;
    for (const auto& [prototype, reference] : _prototypeShaders) {
        classes.emplace_back(prototype->GetClassName(), reference);
    }
    std::sort(classes.begin(), classes.end(), [](const auto& a, const auto& b) {
        return a.first != b.first
                   ? a.first < b.first
                   : a.second->GetCreationNumber() < b.second->GetCreationNumber();
    });
    CompoundStatement* const body = module->CreateCompoundStatement();
    for (const auto& [name, reference] : classes) {
        if (reference->HasConstructorStatic()) {
            AddCallStatement(module, body, reference->GetConstructorStatic());
        }
    }
    if (_countUsers == 0) {
        // The texts that a program links bring classes of their own; those of texts that they use
        // in turn are among them.
        for (const Graph* graph : GetGraphsForeign()) {
            graph->CollectDeclarationConstructorStatic(module);
            AddCallStatement(module, body, graph->GetConstructorStatic());
        }
    }
    DefineFunctionVoid(module, GetConstructorStatic(), body);
    return true;
}

bool Graph::_CollectVertexAttributeDeclarations(Module* module) {
    DeclareGlobal(module, kType_Vec3, "Normal", kStorageQualifier_Varying);
    CollectorDeclarationAttributeRay attributes(module);
    auto collect = MakeDelegate(&attributes, &CollectorDeclarationAttributeRay::CollectAttribute);
    return VisitAttributes(collect);
}

std::set<std::string> Graph::_GetMethodsForUsers() const {
    std::set<std::string> names;
    if (_countUsers == 0) {
        return names;
    }
    auto collect = [&names](const FunctionDefinition* definition) {
        names.insert(definition->GetFunctionPrototype()->GetName()->GetString());
        return true;
    };
    auto visit = FastDelegate1<const FunctionDefinition*, bool>::Borrow(collect);
    _pShader->VisitMethods(visit);
    if (_pShader->HasConstructor()) {
        names.insert(_pShader->GetConstructorName());
    }
    return names;
}

std::string Graph::_TranslateErrorMessage(const std::string& log, VisitorPrintKsl& printer) {
    return TranslateErrorMessage(log, printer);
}

} // namespace Tolen::Effects
