#pragma once

#include "PrototypeShader.h"
#include "Shader.h"
#include "support/CapturedConsole.h"
#include "support/RecordingContext.h"

#include "TolenEffects/MgrEffects.h"
#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorPrintKsl.h"

#include "TolenCore/Result.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace Tolen::Effects::Tests {

/// A manager that runs on a recording context, with its console captured.
class LoadedManager {
public:
    Tolen::Tests::CapturedConsole console;
    Tolen::Tests::RecordingContext context;
    MgrEffects manager;

    LoadedManager() { EXPECT_TRUE(manager.Init(console.Get(), &context, nullptr)); }
    explicit LoadedManager(const std::string& source) : LoadedManager() { Load("lib", source); }

    void Load(const std::string& library, const std::string& source) {
        Result result;
        EXPECT_TRUE(manager.AddLibrary(library, source, &result)) << Join(result);
    }

    PrototypeShader* GetPrototype(const std::string& name, Result* result = nullptr) {
        return static_cast<PrototypeShader*>(manager.GetPrototypeShader(name, result));
    }

    /// A shader that is expected to be there.
    Shader* Create(const std::string& name) {
        Result result;
        IShader* shader = manager.CreateShader(name, &result);
        EXPECT_NE(shader, nullptr) << Join(result);
        return static_cast<Shader*>(shader);
    }

    /// The messages of a creation that is expected to fail.
    std::string CreateFails(const std::string& name) {
        Result result;
        EXPECT_EQ(manager.CreateShader(name, &result), nullptr);
        return Join(result);
    }

    /// The code that a class or a shader adds to a graph.
    template <class Source>
    std::string Collect(Source* source) {
        const std::unique_ptr<Module> module(Module::Create(nullptr));
        EXPECT_TRUE(source->CollectShader(module.get()));
        return Print(module.get());
    }

    std::string Print(Module* module) {
        Result result;
        VisitorPrintKsl printer(&result, &manager, false);
        EXPECT_TRUE(module->AcceptVisitor(&printer)) << Join(result);
        return printer.GetText();
    }

    static std::string Join(const Result& result) {
        std::string text;
        for (const std::string& message : result.GetMessages()) {
            text += message + (message.empty() || message.back() != '\n' ? "\n" : "");
        }
        return text;
    }
};

} // namespace Tolen::Effects::Tests
