#pragma once

#include <string>

namespace Tolen {

class Result;

/// One text of a program, for one stage.
class IKLShader {
public:
    enum Type {
        kType_Ray = 0,
        kType_Vertex = 1,
        kType_Frame = 2,
        kType_PrefixRay = 3,
    };

    virtual ~IKLShader() = default;

    virtual Type GetType() const = 0;

    /// Names the shader for messages.
    virtual void SetName(const std::string& name) = 0;
    virtual const std::string& GetName() const = 0;

    /// Compiles @p text. On refusal the messages go to @p result as one message, whose lines have
    /// the form "String 0 Line 12: error: ..."; the shader then has no code.
    /// @param result null drops the messages
    virtual bool SetString(const std::string& text, Result* result) = 0;
};

} // namespace Tolen
