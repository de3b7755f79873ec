#pragma once

#include "support/DeclaredNames.h"

#include "TolenOpenKLWrapper/IOpenKLContext.h"

#include "TolenCore/ListenerSet.h"

#include <algorithm>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace Tolen::Benchmarks {

/// An OpenKL that does next to nothing, so that what is measured is the library above it: shaders
/// keep their text, programs give a location to every uniform that the texts declare, and
/// primitives count what is written.

class NullShader : public IKLShader {
public:
    explicit NullShader(Type type) : _type(type) {}

    const std::string& GetText() const { return _text; }

    Type GetType() const override { return _type; }
    void SetName(const std::string& name) override { _name = name; }
    const std::string& GetName() const override { return _name; }
    bool SetString(const std::string& text, Result*) override {
        _text = text;
        return true;
    }

private:
    Type _type;
    std::string _name;
    std::string _text;
};

class NullProgram : public IKLProgram {
public:
    void SetName(const std::string& name) override { _name = name; }
    const std::string& GetName() const override { return _name; }
    bool AddShader(IKLShader* shader) override {
        if (std::find(_shaders.begin(), _shaders.end(), shader) == _shaders.end()) {
            _shaders.push_back(static_cast<NullShader*>(shader));
        }
        return true;
    }
    bool DetachShader(IKLShader* shader) override {
        _shaders.erase(std::remove(_shaders.begin(), _shaders.end(), shader), _shaders.end());
        return true;
    }
    bool Link(Result*) override {
        _uniforms.clear();
        _blocks.clear();
        for (const NullShader* shader : _shaders) {
            const Tolen::Tests::DeclaredNames names =
                Tolen::Tests::FindDeclaredNames(shader->GetText());
            _Number(_uniforms, names.uniforms);
            _Number(_blocks, names.blocks);
        }
        _listenersLink.FireAll(this);
        return true;
    }
    int GetUniformLocation(const std::string& name) const override {
        return _Find(_uniforms, name);
    }
    int GetUniformBlockLocation(const std::string& name) const override {
        return _Find(_blocks, name);
    }
    int GetAttributeLocation(const std::string&) const override { return -1; }
    KLprogram GetHandle() const override { return 0; }
    bool AddListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) override {
        return _listenersLink.Add(listener);
    }
    bool RemoveListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) override {
        return _listenersLink.Remove(listener);
    }

private:
    using Locations = std::unordered_map<std::string, int>;

    static void _Number(Locations& locations, const std::vector<std::string>& names) {
        for (const std::string& name : names) {
            locations.emplace(name, static_cast<int>(locations.size()));
        }
    }
    static int _Find(const Locations& locations, const std::string& name) {
        const auto found = locations.find(name);
        return found == locations.end() ? -1 : found->second;
    }

    std::string _name;
    std::vector<NullShader*> _shaders;
    Locations _uniforms;
    Locations _blocks;
    ListenerSet<FastDelegate1<IKLProgram*, bool>> _listenersLink;
};

class NullPrimitive : public IKLPrimitive {
public:
    long long GetCountWrites() const { return _countWrites; }

    KLprimitive GetHandle() const override { return KL_NO_PRIMITIVE; }
    void Bind() override {}
    void Unbind() override {}
#define TOLEN_DEFINE_UNIFORM(T)                                                                    \
    bool SetUniform(const std::string&, int location, const T&) override {                         \
        return _Write(location);                                                                   \
    }                                                                                              \
    bool SetUniformArray(const std::string&, int location, int, const T*) override {               \
        return _Write(location);                                                                   \
    }
    TOLEN_UNIFORM_TYPES(TOLEN_DEFINE_UNIFORM)
#undef TOLEN_DEFINE_UNIFORM
    bool SetUniformBlock(const std::string&, int location, IKLBuffer*) override {
        return _Write(location);
    }
    bool SetUniformTexture(const std::string&, int location, KLtexture) override {
        return _Write(location);
    }

private:
    bool _Write(int location) {
        _countWrites += location < 0 ? 0 : 1;
        return location >= 0;
    }

    long long _countWrites = 0;
};

/// Makes no buffers and no images.
class NullContext : public IOpenKLContext {
public:
    IKLShader* CreateShader(IKLShader::Type type) override { return new NullShader(type); }
    void DestroyShader(IKLShader* shader) override {
        for (NullProgram* program : _programs) {
            program->DetachShader(shader);
        }
        delete shader;
    }
    IKLProgram* CreateProgram() override {
        _programs.push_back(new NullProgram);
        return _programs.back();
    }
    void DestroyProgram(IKLProgram* program) override {
        _programs.erase(std::remove(_programs.begin(), _programs.end(), program), _programs.end());
        delete program;
    }
    IKLBuffer* CreateBuffer() override { return nullptr; }
    void DestroyBuffer(IKLBuffer*) override {}
    IKLTexImage2D* CreateTexImage2D() override { return nullptr; }
    void DestroyTexImage2D(IKLTexImage2D*) override {}
    bool AreDifferentialsEnabled() const override { return false; }
    bool AreFilteredAccumulatesEnabled() const override { return false; }

private:
    std::vector<NullProgram*> _programs; ///< alive, borrowed
};

} // namespace Tolen::Benchmarks
