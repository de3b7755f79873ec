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

    /// Names the program for messages.
    virtual void SetName(const std::string& name) = 0;
    /// The name; empty for a new program.
    virtual const std::string& GetName() const = 0;

    /// Attaches a shader, borrowed; one that is attached already answers true. A shader that is
    /// destroyed is detached by that.
    /// @return false for null and for a shader of another context
    virtual bool AddShader(IKLShader* shader) = 0;
    /// Takes a shader off. What is linked stays as it is until the next link.
    /// @return false when the shader isn't attached
    virtual bool DetachShader(IKLShader* shader) = 0;

    /// Links what is attached and replaces what was linked before; then runs the link listeners.
    /// @param result takes the messages of a failure; null drops them
    /// @return false when the shaders don't fit together or one has no code, and nothing is linked
    ///         then
    virtual bool Link(Result* result) = 0;

    /// The location of a uniform, negative where the program does not use the name. Locations hold
    /// until the next link.
    virtual int GetUniformLocation(const std::string& name) const = 0;
    /// The location of a uniform block; negative where the program does not use the name.
    virtual int GetUniformBlockLocation(const std::string& name) const = 0;
    /// The location of a vertex attribute; negative where the program does not use the name.
    virtual int GetAttributeLocation(const std::string& name) const = 0;

    /// The handle for klUseProgram; never 0.
    virtual KLprogram GetHandle() const = 0;

    /// Adds a listener that runs after every good link. The answers of listeners are not looked at.
    /// @return true
    virtual bool AddListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) = 0;
    /// Takes a listener of AddListenerLink() off. @return true
    virtual bool RemoveListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) = 0;
};

} // namespace Tolen
