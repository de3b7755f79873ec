#include "scene/ShadingBinding.h"

#include "engine/Kernel.h"
#include "scene/Buffer.h"
#include "scene/Program.h"
#include "scene/TextureTable.h"
#include "scene/ThreadTeam.h"
#include "scene/UniformStore.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace Tolen::OpenKL {

namespace {

bool AreEqual(const BatchConstants& a, const BatchConstants& b) {
    return std::equal(std::begin(a.resolution), std::end(a.resolution), b.resolution) &&
           a.sampleCount == b.sampleCount && a.time == b.time &&
           std::equal(std::begin(a.transform), std::end(a.transform), b.transform);
}

} // namespace

void ShadingBinding::Update(const UniformStore& uniforms, const TextureTable& textures) {
    const std::uint64_t version = uniforms.GetVersion();
    if (_pCode != uniforms.GetCode() || _version != version ||
        _textureVersion != textures.GetVersion()) {
        _pCode = uniforms.GetCode();
        _version = version;
        _textureVersion = textures.GetVersion();
        _pSetupKernel = nullptr;
        _words = uniforms.GetWords();
        for (const int word : uniforms.GetSamplerWords()) {
            std::uint32_t& sampler = _words[static_cast<std::size_t>(word)];
            sampler = textures.ToSampler(sampler);
        }
        _blocks.clear();
        for (const auto& block : uniforms.GetBlocks()) {
            _blocks.push_back(block == nullptr
                                  ? BlockView()
                                  : BlockView{block->bytes.data(), block->bytes.size()});
        }
    }
    _binding.pUniforms = _words.data();
    _binding.pBlocks = _blocks.data();
    _binding.pTextures = textures.GetViews().data();
    _binding.textureCount = static_cast<std::int32_t>(textures.GetViews().size());
}

bool ShadingBinding::RunSetup(const Kernel& kernel, const BatchConstants& constants,
                              KernelThread& thread) {
    if (_pSetupKernel == &kernel && AreEqual(_setupConstants, constants)) {
        return false;
    }
    _state.assign(static_cast<std::size_t>(kernel.GetLayout().stateWords), 0);
    _binding.pState = nullptr;
    BatchInput input;
    input.laneCount = 1;
    input.pConstants = &constants;
    input.pPrimitive = &_binding;
    kernel.RunSetup(input, _state.data(), thread.output, thread.scratch);
    _binding.pState = _state.data();
    _pSetupKernel = &kernel;
    _setupConstants = constants;
    return true;
}

} // namespace Tolen::OpenKL
