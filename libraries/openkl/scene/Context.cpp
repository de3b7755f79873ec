#include "scene/Context.h"

#include "engine/InstructionSet.h"
#include "render/Framebuffer.h"
#include "render/Renderer.h"
#include "scene/Buffer.h"
#include "scene/ObjectRegistry.h"
#include "scene/Primitive.h"
#include "scene/Program.h"
#include "scene/Shader.h"
#include "scene/TexImage2D.h"

#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <exception>

namespace Tolen::OpenKL {

namespace {

/// Makes an object, or null when memory runs out.
template <class T, class... Args>
T* Make(OwnedObjects<T>& objects, Args&&... args) {
    try {
        return objects.Add(std::make_unique<T>(args...));
    } catch (const std::exception&) {
        return nullptr;
    }
}

InstructionSet ToInstructionSet(InstructionChoice choice) {
    switch (choice) {
    case kInstructions_Baseline:
        return InstructionSet::Baseline;
    case kInstructions_Avx2:
        return InstructionSet::Avx2;
    case kInstructions_Avx512:
        return InstructionSet::Avx512;
    case kInstructions_Best:
        break;
    }
    return GetBestInstructionSet();
}

/// What is wrong with options, or null.
const char* FindProblem(const ContextOptions& options) {
    const Limits& limits = options.limits;
    if (options.threads < 0 || options.threads > 1024) {
        return "the number of threads must be 0 to 1024";
    }
    if (limits.depth < 0 || limits.depth > 65536) {
        return "the limit of depth must be 0 to 65536";
    }
    if (limits.raysInFlight < 64 || limits.raysInFlight > 16'777'216) {
        return "the limit of rays in flight must be 64 to 16777216";
    }
    if (limits.loopSteps < 1 || limits.imageSide < 1 || limits.imagePixels < 1 ||
        limits.textureBytes < 0) {
        return "the limits of loop steps, image sides and image pixels must be above 0, that of "
               "texture memory not below 0";
    }
    if (!IsSupported(ToInstructionSet(options.instructions))) {
        return "this machine doesn't have the instructions that were asked for";
    }
    return nullptr;
}

} // namespace

Context::Context(const ContextOptions& options)
    : _options(options),
      _pRenderer(std::make_unique<Renderer>(*this, ToInstructionSet(options.instructions))) {}

Context::~Context() {
    // What refers to others goes first.
    _pRenderer.reset();
    _primitives.Clear();
    _programs.Clear();
    _shaders.Clear();
}

bool Context::IsUsable() const {
    return _pRenderer->IsUsable();
}

IKLShader* Context::CreateShader(IKLShader::Type type) {
    return Make(_shaders, *this, type);
}
void Context::DestroyShader(IKLShader* shader) {
    _shaders.Remove(shader);
}
IKLProgram* Context::CreateProgram() {
    return Make(_programs, *this);
}
void Context::DestroyProgram(IKLProgram* program) {
    _programs.Remove(program);
}
IKLBuffer* Context::CreateBuffer() {
    return Make(_buffers);
}
void Context::DestroyBuffer(IKLBuffer* buffer) {
    _buffers.Remove(buffer);
}
IKLTexImage2D* Context::CreateTexImage2D() {
    return Make(_images, *this);
}

void Context::DestroyTexImage2D(IKLTexImage2D* image) {
    _images.Remove(image);
    OnTexturesChanged();
}

IPrimitive* Context::CreatePrimitive() {
    Primitive* const primitive = Make(_primitives, *this);
    if (primitive != nullptr) {
        _primitivesByHandle.emplace(primitive->GetHandle(), primitive);
    }
    return primitive;
}

void Context::DestroyPrimitive(IKLPrimitive* primitive) {
    Primitive* const own = _primitives.Find(primitive);
    if (own == nullptr) {
        return;
    }
    for (Primitive** role : {&_pFrame, &_pPrefix, &_pMiss}) {
        *role = *role == own ? nullptr : *role;
    }
    _primitivesByHandle.erase(own->GetHandle());
    _primitives.Remove(own);
}

IPrimitive* Context::FindPrimitive(KLprimitive handle) const {
    const auto found = _primitivesByHandle.find(handle);
    return found == _primitivesByHandle.end() ? nullptr : found->second;
}

IFramebuffer* Context::CreateFramebuffer(int width, int height, Result* result) {
    const bool isSized = width > 0 && height > 0 && width <= _options.limits.imageSide &&
                         height <= _options.limits.imageSide &&
                         std::int64_t{width} * height <= _options.limits.imagePixels;
    Framebuffer* const framebuffer = isSized ? Make(_framebuffers, width, height) : nullptr;
    if (framebuffer == nullptr && result != nullptr) {
        result->Add("a framebuffer of %d x %d pixels %s", width, height,
                    isSized ? "finds no memory" : "is empty or above the limits");
    }
    return framebuffer;
}

void Context::DestroyFramebuffer(IFramebuffer* framebuffer) {
    _framebuffers.Remove(framebuffer);
}

void Context::SetFramePrimitive(IKLPrimitive* primitive) {
    _pFrame = _primitives.Find(primitive);
}
void Context::SetPrefixPrimitive(IKLPrimitive* primitive) {
    _pPrefix = _primitives.Find(primitive);
}
void Context::SetMissPrimitive(IKLPrimitive* primitive) {
    _pMiss = _primitives.Find(primitive);
}
IPrimitive* Context::GetFramePrimitive() const {
    return _pFrame;
}
IPrimitive* Context::GetPrefixPrimitive() const {
    return _pPrefix;
}
IPrimitive* Context::GetMissPrimitive() const {
    return _pMiss;
}

bool Context::Prepare(Result* result) {
    return _pRenderer->Prepare(result);
}

RenderOutcome Context::Render(IFramebuffer* framebuffer, const RenderSettings& settings,
                              Result* result) {
    Framebuffer* const own = _framebuffers.Find(framebuffer);
    if (own == nullptr) {
        if (result != nullptr) {
            result->Add("there is no framebuffer of this context to render into");
        }
        return kRender_Failed;
    }
    return _pRenderer->Render(*own, settings, result);
}

void Context::Cancel() {
    _pRenderer->Cancel();
}

void Context::ResetStatistics() {
    _statistics = Statistics();
    _pRenderer->ForgetTold();
}

Shader* Context::FindShader(const IKLShader* shader) const {
    return _shaders.Find(shader);
}
Buffer* Context::FindBuffer(const IKLBuffer* buffer) const {
    return _buffers.Find(buffer);
}

bool Context::AcquireTextureBytes(std::int64_t bytes) {
    if (bytes > _options.limits.textureBytes - _textureBytes) {
        if (IMgrConsole* const console = GetMgrConsole()) {
            console->Error("OpenKL: an image of %lld bytes passes the limit of %lld bytes of "
                           "texture memory, of which %lld are in use\n",
                           static_cast<long long>(bytes),
                           static_cast<long long>(_options.limits.textureBytes),
                           static_cast<long long>(_textureBytes));
        }
        return false;
    }
    _textureBytes += bytes;
    return true;
}

void Context::OnTexturesChanged() {
    _textureVersion = MakeStamp();
}

IContext* CreateContext(const ContextOptions& options, Result* result) {
    const char* problem = FindProblem(options);
    std::unique_ptr<Context> context;
    if (problem == nullptr) {
        try {
            context = std::make_unique<Context>(options);
            problem = context->IsUsable() ? nullptr : "rays can't be traced on this machine";
        } catch (const std::exception&) {
            problem = "out of memory";
        }
    }
    if (problem != nullptr) {
        if (result != nullptr) {
            result->Add("%s", problem);
        }
        return nullptr;
    }
    return context.release();
}

void DestroyContext(IContext* context) {
    delete static_cast<Context*>(context);
}

} // namespace Tolen::OpenKL
