#include "scene/SceneSession.h"

#include "scene/ElementValues.h"
#include "scene/IesImage.h"
#include "scene/ImageFile.h"
#include "scene/ImportanceTable.h"
#include "scene/MeshFile.h"
#include "scene/SceneError.h"
#include "scene/ShaderFolder.h"

#include "TolenEffects/ILocalParameter.h"
#include "TolenEffects/IMember.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IReferenceEffect.h"
#include "TolenEffects/IShader.h"
#include "TolenOpenKL/Mesh.h"

#include <algorithm>
#include <filesystem>

namespace Tolen::Scene {

using namespace Tolen::Effects;

namespace {

const char* _NameOf(SceneDescription::EffectKind kind) {
    static constexpr const char* kKinds[] = {"surface", "renderer", "prefix"};
    return kKinds[kind];
}

/// An image file, or the image of the light that an IES file tells of.
Image _ReadTexture(const std::string& file, bool isSrgb) {
    return IsIesFile(file) ? MakeIesImage(ReadIes(file)) : ReadImage(file, isSrgb);
}

void _SetMesh(OpenKL::IPrimitive& primitive, const MeshData& mesh) {
    primitive.SetTriangles(mesh.indices.data(), mesh.indices.size() / 3);
    const auto set = [&primitive](const char* name, int components, const auto& values) {
        if (!values.empty()) {
            primitive.SetAttribute(name, components, &values.data()->x, values.size());
        }
    };
    set("a_Position", 3, mesh.positions);
    set("a_Normal", 3, mesh.normals);
    set("a_Tangent", 3, mesh.tangents);
    set("a_Bitangent", 3, mesh.bitangents);
    set("a_Coord", 2, mesh.coords);
    set("a_Coord1", 2, mesh.coords1);
    set("a_Color", 3, mesh.colors);
}

} // namespace

SceneSession::SceneSession(const SceneDescription& description,
                           const OpenKL::ContextOptions& options,
                           const std::vector<std::string>& searchPaths)
    : _description(description), _assetsScope(_assets) {
    _libraryFolders.push_back(description.folder.empty() ? "." : description.folder);
    _libraryFolders.insert(_libraryFolders.end(), searchPaths.begin(), searchPaths.end());
    _libraryFolders.push_back(GetShaderFolder());
    for (const std::string& folder : _libraryFolders) {
        _assets.AddSearchPath(Path(folder));
    }
    Result result;
    _pContext.reset(OpenKL::CreateContext(options, &result));
    if (_pContext == nullptr) {
        throw SceneError("", result.GetLast());
    }
    _pTexts = std::make_unique<ProgramTexts>(*_pContext);
    _pManager = std::make_unique<MgrEffects>();
    if (!_pManager->Init(&_console.GetManager(), _pContext.get(), &result)) {
        throw SceneError("", "the effects manager can't be started\n" + _console.Take());
    }
    _LoadLibraries();
    _DeclareVariables();
    _LoadTextures();
    _pShaders = std::make_unique<SceneShaders>(description, _libraries, _textures, *_pManager,
                                               _console);
    _MakeEffects();
    _MakePrimitives();
    _AssignRoles();
}

SceneSession::~SceneSession() = default;

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

std::vector<std::string> SceneSession::_FindLibraries(const std::string& name) const {
    std::error_code ignored;
    for (const std::string& folder : _libraryFolders) {
        const std::filesystem::path path = std::filesystem::path(folder) / name;
        if (std::filesystem::is_directory(path, ignored)) {
            return GetLibrariesIn(path.string());
        }
    }
    return {name};
}

void SceneSession::_LoadLibraries() {
    for (std::size_t i = 0; i < _description.libraries.size(); ++i) {
        for (const std::string& library : _FindLibraries(_description.libraries[i])) {
            Result result;
            if (!_pManager->AddLibrary(library, &result)) {
                _console.Fail(_description.nodesOfLibraries[i],
                              "the library '" + library + "' can't be loaded", result);
            }
            _libraries.push_back(library);
            _console.Take();
        }
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
            _console.Fail(output.node, "the output '" + output.name + "' exists with another type", {});
        }
        _pManager->SetOutputAttachmentIndex(output.name, output.attachment);
    }
}

void SceneSession::_LoadTextures() {
    for (const SceneDescription::Texture& texture : _description.textures) {
        const auto held = _description.images.find(texture.file);
        Image read;
        if (held == _description.images.end()) {
            try {
                read = _ReadTexture(_FindFile(texture.file), texture.isSrgb);
            } catch (const std::exception& error) {
                texture.node.Get("file").Fail(error.what());
            }
        }
        const Image& stored = held == _description.images.end() ? read : held->second;
        const Image table = texture.isImportance ? MakeImportanceTable(stored) : Image();
        const Image& image = texture.isImportance ? table : stored;
        // Values between two entries of a table would mean nothing.
        const int filter = texture.isImportance ? KL_NEAREST : texture.filter;
        IKLTexImage2D* const texImage = _pContext->CreateTexImage2D();
        if (texImage == nullptr ||
            !texImage->Init(image.width, image.height, IKLTexImage2D::kFormat_RGBA32F, texture.wrap,
                            filter, filter, image.rgba.data(), false)) {
            texture.node.Get("file").Fail("the image does not fit into texture memory");
        }
        _textures[texture.name] = texImage;
    }
}

void SceneSession::_MakeEffects() {
    for (const SceneDescription::Effect& described : _description.effects) {
        IEffect* const effect = described.kind == SceneDescription::kEffect_Surface
                                    ? _pManager->CreateEffectSurface()
                                : described.kind == SceneDescription::kEffect_Renderer
                                    ? _pManager->CreateEffectRenderer()
                                    : _pManager->CreateEffectPrefix();
        if (effect == nullptr) {
            _console.Fail(described.node, "the effect can't be made", {});
        }
        effect->SetName(described.name);
        _effects.push_back(effect);
        _programs.emplace_back();
        _watches.push_back(std::make_unique<EffectWatch>(described.name, effect));
        const JsonNode root = described.node.Get("root");
        IShader* const shader = _pShaders->Find(described.root, root);
        // The library leaves such an effect uncompiled without a word.
        const char* const entry =
            described.kind == SceneDescription::kEffect_Renderer ? "Render" : "Shade";
        if (!shader->HasMethod(entry)) {
            root.Fail("class '" + shader->GetClassName() + "' has no method '" + entry +
                      "', which the effect would run");
        }
        if (!effect->SetRoot(shader)) {
            _console.Fail(root, "the shader '" + described.root + "' can't be a root", {});
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
    const std::size_t dot = path.rfind('.');
    const std::string shaderName = dot == std::string::npos ? effect.root : path.substr(0, dot);
    const std::string name = dot == std::string::npos ? path : path.substr(dot + 1);
    IShader* const shader = _pShaders->Find(shaderName, value);
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
        OpenKL::SetMesh(primitive, OpenKL::MakeSphere(size(0), described.segments, std::max(described.segments / 2, 2)));
        return;
    case SceneDescription::kShape_Box:
        OpenKL::SetMesh(primitive, OpenKL::MakeBox({size(0), size(1), size(2)}));
        return;
    case SceneDescription::kShape_Disc:
        OpenKL::SetMesh(primitive, OpenKL::MakeDisc(size(0), described.segments));
        return;
    case SceneDescription::kShape_Mesh:
        break;
    }
    const auto held = _description.meshes.find(described.file);
    if (held != _description.meshes.end()) {
        _SetMesh(primitive, held->second);
        return;
    }
    MeshData mesh;
    try {
        mesh = ReadMesh(_FindFile(described.file), described.isFitted);
    } catch (const std::exception& error) {
        described.node.Get("file").Fail(error.what());
    }
    _SetMesh(primitive, mesh);
}

OpenKL::IPrimitive* SceneSession::_MakeRole(const char* key, const std::string& effect,
                                            SceneDescription::EffectKind kind) {
    const JsonNode node = JsonNode(*_description.json, "").Get(key);
    const std::size_t index = _FindEffect(effect, node);
    if (_description.effects[index].kind != kind) {
        node.Fail("'" + effect + "' is no " + _NameOf(kind) + " effect");
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
        _UpdateEffect(i);
    }
    _console.Take();
}

void SceneSession::_UpdateEffect(std::size_t index) {
    IEffect& effect = *_effects[index];
    const SceneDescription::Effect& described = _description.effects[index];
    Result result;
    _pTexts->Clear();
    const bool isUpdated = effect.Update(&result);
    const std::string texts = _pTexts->Print();
    if (!texts.empty()) {
        _programs[index] = std::string("// ==== ") + _NameOf(described.kind) + " effect " +
                           described.name + "\n" + texts;
    }
    // A program that doesn't link leaves the effect dirty, while Update goes on.
    if (!isUpdated || !effect.IsCompiled()) {
        IShader* root = nullptr;
        effect.GetRoot(root);
        _pShaders->CheckConnected(*root, described.node);
        const std::vector<std::string>& messages = result.GetMessages();
        if (std::any_of(messages.begin(), messages.end(), [](const std::string& message) {
                return message.find("is incomplete") != std::string::npos;
            })) {
            _pShaders->CheckClassesConnected(described.node);
        }
        _console.Fail(described.node, "the effect '" + described.name + "' can't be compiled",
                      result);
    }
}

std::vector<EffectCount> SceneSession::GetCounts() const {
    std::vector<EffectCount> counts;
    for (const auto& watch : _watches) {
        counts.push_back(watch->GetCount());
    }
    return counts;
}

std::string SceneSession::GetPrograms() const {
    std::string all;
    for (const std::string& program : _programs) {
        all += program;
    }
    return all;
}

} // namespace Tolen::Scene
