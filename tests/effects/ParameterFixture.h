#pragma once

#include "effects/MinimalManager.h"
#include "effects/ParsedClass.h"
#include "support/CapturedChecks.h"
#include "support/CapturedConsole.h"
#include "support/RecordingContext.h"

#include "TolenCore/Result.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace Tolen::Effects::Tests {

/// What a parameter or member needs around it. At the end nothing may be left.
class ParameterFixture : public ::testing::Test {
protected:
    ~ParameterFixture() override {
        EXPECT_EQ(_manager.GetCountKeys(), 0u);
        EXPECT_EQ(_context.GetCountLive(), 0);
        EXPECT_THAT(_context.GetLog().GetMisuses(), ::testing::IsEmpty());
    }

    /// Makes the parameter or member x of a class; null when its Init fails.
    template <class T>
    std::unique_ptr<T> Make(const std::string& members) {
        _classes.push_back(std::make_unique<ParsedClass>(members));
        auto made = std::make_unique<T>();
        _result.Clear();
        if (!made->Init(&_manager, _classes.back()->GetVariable("x"), "p", &_result)) {
            return nullptr;
        }
        return made;
    }

    /// The methods of the class that was parsed last, as functions.
    std::unique_ptr<Module> CloneMethods() { return _classes.back()->CloneMethods(); }

    Tolen::Tests::CapturedConsole _console;
    Tolen::Tests::CapturedChecks _checks;
    Tolen::Tests::RecordingContext _context;
    Tolen::Tests::RecordingPrimitive _primitive{_context};
    MinimalManager _manager{&_context};
    Result _result;

private:
    std::vector<std::unique_ptr<ParsedClass>> _classes;
};

/// Counts the calls of one kind of listener, and answers as it is told to. @tparam T what the
/// listeners are called with
template <class T>
class CountingListener {
public:
    int GetCount() const { return _count; }
    void SetAnswer(bool answer) { _answer = answer; }
    FastDelegate1<T*, bool>& Get() { return _delegate; }

private:
    bool _OnCall(T* caller) {
        EXPECT_NE(caller, nullptr);
        ++_count;
        return _answer;
    }

    int _count = 0;
    bool _answer = true;
    FastDelegate1<T*, bool> _delegate = MakeDelegate(this, &CountingListener::_OnCall);
};

} // namespace Tolen::Effects::Tests
