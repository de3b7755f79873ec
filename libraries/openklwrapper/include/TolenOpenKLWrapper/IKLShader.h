#pragma once

#include <string>

namespace Tolen {

class Result;

/// One text of a program, for one stage.
class IKLShader {
public:
    /// The stage that a text is for.
    enum Type {
        kType_Ray = 0,       ///< shades what rays reach, or miss
        kType_Vertex = 1,    ///< places the vertices of a primitive and computes varyings
        kType_Frame = 2,     ///< runs for each sample of each pixel and spawns camera rays
        kType_PrefixRay = 3, ///< runs for each ray before the program of what it reached
    };

    virtual ~IKLShader() = default;

    /// The stage, which is fixed from the creation on.
    virtual Type GetType() const = 0;

    /// Names the shader for messages.
    virtual void SetName(const std::string& name) = 0;
    /// The name; empty for a new shader.
    virtual const std::string& GetName() const = 0;

    /// Compiles @p text. On refusal the messages go to @p result as one message, whose lines have
    /// the form "String 0 Line 12: error: ..."; the shader then has no code.
    /// @param text   source, copied as far as it is needed
    /// @param result null drops the messages
    /// @return whether the shader has code now
    virtual bool SetString(const std::string& text, Result* result) = 0;
};

} // namespace Tolen
