#pragma once

#include "ParameterStorageListeners.h"
#include "StorageElements.h"

#include <memory>

namespace Tolen::Effects {

/// What the storages of elements of type @p T share: the value, and the typed reads and writes.
/// @tparam ValueType what keeps the elements, perhaps in another form than T
template <class T, class ValueType>
class ParameterStorageTyped : public ParameterStorageListeners {
public:
    using IStorage::Get;
    using IStorage::Set;

    bool SetLength(int length) override {
        return _pValue != nullptr && _pValue->SetLength(length) && _FireChangeLength(length);
    }
    int GetLength() override { return _pValue == nullptr ? 0 : _pValue->GetLength(); }
    IValue* GetValue() override { return _pValue.get(); }

    bool Set(const T* values, int count) override {
        return _pValue != nullptr && WriteElements(*_pValue, values, count) && _FireChangeValue();
    }
    bool Set(const T& value, int index) override {
        return _pValue != nullptr && WriteElement(*_pValue, value, index) && _FireChangeValue();
    }
    bool Get(T& value, int index) override {
        return _pValue != nullptr && ReadElement(*_pValue, value, index);
    }

    void Shutdown() override {
        _pValue.reset();
        _ClearListeners();
    }

protected:
    std::unique_ptr<ValueType> _pValue;
};

} // namespace Tolen::Effects
