#pragma once

#include "TolenCore/Assets.h"

#include <string>

namespace Tolen::Tests {

/// Is the assets of the process while it lives: texts in memory, then files.
class ScopedAssets : public MgrAssets {
public:
    ScopedAssets() : _pPrevious(SetMgrAssets(this)) {}
    ~ScopedAssets() override { SetMgrAssets(_pPrevious); }

    /// Lets @p text stand for the file @p path.
    void Add(const std::string& path, const std::string& text) { AddMemoryAsset(path, text); }

private:
    IMgrAssets* _pPrevious;
};

} // namespace Tolen::Tests
