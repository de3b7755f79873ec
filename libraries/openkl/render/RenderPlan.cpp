#include "render/RenderPlan.h"

#include "compiler/LinkedProgram.h"
#include "render/Reports.h"
#include "scene/Context.h"
#include "scene/Primitive.h"
#include "scene/Program.h"
#include "scene/Scene.h"
#include "scene/SceneObject.h"
#include "scene/ThreadTeam.h"

#include "TolenOpenKL/RenderSettings.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace Tolen::OpenKL {

namespace {

bool IsOfStage(const std::shared_ptr<const LinkedCode>& code, Stage stage) {
    return code != nullptr && code->program->shading.stage == stage;
}

std::vector<Interpolation> ListInterpolations(const LinkedCode& code) {
    std::vector<Interpolation> list;
    const KernelLayout& layout = code.main->GetLayout();
    for (std::size_t i = 0; i < layout.varyings.size(); ++i) {
        const LinkedVarying& varying = code.program->varyings[i];
        if (varying.isRead) {
            list.push_back({.firstWord = layout.varyings[i].firstWord,
                            .wordCount = layout.varyings[i].wordCount,
                            .isFlat = varying.type.base != kBase_Float,
                            .isNormalized = varying.type.IsVector() &&
                                            (varying.kind == kVarying_Normalized ||
                                             varying.kind == kVarying_TransformedNormalized)});
        }
    }
    return list;
}

} // namespace

RenderPlan::RenderPlan(Context& context, Scene& scene, ThreadTeam& team,
                       const RenderSettings& settings, int width, int height, Reports& reports) {
    BatchConstants constants;
    constants.resolution[0] = static_cast<float>(width);
    constants.resolution[1] = static_cast<float>(height);
    constants.sampleCount =
        settings.sampleCount > 0 ? settings.sampleCount : settings.firstSample + settings.samples;
    constants.time = settings.time;

    std::vector<SceneObject*> shading;
    for (const auto& [handle, object] : scene.GetObjects()) {
        const Primitive* const primitive = &object->GetPrimitive();
        if (primitive == context.GetFrame() && IsOfStage(object->GetCode(), kStage_Frame)) {
            _pFrame = std::make_unique<PlanPrimitive>(
                _MakePrimitive(*object, true, constants, team, reports));
        } else if (primitive == context.GetPrefix() &&
                   IsOfStage(object->GetCode(), kStage_Prefix)) {
            _pPrefix = std::make_unique<PlanPrimitive>(
                _MakePrimitive(*object, true, constants, team, reports));
        }
        if (object->geometryNumber != SceneObject::kNone ||
            IsOfStage(object->GetCode(), kStage_Ray)) {
            shading.push_back(object.get());
        }
    }
    // Neighbours share a program.
    std::stable_sort(shading.begin(), shading.end(), [](SceneObject* a, SceneObject* b) {
        const auto serial = [](const SceneObject* object) {
            return object->GetCode() == nullptr ? 0 : object->GetCode()->serial;
        };
        return serial(a) < serial(b);
    });

    _primitiveOfGeometry.assign(scene.GetGeometryCount(), kNone);
    for (SceneObject* object : shading) {
        const auto index = static_cast<std::uint32_t>(_primitives.size());
        const bool isShading = IsOfStage(object->GetCode(), kStage_Ray);
        _primitives.push_back(_MakePrimitive(*object, isShading, constants, team, reports));
        _primitiveOfHandle.emplace(_primitives.back().handle, index);
        if (object->geometryNumber != SceneObject::kNone) {
            _primitiveOfGeometry[object->geometryNumber] = index;
        }
    }
    if (const Primitive* const miss = context.GetMiss()) {
        _miss = FindMissPrimitive(miss->GetHandle());
    }
}

std::uint32_t RenderPlan::FindMissPrimitive(std::int32_t handle) const {
    const auto found = _primitiveOfHandle.find(handle);
    const bool isShading =
        found != _primitiveOfHandle.end() && _primitives[found->second].pProgram != nullptr;
    return isShading ? found->second : kNone;
}

const PlanProgram* RenderPlan::_AddProgram(const std::shared_ptr<const LinkedCode>& code) {
    std::unique_ptr<PlanProgram>& program = _programs[code.get()];
    if (program == nullptr) {
        program = std::make_unique<PlanProgram>();
        program->code = code;
        program->pKernel = code->main.get();
        program->attributePlaces = _attributes.Add(*code);
        program->interpolations = ListInterpolations(*code);
        program->varyingWords = code->main->GetLayout().varyingWords;
        for (const Interpolation& varying : program->interpolations) {
            if (varying.wordCount == 2 && !varying.isFlat && program->coordWord < 0) {
                program->coordWord = varying.firstWord;
            }
        }
    }
    return program.get();
}

/// @param isShading whether the program runs; without it rays end at the primitive
PlanPrimitive RenderPlan::_MakePrimitive(SceneObject& object, bool isShading,
                                         const BatchConstants& constants, ThreadTeam& team,
                                         Reports& reports) {
    const Primitive& primitive = object.GetPrimitive();
    PlanPrimitive made;
    made.pObject = &object;
    made.handle = primitive.GetHandle();
    made.constants = constants;
    std::copy(std::begin(primitive.GetTransform().m), std::end(primitive.GetTransform().m),
              made.constants.transform);
    std::copy(std::begin(primitive.GetInverseTranspose().m),
              std::end(primitive.GetInverseTranspose().m),
              made.constants.transformInverseTranspose);
    if (!isShading) {
        return made;
    }
    const std::shared_ptr<const LinkedCode>& code = object.GetCode();
    made.pProgram = _AddProgram(code);
    KernelThread& thread = team.GetKernelThread();
    if (object.GetBinding().RunSetup(*code->main, made.constants, thread)) {
        ++reports.counters.setupInvocations;
        if (thread.output.stoppedInvocations != 0) {
            reports.Count(kProblem_LoopSteps, made, 1, thread.output.stoppedText,
                          thread.output.stoppedLine);
        }
    }
    made.binding = object.GetBinding().Get();
    return made;
}

} // namespace Tolen::OpenKL
