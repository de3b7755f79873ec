#pragma once

#include "TolenOpenKLWrapper/kl.h"

#include "TolenCore/FastDelegate.h"

#include <string>

namespace Tolen {

class IKLShader;
class Result;

/// Shaders of one stage kind, and for rays one vertex shader, linked into something that runs.
class IKLProgram {
public:
    virtual ~IKLProgram() = default;

    virtual void SetName(const std::string& name) = 0;
    virtual const std::string& GetName() const = 0;

    /// Attaches a shader, borrowed; one that is attached already answers true. A shader that is
    /// destroyed is detached by that.
    virtual bool AddShader(IKLShader* shader) = 0;
    /// Takes a shader off. What is linked stays as it is until the next link.
    virtual bool DetachShader(IKLShader* shader) = 0;

    /// Links what is attached and replaces what was linked before; then runs the link listeners.
    /// @param result takes the messages of a failure; null drops them
    virtual bool Link(Result* result) = 0;

    /// Locations by name; negative where the program does not use the name. They hold until the
    /// next link.
    virtual int GetUniformLocation(const std::string& name) const = 0;
    virtual int GetUniformBlockLocation(const std::string& name) const = 0;
    virtual int GetAttributeLocation(const std::string& name) const = 0;

    /// The handle for klUseProgram.
    virtual KLprogram GetHandle() const = 0;

    /// Listeners that run after every good link. Their answers are not looked at.
    virtual bool AddListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) = 0;
    virtual bool RemoveListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) = 0;
};

} // namespace Tolen
