#pragma once

#include "TolenOpenKLWrapper/IKLProgram.h"

#include "TolenCore/ListenerSet.h"

#include <map>
#include <string>
#include <vector>

namespace Tolen::Tests {

class RecordingContext;
class RecordingShader;

/// A program that knows the names its shaders declare.
class RecordingProgram : public IKLProgram {
public:
    RecordingProgram(RecordingContext& context, const std::string& id);
    ~RecordingProgram() override;

    /// What the log calls this program, such as "program1".
    const std::string& GetId() const { return _id; }
    const std::vector<RecordingShader*>& GetShaders() const { return _shaders; }
    bool IsLinked() const { return _isLinked; }
    /// The uniforms of the last link, in the order of their locations.
    std::vector<std::string> GetUniforms() const;
    RecordingContext& GetContext() { return _context; }

    void SetName(const std::string& name) override;
    const std::string& GetName() const override { return _name; }
    bool AddShader(IKLShader* shader) override;
    bool DetachShader(IKLShader* shader) override;
    bool Link(Result* result) override;
    int GetUniformLocation(const std::string& name) const override;
    int GetUniformBlockLocation(const std::string& name) const override;
    int GetAttributeLocation(const std::string& name) const override;
    KLprogram GetHandle() const override { return _handle; }
    bool AddListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) override;
    bool RemoveListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) override;

    /// Takes a shader that dies off the list, without a line in the log.
    void Forget(RecordingShader* shader);

private:
    using Locations = std::map<std::string, int>;

    void _AddLocations(Locations& locations, const std::vector<std::string>& names) const;
    static int _Find(const Locations& locations, const std::string& name);

    RecordingContext& _context;
    std::string _id;
    KLprogram _handle;
    std::string _name;
    std::vector<RecordingShader*> _shaders;
    bool _isLinked = false;
    Locations _uniforms;
    Locations _blocks;
    Locations _attributes;
    ListenerSet<FastDelegate1<IKLProgram*, bool>> _listenersLink;
};

} // namespace Tolen::Tests
