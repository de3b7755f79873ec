#include "SceneSession.h"

#include "ElementValues.h"
#include "ImageFile.h"
#include "MeshFile.h"
#include "SceneError.h"

#include "TolenEffects/ILocalParameter.h"
#include "TolenEffects/IMember.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IReferenceEffect.h"
#include "TolenEffects/IShader.h"
#include "TolenOpenKL/Mesh.h"

#include <algorithm>
#include <filesystem>

namespace Tolen::Render {

using namespace Tolen::Effects;

/// Keeps warnings and errors of the library for the complaint that follows; the general channel is
/// its diary and only shown with an error.
class SceneSession::Sink : public IConsoleSink {
public:
    void Write(Channel channel, const std::string& text) override {
        if (channel == kChannel_Warning) {
            std::fputs(text.c_str(), stderr);
        } else if (text.rfind("Acquired shader source asset", 0) != 0) {
            _text += text;
        }
    }

    std::string Take() { return std::exchange(_text, std::string()); }

private:
    std::string _text;
};

/// Counts what happens to one effect.
class SceneSession::EffectWatch : public CreationOrder {
public:
    EffectWatch(const std::string& name, IEffect* effect) : _pEffect(effect) {
        count.name = name;
        auto onCompile = MakeDelegate(this, &EffectWatch::_OnCompile);
        auto onChangeValue = MakeDelegate(this, &EffectWatch::_OnChangeValue);
        _pEffect->AddListenerCompile(onCompile);
        _pEffect->AddListenerChangeValue(onChangeValue);
    }
    ~EffectWatch() {
        auto onCompile = MakeDelegate(this, &EffectWatch::_OnCompile);
        auto onChangeValue = MakeDelegate(this, &EffectWatch::_OnChangeValue);
        _pEffect->RemoveListenerCompile(onCompile);
        _pEffect->RemoveListenerChangeValue(onChangeValue);
    }
    EffectWatch(const EffectWatch&) = delete;
    EffectWatch& operator=(const EffectWatch&) = delete;

    EffectCount count;

private:
    bool _OnCompile(IEffect*) {
        ++count.compiles;
        return true;
    }
    bool _OnChangeValue(IEffect*, ActionUpdate&) {
        ++count.valueUpdates;
        return true;
    }

    IEffect* _pEffect;
};

/// Keeps the latest text of every shader that the context is given.
class SceneSession::Programs : public CreationOrder {
public:
    explicit Programs(OpenKL::IContext& context) : _context(context) {
        auto onText = MakeDelegate(this, &Programs::_OnText);
        _context.AddListenerText(onText);
    }
    ~Programs() {
        auto onText = MakeDelegate(this, &Programs::_OnText);
        _context.RemoveListenerText(onText);
    }
    Programs(const Programs&) = delete;
    Programs& operator=(const Programs&) = delete;

    std::string texts;

private:
    bool _OnText(const IKLShader& shader, const std::string& text) {
        static constexpr const char* kStages[] = {"ray", "vertex", "frame", "prefix"};
        texts += std::string("// ") + kStages[shader.GetType()] + " shader " + shader.GetName() +
                 "\n" + text + "\n";
        return true;
    }

    OpenKL::IContext& _context;
};

SceneSession::SceneSession(const SceneDescription& description,
                           const OpenKL::ContextOptions& options,
                           const std::vector<std::string>& searchPaths)
    : _description(description), _pAssetsBefore(SetMgrAssets(&_assets)),
      _pSink(std::make_unique<Sink>()), _console(_pSink.get()),
      _pConsoleBefore(SetMgrConsole(&_console)) {
    _assets.AddSearchPath(Path(description.folder.empty() ? "." : description.folder));
    for (const std::string& folder : searchPaths) {
        _assets.AddSearchPath(Path(folder));
    }
    Result result;
    _pContext = OpenKL::CreateContext(options, &result);
    if (_pContext == nullptr) {
        throw SceneError("", result.GetLast());
    }
    _pPrograms = std::make_unique<Programs>(*_pContext);
    _pManager = std::make_unique<MgrEffects>();
    if (!_pManager->Init(&_console, _pContext, &result)) {
        throw SceneError("", "the effects manager can't be started\n" + _pSink->Take());
    }
    _LoadLibraries();
    _DeclareVariables();
    _LoadTextures();
    _SetClasses();
    _MakeShaders();
    _MakeEffects();
    _MakePrimitives();
    _AssignRoles();
}

SceneSession::~SceneSession() {
    _watches.clear();
    _pManager.reset();
    _pPrograms.reset();
    OpenKL::DestroyContext(_pContext);
    SetMgrConsole(_pConsoleBefore);
    SetMgrAssets(_pAssetsBefore);
}

void SceneSession::_Fail(const JsonNode& node, const std::string& message, const Result& result) {
    std::string text = message;
    for (std::size_t i = result.GetCount(); i-- > 0;) {
        text += "\n" + result.GetMessage(i);
    }
    const std::string diary = _pSink->Take();
    if (!diary.empty()) {
        text += "\n" + diary;
    }
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    node.Fail(text);
}

TypeSpecifier SceneSession::_ReadType(const std::string& name, const JsonNode& node) const {
    std::vector<std::string> known;
    for (int value = kType_Float; value <= kType_Primitive; ++value) {
        const auto type = static_cast<TypeSpecifier>(value);
        if (name == TypeSpecifierToString(type)) {
            return type;
        }
        known.emplace_back(TypeSpecifierToString(type));
    }
    node.Get("type").Fail("'" + name + "' is no type" + SuggestName(name, known));
}

std::string SceneSession::_FindFile(const std::string& file) const {
    const Path inFolder = Path(_description.folder) / Path(file);
    return std::filesystem::exists(inFolder.AsString()) ? inFolder.AsString() : file;
}

void SceneSession::_LoadLibraries() {
    for (std::size_t i = 0; i < _description.libraries.size(); ++i) {
        Result result;
        if (!_pManager->AddLibrary(_description.libraries[i], &result)) {
            _Fail(_description.nodesOfLibraries[i],
                  "the library '" + _description.libraries[i] + "' can't be loaded", result);
        }
        _pSink->Take();
    }
}

void SceneSession::_DeclareVariables() {
    for (const SceneDescription::Variable& variable : _description.rayAttributes) {
        _pManager->AddRayAttribute(_ReadType(variable.type, variable.node), variable.name);
    }
    for (const SceneDescription::Variable& variable : _description.globals) {
        _pManager->AddVariableGlobal(_ReadType(variable.type, variable.node), variable.name);
    }
    for (const SceneDescription::Output& output : _description.outputs) {
        if (!_pManager->AcquireOutput(_ReadType(output.type, output.node), output.name)) {
            _Fail(output.node, "the output '" + output.name + "' exists with another type", {});
        }
        _pManager->SetOutputAttachmentIndex(output.name, output.attachment);
    }
}

void SceneSession::_LoadTextures() {
    for (const SceneDescription::Texture& texture : _description.textures) {
        Image image;
        try {
            image = ReadImage(_FindFile(texture.file), texture.isSrgb);
        } catch (const std::exception& error) {
            texture.node.Get("file").Fail(error.what());
        }
        IKLTexImage2D* const texImage = _pContext->CreateTexImage2D();
        if (texImage == nullptr ||
            !texImage->Init(image.width, image.height, IKLTexImage2D::kFormat_RGBA32F, texture.wrap,
                            texture.filter, texture.filter, image.rgba.data(), false)) {
            texture.node.Get("file").Fail("the image does not fit into texture memory");
        }
        _textures[texture.name] = texImage;
    }
}

void SceneSession::_SetClasses() {
    for (const SceneDescription::ClassValues& values : _description.classes) {
        for (const auto& [name, value] : values.parameters) {
            _SetClassParameter(values.name, name, value);
        }
    }
}

void SceneSession::_MakeShaders() {
    for (const SceneDescription::Shader& described : _description.shaders) {
        Result result;
        IShader* const shader = _pManager->CreateShader(described.className, &result);
        if (shader == nullptr) {
            _Fail(described.node.Get("class"),
                  "no shader of class '" + described.className + "' can be made", result);
        }
        shader->SetName(described.name);
        _shaders[described.name] = shader;
        for (const auto& [name, value] : described.parameters) {
            _SetShaderParameter(shader, name, value);
        }
        for (const auto& [name, value] : described.textures) {
            _SetTexture(shader, name, value);
        }
        for (const auto& [name, value] : described.coords) {
            if (!shader->SetCoord(&result, name, value.AsString())) {
                _Fail(value, "class '" + described.className + "' has no coord '" + name + "'", {});
            }
        }
    }
}

void SceneSession::_SetShaderParameter(IShader* shader, const std::string& name,
                                       const JsonNode& value) {
    IParameter* const parameter = shader->GetParameter(name);
    if (parameter == nullptr) {
        std::vector<std::string> known;
        auto collect = [&known](const std::string& input, IParameter*) {
            known.push_back(input);
            return true;
        };
        auto visit = FastDelegate2<const std::string&, IParameter*, bool>::Borrow(collect);
        shader->VisitParameters(visit);
        const std::string className = shader->GetPrototype()->GetClassName();
        value.Fail("class '" + className + "' has no input '" + name + "'" +
                   SuggestName(name, known));
    }
    if (parameter->GetClass() != IParameter::kClass_Value) {
        value.Fail("the input '" + name + "' takes another shader, not a value");
    }
    const TypeSpecifier type = parameter->GetTypeSpecifier();
    Result result;
    bool isSet = false;
    if (parameter->IsArray()) {
        const int length = static_cast<int>(value.GetElements().size());
        isSet = parameter->SetLength(length) && SetElements(value, type, [&](auto values, int count) {
                    return shader->SetParameter(&result, name, values, count);
                });
    } else {
        isSet = SetElement(value, type, [&](const auto& element) {
            return shader->SetParameter(&result, name, element);
        });
    }
    if (!isSet) {
        _Fail(value, "the input '" + name + "' refuses this value", result);
    }
}

void SceneSession::_SetClassParameter(const std::string& className, const std::string& name,
                                      const JsonNode& value) {
    Result result;
    IPrototypeShader* const prototype = _pManager->GetPrototypeShader(className, &result);
    if (prototype == nullptr) {
        _Fail(value, "there is no class '" + className + "'", result);
    }
    IParameter* const parameter = prototype->GetParameter(name);
    if (parameter == nullptr) {
        std::vector<std::string> known;
        auto collect = [&known](const std::string& input, IParameter*) {
            known.push_back(input);
            return true;
        };
        auto visit = FastDelegate2<const std::string&, IParameter*, bool>::Borrow(collect);
        prototype->VisitParameters(visit);
        value.Fail("class '" + className + "' has no static input '" + name + "'" +
                   SuggestName(name, known));
    }
    const bool isSet = SetElement(value, parameter->GetTypeSpecifier(), [&](const auto& element) {
        return prototype->SetParameter(name, element);
    });
    if (!isSet) {
        _Fail(value, "the static input '" + name + "' refuses this value", result);
    }
}

void SceneSession::_SetTexture(IShader* shader, const std::string& name, const JsonNode& value) {
    const std::string textureName = value.AsString();
    const auto found = _textures.find(textureName);
    if (found == _textures.end()) {
        std::vector<std::string> known;
        for (const auto& [texture, image] : _textures) {
            known.push_back(texture);
        }
        value.Fail("there is no texture '" + textureName + "'" + SuggestName(textureName, known));
    }
    Result result;
    if (!shader->SetParameter(&result, name, found->second->GetTexture())) {
        _Fail(value, "the input '" + name + "' takes no texture", result);
    }
}

IShader* SceneSession::_FindShader(const std::string& name, const JsonNode& node) {
    const auto found = _shaders.find(name);
    if (found != _shaders.end()) {
        return found->second;
    }
    std::vector<std::string> known;
    for (const auto& [shader, pointer] : _shaders) {
        known.push_back(shader);
    }
    node.Fail("there is no shader '" + name + "'" + SuggestName(name, known));
}

void SceneSession::_MakeEffects() {
    for (const SceneDescription::Effect& described : _description.effects) {
        IEffect* const effect = described.kind == SceneDescription::kEffect_Surface
                                    ? _pManager->CreateEffectSurface()
                                : described.kind == SceneDescription::kEffect_Renderer
                                    ? _pManager->CreateEffectRenderer()
                                    : _pManager->CreateEffectPrefix();
        if (effect == nullptr) {
            _Fail(described.node, "the effect can't be made", {});
        }
        effect->SetName(described.name);
        _effects.push_back(effect);
        _watches.push_back(std::make_unique<EffectWatch>(described.name, effect));
        const JsonNode root = described.node.Get("root");
        IShader* const shader = _FindShader(described.root, root);
        // The library leaves such an effect uncompiled without a word.
        const char* const entry =
            described.kind == SceneDescription::kEffect_Renderer ? "Render" : "Shade";
        if (!shader->HasMethod(entry)) {
            root.Fail("class '" + shader->GetClassName() + "' has no method '" + entry +
                      "', which the effect would run");
        }
        if (!effect->SetRoot(shader)) {
            _Fail(root, "the shader '" + described.root + "' can't be a root", {});
        }
    }
}

std::size_t SceneSession::_FindEffect(const std::string& name, const JsonNode& node) {
    std::vector<std::string> known;
    for (std::size_t i = 0; i < _description.effects.size(); ++i) {
        if (_description.effects[i].name == name) {
            return i;
        }
        known.push_back(_description.effects[i].name);
    }
    node.Fail("there is no effect '" + name + "'" + SuggestName(name, known));
}

void SceneSession::_MakePrimitives() {
    for (const SceneDescription::Primitive& described : _description.primitives) {
        const JsonNode node = described.node.Get("effect");
        const std::size_t index = _FindEffect(described.effect, node);
        if (_description.effects[index].kind != SceneDescription::kEffect_Surface) {
            node.Fail("'" + described.effect + "' is no surface effect");
        }
        OpenKL::IPrimitive* const primitive = _pContext->CreatePrimitive();
        primitive->SetName(described.name);
        if (!primitive->SetTransform(described.transform)) {
            described.node.Get("transform").Fail("the transform has no inverse");
        }
        _SetGeometry(*primitive, described);
        IReferenceEffect* const reference = _effects[index]->CreateReference(primitive);
        for (const auto& [path, value] : described.local) {
            _SetLocal(reference, _description.effects[index], path, value);
        }
    }
}

void SceneSession::_SetLocal(IReferenceEffect* reference, const SceneDescription::Effect& effect,
                             const std::string& path, const JsonNode& value) {
    const std::size_t dot = path.find('.');
    const std::string shaderName = dot == std::string::npos ? effect.root : path.substr(0, dot);
    const std::string name = dot == std::string::npos ? path : path.substr(dot + 1);
    IShader* const shader = _FindShader(shaderName, value);
    ILocalParameter* const local = reference->AcquireParameterLocal(shader, name);
    if (local == nullptr) {
        value.Fail("the shader '" + shaderName + "' of this effect has no single value input '" +
                   name + "'");
    }
    const TypeSpecifier type = shader->GetParameter(name)->GetTypeSpecifier();
    if (!SetElement(value, type, [&](const auto& element) { return local->Set(element); })) {
        value.Fail("the input '" + name + "' refuses this value");
    }
}

void SceneSession::_SetGeometry(OpenKL::IPrimitive& primitive,
                                const SceneDescription::Primitive& described) {
    const auto size = [&described](std::size_t i) { return static_cast<float>(described.size[i]); };
    switch (described.shape) {
    case SceneDescription::kShape_Plane:
        OpenKL::SetMesh(primitive, OpenKL::MakePlane(size(0), size(1)));
        return;
    case SceneDescription::kShape_Sphere:
        OpenKL::SetMesh(primitive, OpenKL::MakeSphere(size(0), 256, 128));
        return;
    case SceneDescription::kShape_Box:
        OpenKL::SetMesh(primitive, OpenKL::MakeBox({size(0), size(1), size(2)}));
        return;
    case SceneDescription::kShape_Disc:
        OpenKL::SetMesh(primitive, OpenKL::MakeDisc(size(0), 256));
        return;
    case SceneDescription::kShape_Mesh:
        break;
    }
    MeshData mesh;
    try {
        mesh = ReadMesh(_FindFile(described.file), described.isFitted);
    } catch (const std::exception& error) {
        described.node.Get("file").Fail(error.what());
    }
    primitive.SetTriangles(mesh.indices.data(), mesh.indices.size() / 3);
    primitive.SetAttribute("a_Position", 3, &mesh.positions.data()->x, mesh.positions.size());
    primitive.SetAttribute("a_Normal", 3, &mesh.normals.data()->x, mesh.normals.size());
    if (!mesh.coords.empty()) {
        primitive.SetAttribute("a_Coord", 2, &mesh.coords.data()->x, mesh.coords.size());
        primitive.SetAttribute("a_Tangent", 3, &mesh.tangents.data()->x, mesh.tangents.size());
    }
}

OpenKL::IPrimitive* SceneSession::_MakeRole(const char* key, const std::string& effect,
                                            SceneDescription::EffectKind kind) {
    static constexpr const char* kKinds[] = {"surface", "renderer", "prefix"};
    const JsonNode node = JsonNode(*_description.json, "").Get(key);
    const std::size_t index = _FindEffect(effect, node);
    if (_description.effects[index].kind != kind) {
        node.Fail("'" + effect + "' is no " + kKinds[kind] + " effect");
    }
    OpenKL::IPrimitive* const primitive = _pContext->CreatePrimitive();
    primitive->SetName(key);
    _effects[index]->CreateReference(primitive);
    return primitive;
}

void SceneSession::_AssignRoles() {
    _pContext->SetFramePrimitive(
        _MakeRole("renderer", _description.renderer, SceneDescription::kEffect_Renderer));
    if (!_description.prefix.empty()) {
        _pContext->SetPrefixPrimitive(
            _MakeRole("prefix", _description.prefix, SceneDescription::kEffect_Prefix));
    }
    if (!_description.miss.empty()) {
        _pContext->SetMissPrimitive(
            _MakeRole("miss", _description.miss, SceneDescription::kEffect_Surface));
    }
}

void SceneSession::Update() {
    for (std::size_t i = 0; i < _effects.size(); ++i) {
        Result result;
        const bool updated = _effects[i]->Update(&result);
        // A program that doesn't link leaves the effect dirty, while Update goes on.
        if (!updated || !_effects[i]->IsCompiled()) {
            _Fail(_description.effects[i].node,
                  "the effect '" + _description.effects[i].name + "' can't be compiled", result);
        }
    }
    _pSink->Take();
}

void SceneSession::SetParameter(const std::string& path, const JsonNode& value) {
    const std::size_t dot = path.find('.');
    if (dot == std::string::npos) {
        value.Fail("expected shader.parameter, found '" + path + "'");
    }
    const std::string owner = path.substr(0, dot);
    const std::string name = path.substr(dot + 1);
    const bool isShader = _shaders.find(owner) != _shaders.end();
    if (!isShader && _pManager->GetPrototypeShader(owner, nullptr) != nullptr) {
        _SetClassParameter(owner, name, value);
    } else {
        _SetShaderParameter(_FindShader(owner, value), name, value);
    }
}

std::size_t SceneSession::CountNumbersOf(const std::string& path) {
    const std::size_t dot = path.find('.');
    if (dot == std::string::npos) {
        return 0;
    }
    IParameter* parameter = nullptr;
    const auto shader = _shaders.find(path.substr(0, dot));
    if (shader != _shaders.end()) {
        parameter = shader->second->GetParameter(path.substr(dot + 1));
    } else if (IPrototypeShader* prototype =
                   _pManager->GetPrototypeShader(path.substr(0, dot), nullptr)) {
        parameter = prototype->GetParameter(path.substr(dot + 1));
    }
    return parameter == nullptr || parameter->IsArray() ? 0
                                                        : CountNumbers(parameter->GetTypeSpecifier());
}

std::vector<EffectCount> SceneSession::GetCounts() const {
    std::vector<EffectCount> counts;
    for (const auto& watch : _watches) {
        counts.push_back(watch->count);
    }
    return counts;
}

std::string SceneSession::GetPrograms() const { return _pPrograms->texts; }

} // namespace Tolen::Render
