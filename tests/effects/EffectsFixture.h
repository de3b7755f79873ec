#pragma once

#include "support/CapturedChecks.h"
#include "support/CapturedConsole.h"
#include "support/RecordingContext.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"

#include "TolenCore/Result.h"

#include <gtest/gtest.h>

#include <string>

namespace Tolen::Effects::Tests {

using namespace Tolen::Tests;

/// A running manager over a recording context. Texts of KLSL are loaded from memory.
class EffectsFixture : public testing::Test {
protected:
    EffectsFixture() {
        Result result;
        EXPECT_TRUE(manager.Init(console.Get(), &context, &result));
    }
    ~EffectsFixture() override {
        manager.Shutdown();
        EXPECT_EQ(context.GetCountLive(), 0);
        EXPECT_TRUE(context.GetLog().GetMisuses().empty()) << context.GetLog().GetMisuses().front();
    }

    void Load(const std::string& source) {
        Result result;
        const std::string name = "library" + std::to_string(++_countLibraries);
        ASSERT_TRUE(manager.AddLibrary(name, source, &result)) << result.GetLast();
    }

    IShader* Make(const std::string& className) {
        Result result;
        IShader* const shader = manager.CreateShader(className, &result);
        EXPECT_NE(shader, nullptr) << className << ": " << result.GetLast();
        return shader;
    }

    /// A surface effect with a new shader of a class as its root.
    IEffect* MakeSurface(IShader* root) {
        IEffect* const effect = manager.CreateEffectSurface();
        EXPECT_TRUE(effect->SetRoot(root));
        return effect;
    }

    /// The latest text of the shaders whose names contain @p part; empty when there is none.
    std::string GetText(const std::string& part) {
        std::string text;
        for (const RecordingShader* shader : context.GetShaders()) {
            if (shader->GetName().find(part) != std::string::npos) {
                text = shader->GetText();
            }
        }
        return text;
    }

    CapturedConsole console;
    CapturedChecks checks;
    RecordingContext context;
    MgrEffects manager;

private:
    int _countLibraries = 0;
};

/// Counts the calls of a listener and answers as told.
template <class... Args>
class Listener : public CreationOrder {
public:
    fastdelegate::FastDelegate<bool, Args...>& operator*() { return _delegate; }
    int count = 0;
    bool answer = true;

private:
    bool _OnCall(Args...) {
        ++count;
        return answer;
    }
    fastdelegate::FastDelegate<bool, Args...> _delegate{this, &Listener::_OnCall};
};

} // namespace Tolen::Effects::Tests
