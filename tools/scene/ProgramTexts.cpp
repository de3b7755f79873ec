#include "scene/ProgramTexts.h"

#include "TolenOpenKLWrapper/IKLShader.h"

#include "TolenCore/FastDelegate.h"

#include <algorithm>

namespace Tolen::Scene {

ProgramTexts::ProgramTexts(OpenKL::IContext& context) : _context(context) {
    auto onText = MakeDelegate(this, &ProgramTexts::_OnText);
    _context.AddListenerText(onText);
}

ProgramTexts::~ProgramTexts() {
    auto onText = MakeDelegate(this, &ProgramTexts::_OnText);
    _context.RemoveListenerText(onText);
}

std::string ProgramTexts::Print() const {
    static constexpr const char* kHeadings[kStageCount] = {"root", "graph", "vertex"};
    std::string all;
    for (int stage = 0; stage < kStageCount; ++stage) {
        for (const Part& part : _parts) {
            if (part.stage == stage && !part.text.empty()) {
                all += std::string("// ---- ") + kHeadings[stage] + "\n" + part.text;
                all += part.text.back() == '\n' ? "" : "\n";
            }
        }
    }
    return all;
}

bool ProgramTexts::_OnText(const IKLShader& shader, const std::string& text) {
    const Stage stage = shader.GetType() == IKLShader::kType_Vertex ? kStage_Vertex
                        : shader.GetName().ends_with("_root")       ? kStage_Root
                                                                    : kStage_Graph;
    const auto same = std::find_if(_parts.begin(), _parts.end(), [&](const Part& part) {
        return part.stage == stage && part.name == shader.GetName();
    });
    if (same != _parts.end()) {
        same->text = text;
    } else {
        _parts.push_back({stage, shader.GetName(), text});
    }
    return true;
}

} // namespace Tolen::Scene
