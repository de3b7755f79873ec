#pragma once

#include "engine/Batch.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace Tolen::OpenKL {

struct KernelThread;
struct LinkedCode;
class Kernel;
class TextureTable;
class UniformStore;

/// The values of a primitive in the form that one of its kernels reads.
class ShadingBinding {
public:
    /// Takes over what has changed since the last call. @p textures must outlive the use.
    void Update(const UniformStore& uniforms, const TextureTable& textures);

    /// Runs `setup` of one of the program's kernels if the values or the constants have changed
    /// since it ran last. @return whether it ran; what it reported is in the thread's output then
    bool RunSetup(const Kernel& kernel, const BatchConstants& constants, KernelThread& thread);

    /// The stamp of the last change that Update saw.
    std::uint64_t GetVersion() const { return _version; }
    const PrimitiveBinding& Get() const { return _binding; }

private:
    std::shared_ptr<const LinkedCode> _pCode;
    std::vector<std::uint32_t> _words;
    std::vector<BlockView> _blocks;
    std::uint64_t _version = 0;
    std::uint64_t _textureVersion = 0;

    std::vector<std::uint32_t> _state;
    const Kernel* _pSetupKernel = nullptr; ///< borrowed; null before setup ran for these values
    BatchConstants _setupConstants;
    PrimitiveBinding _binding;
};

} // namespace Tolen::OpenKL
