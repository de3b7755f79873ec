// The API's interfaces over nothing but lines on the terminal: what a renderer of its own has to
// bring, and what the library asks of it.
#include "TolenEffects/IEffect.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKLWrapper/IOpenKLContext.h"
#include "TolenCore/Console.h"
#include "TolenCore/Export.h"
#include <iostream>
#include <string>
using namespace Tolen;
bool Say(const std::string& text) { return !!(std::cout << text << '\n'); }

extern "C" TOLEN_EXPORT void klUseProgram(KLprogram) { Say("use the program"); }
extern "C" TOLEN_EXPORT void klBufferSubData(int, long, long, const void*) { Say("write a block"); }

template <class Base>
struct Named : Base {
    void SetName(const std::string& text) override { name = text; }
    const std::string& GetName() const override { return name; }
    std::string name;
};
struct Shader final : Named<IKLShader> {
    explicit Shader(Type shaderType) : type(shaderType) {}
    Type GetType() const override { return type; }
    // False, with messages "(line): error: text" in the result, for a text with mistakes.
    bool SetString(const std::string& text, Result*) override { return Say("compile:\n" + text); }
    Type type;
};
struct Program final : Named<IKLProgram> {
    bool AddShader(IKLShader* shader) override { return Say("add " + shader->GetName()); }
    bool DetachShader(IKLShader* shader) override { return Say("detach " + shader->GetName()); }
    bool Link(Result*) override { return Say("link"); }
    int GetUniformLocation(const std::string&) const override { return 0; } // negative: not used
    int GetUniformBlockLocation(const std::string&) const override { return 0; }
    int GetAttributeLocation(const std::string&) const override { return 0; }
    KLprogram GetHandle() const override { return 1; }
    bool AddListenerLink(const FastDelegate1<IKLProgram*, bool>&) override { return true; }
    bool RemoveListenerLink(const FastDelegate1<IKLProgram*, bool>&) override { return true; }
};
struct Primitive final : IKLPrimitive {
    KLprimitive GetHandle() const override { return KL_NO_PRIMITIVE; }
    void Bind() override {}
    void Unbind() override {}
#define SET(T)                                                                                     \
    bool SetUniform(const std::string& name, int, const T&) override { return Say("set " + name); } \
    bool SetUniformArray(const std::string& n, int, int, const T*) override { return Say("set " + n); }
    TOLEN_UNIFORM_TYPES(SET)
    bool SetUniformBlock(const std::string& n, int, IKLBuffer*) override { return Say("set " + n); }
    bool SetUniformTexture(const std::string& n, int, KLtexture) override { return Say("set " + n); }
};
struct Context final : IOpenKLContext {
    IKLShader* CreateShader(IKLShader::Type type) override { return new Shader(type); }
    void DestroyShader(IKLShader* shader) override { delete shader; }
    IKLProgram* CreateProgram() override { return new Program; }
    void DestroyProgram(IKLProgram* program) override { delete program; }
    IKLBuffer* CreateBuffer() override { return nullptr; } // for inputs that are arrays
    void DestroyBuffer(IKLBuffer*) override {}
    IKLTexImage2D* CreateTexImage2D() override { return nullptr; }
    void DestroyTexImage2D(IKLTexImage2D*) override {}
    bool AreDifferentialsEnabled() const override { return false; }
    bool AreFilteredAccumulatesEnabled() const override { return false; }
};

int main() {
    Context context;
    Primitive primitive;
    Effects::MgrEffects manager;
    manager.Init(GetMgrConsole(), &context, nullptr);
    manager.AddLibrary("clay", "class Clay { input vec3 tint = vec3(1.0);"
                               "             void Shade() { accumulate(o_color, tint); } }", nullptr);
    Effects::IShader* const clay = manager.CreateShader("Clay");
    Effects::IEffect* const effect = manager.CreateEffectSurface();
    effect->SetRoot(clay);
    effect->CreateReference(&primitive);
    manager.Update(nullptr);
    clay->SetParameter(nullptr, "tint", Vector3f(1.0f, 0.5f, 0.25f)); // a value: set, not compiled
    manager.Update(nullptr);
    manager.Shutdown();
}
