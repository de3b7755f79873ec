#include "support/RecordingProgram.h"

#include "support/DeclaredNames.h"
#include "support/RecordingBindings.h"
#include "support/RecordingContext.h"

#include "TolenCore/Result.h"

#include <algorithm>

namespace Tolen::Tests {

RecordingProgram::RecordingProgram(RecordingContext& context, const std::string& id)
    : _context(context), _id(id) {
    // Numbers are never used again, so that a stale handle meets nothing.
    static KLprogram last = 0;
    _handle = ++last;
    RecordingBindings::Get().programs[_handle] = this;
}

RecordingProgram::~RecordingProgram() {
    RecordingBindings::Get().programs.erase(_handle);
}

std::vector<std::string> RecordingProgram::GetUniforms() const {
    std::vector<std::string> names;
    for (const auto& [name, location] : _uniforms) {
        if (location >= 0) {
            names.resize(std::max(names.size(), static_cast<std::size_t>(location) + 1));
            names[static_cast<std::size_t>(location)] = name;
        }
    }
    return names;
}

void RecordingProgram::SetName(const std::string& name) {
    _name = name;
    _context.GetLog().Record("SetName", _id + " \"" + name + "\"");
}

bool RecordingProgram::AddShader(IKLShader* shader) {
    auto* recording = static_cast<RecordingShader*>(shader);
    const std::string id = recording == nullptr ? "null" : recording->GetId();
    const bool good = _context.GetLog().Begin("AddShader") && recording != nullptr;
    if (good && std::find(_shaders.begin(), _shaders.end(), recording) == _shaders.end()) {
        _shaders.push_back(recording);
    }
    return _context.GetLog().End("AddShader", _id + " " + id, good);
}

bool RecordingProgram::DetachShader(IKLShader* shader) {
    auto* recording = static_cast<RecordingShader*>(shader);
    const auto found = std::find(_shaders.begin(), _shaders.end(), recording);
    const bool good = _context.GetLog().Begin("DetachShader") && found != _shaders.end();
    // A shader that isn't attached may be dead: it is not touched.
    const std::string id = found == _shaders.end() ? "unknown" : recording->GetId();
    if (good) {
        _shaders.erase(found);
    }
    return _context.GetLog().End("DetachShader", _id + " " + id, good);
}

void RecordingProgram::Forget(RecordingShader* shader) {
    _shaders.erase(std::remove(_shaders.begin(), _shaders.end(), shader), _shaders.end());
}

bool RecordingProgram::Link(Result* result) {
    RecordingLog& log = _context.GetLog();
    bool good = log.Begin("Link") && !_shaders.empty();
    for (const RecordingShader* shader : _shaders) {
        good = good && shader->HasCode();
    }
    log.End("Link", _id, good);
    if (!good) {
        if (result != nullptr) {
            result->Add("program \"%s\" did not link", _name.c_str());
        }
        return false;
    }
    _uniforms.clear();
    _blocks.clear();
    _attributes.clear();
    for (const RecordingShader* shader : _shaders) {
        const DeclaredNames names = FindDeclaredNames(shader->GetText());
        _AddLocations(_uniforms, names.uniforms);
        _AddLocations(_blocks, names.blocks);
        _AddLocations(_attributes, names.attributes);
    }
    _isLinked = true;
    _listenersLink.FireAll(this);
    return true;
}

void RecordingProgram::_AddLocations(Locations& locations,
                                     const std::vector<std::string>& names) const {
    for (const std::string& name : names) {
        if (!_context.IsUnused(name)) {
            locations.emplace(name, static_cast<int>(locations.size()));
        }
    }
}

int RecordingProgram::_Find(const Locations& locations, const std::string& name) {
    const auto found = locations.find(name);
    return found == locations.end() ? -1 : found->second;
}

int RecordingProgram::GetUniformLocation(const std::string& name) const {
    return _Find(_uniforms, name);
}

int RecordingProgram::GetUniformBlockLocation(const std::string& name) const {
    return _Find(_blocks, name);
}

int RecordingProgram::GetAttributeLocation(const std::string& name) const {
    return _Find(_attributes, name);
}

bool RecordingProgram::AddListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) {
    return _listenersLink.Add(listener);
}

bool RecordingProgram::RemoveListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) {
    return _listenersLink.Remove(listener);
}

} // namespace Tolen::Tests
