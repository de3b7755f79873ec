#pragma once

#include "render/RayAttributeTable.h"

#include "engine/Batch.h"

#include "TolenOpenKLWrapper/kl.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace Tolen::OpenKL {

class Context;
class Kernel;
class Primitive;
class Reports;
class Scene;
class SceneObject;
class ThreadTeam;
struct LinkedCode;
struct RenderSettings;

/// How a varying goes from the vertices of a triangle to a hit.
struct Interpolation {
    int firstWord; ///< in the rows of the batch and in the record of a vertex
    int wordCount;
    bool isFlat;       ///< not a float: the first vertex decides
    bool isNormalized; ///< to unit length after interpolation
};

/// A program as one render uses it.
struct PlanProgram {
    std::shared_ptr<const LinkedCode> code;
    const Kernel* pKernel = nullptr;
    /// For each word of the program's ray attributes the word in what rays carry.
    std::vector<int> attributePlaces;
    std::vector<Interpolation> interpolations; ///< of the varyings that the program reads
    int varyingWords = 0;
    /// The word of the first two-component varying that is read, by which textures are filtered;
    /// -1 for none.
    int coordWord = -1;
};

/// A primitive as one render uses it. Primitives stand in the order of programs, so that neighbours
/// share code.
struct PlanPrimitive {
    const SceneObject* pObject = nullptr;
    std::int32_t handle = 0;
    const PlanProgram* pProgram = nullptr; ///< null lets rays end here
    PrimitiveBinding binding;
    BatchConstants constants;
};

/// Everything about a scene that stays as it is while a render runs.
class RenderPlan {
public:
    /// The index that stands for no primitive.
    static constexpr std::uint32_t kNone = 0xffffffffu;

    /// Lists programs and primitives, and runs the setups that are due.
    RenderPlan(Context& context, Scene& scene, ThreadTeam& team, const RenderSettings& settings,
               int width, int height, Reports& reports);

    const std::vector<PlanPrimitive>& GetPrimitives() const { return _primitives; }
    const PlanPrimitive& GetPrimitive(std::uint32_t index) const { return _primitives[index]; }
    /// The index of the primitive behind a geometry of the scene.
    std::uint32_t GetPrimitiveOfGeometry(unsigned geometry) const {
        return _primitiveOfGeometry[geometry];
    }
    /// The index of a primitive that can shade rays that miss; kNone for handles without one.
    std::uint32_t FindMissPrimitive(std::int32_t handle) const;

    /// Null when there is none or its program is of another stage.
    const PlanPrimitive* GetFrame() const { return _pFrame.get(); }
    const PlanPrimitive* GetPrefix() const { return _pPrefix.get(); }
    /// The context's miss primitive, or kNone.
    std::uint32_t GetMiss() const { return _miss; }
    int GetRayAttributeWords() const { return _attributes.GetWordCount(); }

private:
    const PlanProgram* _AddProgram(const std::shared_ptr<const LinkedCode>& code);
    PlanPrimitive _MakePrimitive(SceneObject& object, bool isShading,
                                 const BatchConstants& constants, ThreadTeam& team,
                                 Reports& reports);

    std::unordered_map<const LinkedCode*, std::unique_ptr<PlanProgram>> _programs;
    std::vector<PlanPrimitive> _primitives; ///< those that shade rays
    std::vector<std::uint32_t> _primitiveOfGeometry;
    std::unordered_map<std::int32_t, std::uint32_t> _primitiveOfHandle;
    std::unique_ptr<PlanPrimitive> _pFrame;
    std::unique_ptr<PlanPrimitive> _pPrefix;
    std::uint32_t _miss = kNone;
    RayAttributeTable _attributes;
};

} // namespace Tolen::OpenKL
