#pragma once

#include "scene/OwnedObjects.h"

#include "TolenOpenKL/IContext.h"

#include "TolenCore/ListenerSet.h"

#include <cstdint>
#include <memory>
#include <unordered_map>

namespace Tolen::OpenKL {

class Buffer;
class Framebuffer;
class Primitive;
class Program;
class Renderer;
class Shader;
class TexImage2D;

/// The factory and owner of all objects, and what they share.
class Context final : public IContext {
public:
    explicit Context(const ContextOptions& options);
    ~Context() override;
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    /// Whether rays can be traced on this machine.
    bool IsUsable() const;

    IKLShader* CreateShader(IKLShader::Type type) override;
    void DestroyShader(IKLShader* shader) override;
    IKLProgram* CreateProgram() override;
    void DestroyProgram(IKLProgram* program) override;
    IKLBuffer* CreateBuffer() override;
    void DestroyBuffer(IKLBuffer* buffer) override;
    IKLTexImage2D* CreateTexImage2D() override;
    void DestroyTexImage2D(IKLTexImage2D* image) override;
    bool AreDifferentialsEnabled() const override { return _options.differentials; }
    bool AreFilteredAccumulatesEnabled() const override { return _options.filteredAccumulates; }

    const ContextOptions& GetOptions() const override { return _options; }
    IPrimitive* CreatePrimitive() override;
    void DestroyPrimitive(IKLPrimitive* primitive) override;
    IPrimitive* FindPrimitive(KLprimitive handle) const override;
    IFramebuffer* CreateFramebuffer(int width, int height, Result* result) override;
    void DestroyFramebuffer(IFramebuffer* framebuffer) override;
    void SetFramePrimitive(IKLPrimitive* primitive) override;
    void SetPrefixPrimitive(IKLPrimitive* primitive) override;
    void SetMissPrimitive(IKLPrimitive* primitive) override;
    IPrimitive* GetFramePrimitive() const override;
    IPrimitive* GetPrefixPrimitive() const override;
    IPrimitive* GetMissPrimitive() const override;
    bool Prepare(Result* result) override;
    RenderOutcome Render(IFramebuffer* framebuffer, const RenderSettings& settings,
                         Result* result) override;
    void Cancel() override;
    bool
    AddListenerText(FastDelegate2<const IKLShader&, const std::string&, bool>& listener) override {
        return _listenersText.Add(listener);
    }
    bool RemoveListenerText(
        FastDelegate2<const IKLShader&, const std::string&, bool>& listener) override {
        return _listenersText.Remove(listener);
    }
    Statistics GetStatistics() const override { return _statistics; }
    void ResetStatistics() override;

    /// Null for objects of other contexts, and for null.
    Shader* FindShader(const IKLShader* shader) const;
    Buffer* FindBuffer(const IKLBuffer* buffer) const;

    const OwnedObjects<Primitive>& GetPrimitives() const { return _primitives; }
    const OwnedObjects<TexImage2D>& GetImages() const { return _images; }
    Primitive* GetFrame() const { return _pFrame; }
    Primitive* GetPrefix() const { return _pPrefix; }
    Primitive* GetMiss() const { return _pMiss; }

    /// What the objects count into.
    Statistics& GetCounters() { return _statistics; }

    /// Tells the listeners of a text that @p shader is given.
    void OnText(const IKLShader& shader, const std::string& text) {
        _listenersText.FireAll(shader, text);
    }

    /// Counts @p bytes against the limit of texture memory. @return false, counting nothing, and a
    ///         message on the console when they pass it
    bool AcquireTextureBytes(std::int64_t bytes);
    void ReleaseTextureBytes(std::int64_t bytes) { _textureBytes -= bytes; }
    /// Tells that images came, changed or went.
    void OnTexturesChanged();
    std::uint64_t GetTextureVersion() const { return _textureVersion; }

private:
    ContextOptions _options;
    Statistics _statistics;
    ListenerSet<FastDelegate2<const IKLShader&, const std::string&, bool>> _listenersText;
    std::int64_t _textureBytes = 0;
    std::uint64_t _textureVersion = 0;

    OwnedObjects<Shader> _shaders;
    OwnedObjects<Program> _programs;
    OwnedObjects<Buffer> _buffers;
    OwnedObjects<TexImage2D> _images;
    OwnedObjects<Primitive> _primitives;
    std::unordered_map<int, Primitive*> _primitivesByHandle;
    OwnedObjects<Framebuffer> _framebuffers;
    Primitive* _pFrame = nullptr;  ///< one of _primitives
    Primitive* _pPrefix = nullptr; ///< one of _primitives
    Primitive* _pMiss = nullptr;   ///< one of _primitives
    std::unique_ptr<Renderer> _pRenderer;
};

} // namespace Tolen::OpenKL
