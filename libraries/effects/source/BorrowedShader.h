#pragma once

#include "TolenCore/CreationOrder.h"

namespace Tolen::Effects {

class IShader;

/// A pointer to somebody else's shader, which becomes null when the shader ends.
class BorrowedShader final : public CreationOrder {
public:
    BorrowedShader() = default;
    explicit BorrowedShader(IShader* shader) { Set(shader); }
    ~BorrowedShader() { Set(nullptr); }
    BorrowedShader(const BorrowedShader&) = delete;
    BorrowedShader& operator=(const BorrowedShader&) = delete;

    IShader* Get() const { return _pShader; }
    void Set(IShader* shader);

private:
    bool _OnEnd(IShader* shader);

    IShader* _pShader = nullptr;
};

} // namespace Tolen::Effects
