#pragma once

#include "TolenOpenKL/IContext.h"

#include "TolenCore/CreationOrder.h"

#include <string>
#include <vector>

namespace Tolen::Scene {

/// Keeps the last text of each part of the programs that a context is given.
class ProgramTexts : public CreationOrder {
public:
    /// @param context borrowed
    explicit ProgramTexts(OpenKL::IContext& context);
    ~ProgramTexts();
    ProgramTexts(const ProgramTexts&) = delete;
    ProgramTexts& operator=(const ProgramTexts&) = delete;

    /// Forgets all texts, ahead of the next program.
    void Clear() { _parts.clear(); }

    /// The parts, each under a heading such as "// ---- root": the root, what it is linked with, the
    /// vertex stage.
    std::string Print() const;

private:
    enum Stage { kStage_Root, kStage_Graph, kStage_Vertex, kStageCount };

    struct Part {
        Stage stage;
        std::string name; ///< of the shader
        std::string text;
    };

    bool _OnText(const IKLShader& shader, const std::string& text);

    OpenKL::IContext& _context;
    std::vector<Part> _parts;
};

} // namespace Tolen::Scene
