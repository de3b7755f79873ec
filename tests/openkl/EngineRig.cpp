#include "EngineRig.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace Tolen::OpenKL::Testing {

namespace {

const KernelVariable* Find(const std::vector<KernelVariable>& variables, const std::string& name) {
    auto entry =
        std::find_if(variables.begin(), variables.end(),
                     [&](const KernelVariable& variable) { return variable.name == name; });
    return entry == variables.end() ? nullptr : &*entry;
}

} // namespace

std::shared_ptr<const LinkedProgram> LinkText(const std::string& text, Stage stage) {
    std::string messages;
    std::shared_ptr<const CompiledShader> shader = CompileShader(stage, text, messages);
    if (shader == nullptr) {
        throw std::runtime_error(messages + "\n" + text);
    }
    std::vector<LinkInput> shaders = {{"text", shader}};
    if (stage == kStage_Vertex) {
        // Vertices are there for rays.
        shaders.push_back({"ray", CompileShader(kStage_Ray, "void main() {}", messages)});
    }
    std::shared_ptr<const LinkedProgram> program = LinkProgram("test", shaders, messages);
    if (program == nullptr) {
        throw std::runtime_error(messages + "\n" + text);
    }
    return program;
}

EngineRig::EngineRig(const std::string& text, Stage stage, const KernelOptions& options) {
    std::shared_ptr<const LinkedProgram> program = LinkText(text, stage);
    std::string error;
    KernelStage part = stage == kStage_Vertex ? KernelStage::Vertex : KernelStage::Main;
    _pKernel = Kernel::Compile(*program, part, options, &error);
    if (_pKernel == nullptr) {
        throw std::runtime_error(error);
    }
    const KernelLayout& layout = GetLayout();
    bool isVertex = stage == kStage_Vertex;
    auto rows = [](int count) {
        return std::vector<std::vector<std::uint32_t>>(static_cast<std::size_t>(count),
                                                       std::vector<std::uint32_t>(kMaxLanes));
    };
    _uniforms.resize(static_cast<std::size_t>(layout.uniformWords));
    _blocks.resize(layout.blocks.size());
    _lanes = rows(kLaneInput_Count);
    _interpolated = rows(isVertex ? layout.attributeWords : layout.varyingWords);
    _rayAttributes = rows(layout.rayAttributeWords);
}

void EngineRig::SetUniform(const std::string& name, std::vector<std::uint32_t> words) {
    const KernelVariable* variable = Find(GetLayout().uniforms, name);
    ASSERT_NE(variable, nullptr) << name;
    ASSERT_EQ(static_cast<std::size_t>(variable->wordCount), words.size()) << name;
    std::copy(words.begin(), words.end(), _uniforms.begin() + variable->firstWord);
}

void EngineRig::SetUniform(const std::string& name, const std::vector<float>& values) {
    std::vector<std::uint32_t> words;
    words.reserve(values.size());
    for (float value : values) {
        words.push_back(ToWord(value));
    }
    SetUniform(name, words);
}

void EngineRig::SetBlock(const std::string& name, const void* pData, std::size_t bytes) {
    const KernelVariable* variable = Find(GetLayout().blocks, name);
    ASSERT_NE(variable, nullptr) << name;
    _blocks[static_cast<std::size_t>(variable->location)] = {pData, bytes};
}

std::vector<std::uint32_t>& EngineRig::GetLaneRow(LaneInput input) {
    return _lanes[static_cast<std::size_t>(input)];
}

std::vector<std::uint32_t>& EngineRig::GetInterpolatedRow(const std::string& name, int word) {
    const KernelVariable* variable = Find(GetLayout().varyings, name);
    if (variable == nullptr) {
        variable = Find(GetLayout().attributes, name);
    }
    EXPECT_NE(variable, nullptr) << name;
    return _interpolated[static_cast<std::size_t>(variable->firstWord + word)];
}

std::vector<std::uint32_t>& EngineRig::GetRayAttributeRow(const std::string& name, int word) {
    const KernelVariable* variable = Find(GetLayout().rayAttributes, name);
    EXPECT_NE(variable, nullptr) << name;
    return _rayAttributes[static_cast<std::size_t>(variable->firstWord + word)];
}

void EngineRig::RunSetup(InstructionSet instructionSet) {
    state.assign(static_cast<std::size_t>(GetLayout().stateWords), 0xcdcdcdcdu);
    PrimitiveBinding primitive;
    primitive.pUniforms = _uniforms.data();
    primitive.pBlocks = _blocks.data();
    primitive.pTextures = _textures.data();
    primitive.textureCount = static_cast<std::int32_t>(_textures.size());
    BatchInput input;
    input.laneCount = 1;
    input.pConstants = &constants;
    input.pPrimitive = &primitive;
    KernelScratch scratch(instructionSet);
    _pKernel->RunSetup(input, state.data(), output, scratch);
}

const BatchOutput& EngineRig::Run(int count, int first, InstructionSet instructionSet) {
    if (state.empty()) {
        RunSetup(instructionSet);
    }
    PrimitiveBinding primitive;
    primitive.pUniforms = _uniforms.data();
    primitive.pBlocks = _blocks.data();
    primitive.pTextures = _textures.data();
    primitive.textureCount = static_cast<std::int32_t>(_textures.size());
    primitive.pState = state.data();
    BatchInput input;
    input.laneCount = count;
    input.pConstants = &constants;
    input.pPrimitive = &primitive;
    input.pRayQueries = pRayQueries;
    for (std::size_t i = 0; i < _lanes.size(); ++i) {
        input.pLanes[i] = _lanes[i].data() + first;
    }
    auto collect = [&](const std::vector<std::vector<std::uint32_t>>& rows) {
        std::vector<const void*> pointers;
        pointers.reserve(rows.size());
        for (const std::vector<std::uint32_t>& row : rows) {
            pointers.push_back(row.data() + first);
        }
        return pointers;
    };
    std::vector<const void*> interpolated = collect(_interpolated);
    std::vector<const void*> rayAttributes = collect(_rayAttributes);
    input.pInterpolated = interpolated.data();
    input.pRayAttributes = rayAttributes.data();
    KernelScratch scratch(instructionSet);
    EXPECT_EQ(scratch.GetInstructionSet(),
              IsSupported(instructionSet) ? instructionSet : InstructionSet::Baseline);
    _pKernel->Run(input, output, scratch);
    return output;
}

std::vector<float> RunStatements(const std::string& statements, const std::string& globals) {
    EngineRig rig(globals + "\nvoid main()\n{\n" + statements + "\n}\n");
    std::vector<float> values;
    for (const AccumulateRecord& record : rig.Run().accumulates) {
        values.insert(values.end(), record.value, record.value + record.components);
    }
    return values;
}

std::vector<std::uint32_t> ToBits(const BatchOutput& output) {
    std::vector<std::uint32_t> bits;
    auto add = [&](float value) {
        bits.push_back(std::isnan(value) ? 0x7fc00000u : ToWord(value));
    };
    for (const AccumulateRecord& record : output.accumulates) {
        bits.push_back(record.lane);
        bits.push_back(record.attachment);
        for (std::size_t i = 0; i < record.components; ++i) {
            add(record.value[i]);
        }
    }
    for (const SpawnedRay& ray : output.rays) {
        bits.push_back(ray.lane);
        for (std::size_t i = 0; i < 3; ++i) {
            add(ray.origin[i]);
            add(ray.direction[i]);
        }
        bits.push_back(ray.randomSeed);
    }
    for (std::uint32_t word : output.rayAttributes) {
        add(ToFloat(word));
    }
    bits.insert(bits.end(), output.discarded, output.discarded + kMaxLanes);
    return bits;
}

} // namespace Tolen::OpenKL::Testing
