#pragma once

#include "engine/Kernel.h"

#include "compiler/LinkedProgram.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Tolen::OpenKL::Testing {

inline const InstructionSet kInstructionSets[] = {InstructionSet::Baseline, InstructionSet::Avx2,
                                                  InstructionSet::Avx512};

/// A kernel of one text with everything that it needs to run.
class EngineRig {
public:
    /// Compiles @p text; a failure throws, which fails the test.
    explicit EngineRig(const std::string& text, Stage stage = kStage_Ray,
                       const KernelOptions& options = {});

    const Kernel& GetKernel() const { return *_pKernel; }
    const KernelLayout& GetLayout() const { return _pKernel->GetLayout(); }

    // Inputs. Rows have kMaxLanes words.

    void SetUniform(const std::string& name, std::vector<std::uint32_t> words);
    void SetUniform(const std::string& name, const std::vector<float>& values);
    void SetBlock(const std::string& name, const void* pData, std::size_t bytes);
    void SetTextures(const std::vector<TextureView>& textures) { _textures = textures; }
    std::vector<std::uint32_t>& GetLaneRow(LaneInput input);
    std::vector<std::uint32_t>& GetInterpolatedRow(const std::string& name, int word);
    std::vector<std::uint32_t>& GetRayAttributeRow(const std::string& name, int word);
    BatchConstants constants;
    IRayQueries* pRayQueries = nullptr;

    /// Runs setup.
    void RunSetup(InstructionSet instructionSet = GetBestInstructionSet());
    /// Runs main; setup first when it has not run yet.
    /// @param first, count the lanes of the rows to run
    const BatchOutput& Run(int count = 1, int first = 0,
                           InstructionSet instructionSet = GetBestInstructionSet());

    BatchOutput output;
    std::vector<std::uint32_t> state;

private:
    std::unique_ptr<const Kernel> _pKernel;
    std::vector<std::uint32_t> _uniforms;
    std::vector<BlockView> _blocks;
    std::vector<TextureView> _textures;
    std::vector<std::vector<std::uint32_t>> _lanes;
    std::vector<std::vector<std::uint32_t>> _interpolated;
    std::vector<std::vector<std::uint32_t>> _rayAttributes;
};

inline std::uint32_t ToWord(float value) {
    return std::bit_cast<std::uint32_t>(value);
}
inline float ToFloat(std::uint32_t word) {
    return std::bit_cast<float>(word);
}

/// Compiles and links one text; errors throw.
std::shared_ptr<const LinkedProgram> LinkText(const std::string& text, Stage stage);

/// What a ray program whose main runs @p statements adds to attachment 0 for one lane, in order.
std::vector<float> RunStatements(const std::string& statements, const std::string& globals = {});

/// The values, bit by bit, with all NaNs alike.
std::vector<std::uint32_t> ToBits(const BatchOutput& output);

} // namespace Tolen::OpenKL::Testing
