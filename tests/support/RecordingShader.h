#pragma once

#include "TolenOpenKLWrapper/IKLShader.h"

#include <string>

namespace Tolen::Tests {

class RecordingContext;

/// A shader that keeps its text.
class RecordingShader : public IKLShader {
public:
    RecordingShader(RecordingContext& context, const std::string& id, Type type)
        : _context(context), _id(id), _type(type) {}

    /// What the log calls this shader, such as "shader1".
    const std::string& GetId() const { return _id; }
    /// The last text that was set, accepted or not.
    const std::string& GetText() const { return _text; }
    /// Whether the last text was accepted.
    bool HasCode() const { return _hasCode; }

    Type GetType() const override { return _type; }
    void SetName(const std::string& name) override;
    const std::string& GetName() const override { return _name; }
    bool SetString(const std::string& text, Result* result) override;

private:
    RecordingContext& _context;
    std::string _id;
    Type _type;
    std::string _name;
    std::string _text;
    bool _hasCode = false;
};

} // namespace Tolen::Tests
