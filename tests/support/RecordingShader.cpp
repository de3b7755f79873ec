#include "support/RecordingShader.h"

#include "support/RecordingContext.h"

#include "TolenCore/Result.h"

namespace Tolen::Tests {

void RecordingShader::SetName(const std::string& name) {
    _name = name;
    _context.GetLog().Record("SetName", _id + " \"" + name + "\"");
}

bool RecordingShader::SetString(const std::string& text, Result* result) {
    _text = text;
    _hasCode = _context.GetLog().Record("SetString", _id);
    if (!_hasCode && result != nullptr) {
        result->Add("%s", _context.GetCompileError().c_str());
    }
    return _hasCode;
}

} // namespace Tolen::Tests
