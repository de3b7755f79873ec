#pragma once

#include "effects/FakeMgrEffects.h"

#include <gtest/gtest.h>

#include <set>

namespace Tolen::Effects::Tests {

/// A manager that gives out keys and knows its context, and has nothing else. Every key is new, and
/// is expected back once.
class MinimalManager : public FakeMgrEffects {
public:
    explicit MinimalManager(IOpenKLContext* context) : _pContext(context) {}

    /// Keys that are out.
    std::size_t GetCountKeys() const { return _keys.size(); }

    Key CreateKey() override {
        const Key key(++_last);
        _keys.insert(key);
        return key;
    }
    void DestroyKey(Key& key) override { EXPECT_EQ(_keys.erase(key), 1u) << key.ToString(); }
    IOpenKLContext* GetOpenKLContext() const override { return _pContext; }

private:
    IOpenKLContext* _pContext;
    std::set<Key> _keys;
    unsigned int _last = 0;
};

} // namespace Tolen::Effects::Tests
