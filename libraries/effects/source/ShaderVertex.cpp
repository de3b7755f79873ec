#include "ShaderVertex.h"

#include "AttributeVertex.h"
#include "GeneratedCode.h"
#include "MgrEffectsImpl.h"
#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorPrintKsl.h"

#include "TolenOpenKLWrapper/IOpenKLContext.h"

#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <vector>

namespace Tolen::Effects {

namespace {

bool _Refuse(const char* text) {
    ConsolePrint("%s", text);
    return false;
}

template <class Attribute>
bool _AddAlways(std::unique_ptr<AttributeVertex>& slot, const char* name) {
    auto attribute = std::make_unique<Attribute>();
    if (!attribute->Init(kType_Vec3, name)) {
        return false;
    }
    slot = std::move(attribute);
    return true;
}

} // namespace

ShaderVertex::ShaderVertex() = default;

ShaderVertex::~ShaderVertex() {
    Shutdown();
}

bool ShaderVertex::Init(IMgrEffects* manager, IKLProgram*) {
    _pMgrEffects = manager;
    _pKLShader = manager->GetOpenKLContext()->CreateShader(IKLShader::kType_Vertex);
    return _pKLShader != nullptr &&
           _AddAlways<AttributeVertexPosition>(_attributes["Position"].attribute, "Position") &&
           _AddAlways<AttributeVertexNormal>(_attributes["Normal"].attribute, "Normal");
}

void ShaderVertex::Shutdown() {
    _attributes.clear();
    if (_pKLShader != nullptr) {
        _pMgrEffects->GetOpenKLContext()->DestroyShader(_pKLShader);
        _pKLShader = nullptr;
    }
    _pMgrEffects = nullptr;
}

void ShaderVertex::SetName(const std::string& name) {
    if (_pKLShader != nullptr) {
        _pKLShader->SetName(name);
    }
}

bool ShaderVertex::AcquireAttribute(TypeSpecifier type, const std::string& name,
                                    TransformationCoord transformation) {
    if (name.empty()) {
        return _Refuse("ShaderVertex::AcquireAttribute Name Null\n");
    }
    const auto found = _attributes.find(name);
    if (found != _attributes.end()) {
        const AttributeVertex& attribute = *found->second.attribute;
        if (attribute.GetSemantic() != kAttributeSemantic_Coord || attribute.GetType() != type) {
            return _Refuse("ShaderVertex::AcquireAttribute Type Conflict\n");
        }
        if (static_cast<const AttributeVertexCoord&>(attribute).GetTransformation() !=
            transformation) {
            return _Refuse("ShaderVertex::AcquireAttribute Transformation Conflict\n");
        }
        ++found->second.count;
        return true;
    }
    auto attribute = std::make_unique<AttributeVertexCoord>();
    if (!attribute->Init(type, name, transformation)) {
        return false;
    }
    _attributes[name].attribute = std::move(attribute);
    _isCompiled = false;
    return true;
}

bool ShaderVertex::ReleaseAttribute(const std::string& name) {
    const auto found = _attributes.find(name);
    if (found == _attributes.end() ||
        found->second.attribute->GetSemantic() != kAttributeSemantic_Coord) {
        return true;
    }
    if (--found->second.count > 0) {
        return true;
    }
    _attributes.erase(found);
    _isCompiled = false;
    return true;
}

bool ShaderVertex::VisitAttributes(
    FastDelegate2<const std::string&, IAttributeVertex*, bool>& visit) {
    std::vector<std::pair<std::string, IAttributeVertex*>> attributes;
    for (const auto& [name, use] : _attributes) {
        attributes.emplace_back(name, use.attribute.get());
    }
    bool all = true;
    for (const auto& [name, attribute] : attributes) {
        all = visit(name, attribute) && all;
    }
    return all;
}

bool ShaderVertex::OnProgramChange(IKLProgram* program) {
    for (const auto& [name, use] : _attributes) {
        if (!use.attribute->CacheKLLocation(program)) {
            return false;
        }
    }
    return true;
}

bool ShaderVertex::Compile() {
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    if (module == nullptr) {
        return false;
    }
    CompoundStatement* const body = module->CreateCompoundStatement();
    bool collected = true;
    for (const auto& [name, use] : _attributes) {
        collected = collected && use.attribute->CollectDeclarationsVertex(module.get());
    }
    for (const auto& [name, use] : _attributes) {
        collected = collected && use.attribute->CollectTransformation(module.get(), body);
    }
    DefineFunctionVoid(module.get(), "main", body);
    if (!collected) {
        return false;
    }

    Result printed;
    VisitorPrintKsl printer(&printed, _pMgrEffects, false);
    if (!printer.Visit(module.get())) {
        _pMgrEffects->GetImplementation()->AddResult(printed);
        return false;
    }
    Result compiled;
    if (!_pKLShader->SetString(printer.GetText(), &compiled)) {
        ConsolePrint("ShaderVertex::Compile SetString\n");
        compiled.ReportToConsole(_pMgrEffects->GetConsole());
        return false;
    }
    _isCompiled = true;
    return true;
}

} // namespace Tolen::Effects
