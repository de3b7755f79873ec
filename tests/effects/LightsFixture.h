#pragma once

#include "EffectsFixture.h"
#include "LightLibraryText.h"
#include "MgrLightShaders.h"
#include "Shader_LightShader.h"

#include "TolenEffects/IMgrLightShaders.h"
#include "TolenEffects/IParameter.h"

#include <memory>
#include <string>

namespace Tolen::Effects::Tests {

/// A manager of lights over a library of all classes that it asks for.
class LightsFixture : public EffectsFixture {
protected:
    LightsFixture() {
        Load(LightLibraryText::Make());
        EXPECT_TRUE(lights->Init(&manager, console.Get()));
    }

    IShader* Light(const std::string& className) {
        Result result;
        IShader* const light = lights->CreateShader(className, &result);
        EXPECT_NE(light, nullptr) << className << ": " << result.GetLast();
        return light;
    }
    static Shader_LightShader* AsView(IShader* shader) {
        auto* const view = dynamic_cast<Shader_LightShader*>(shader);
        EXPECT_NE(view, nullptr);
        return view;
    }
    static int CellOf(IShader* shader) { return AsView(shader)->GetSubIndex(); }
    static IShader* RealOf(IShader* shader) {
        return dynamic_cast<Shader_PassThrough&>(*shader).GetShader();
    }
    /// An input of the real shader behind a view.
    static IParameter* Real(IShader* view, const std::string& name) {
        IParameter* const parameter = RealOf(view)->GetParameter(name);
        EXPECT_NE(parameter, nullptr) << name;
        return parameter;
    }
    /// A cell of an array of the real shader.
    template <class T>
    static T Cell(IShader* view, const std::string& name, int index) {
        T value{};
        EXPECT_TRUE(Real(view, name)->Get(value, index)) << name << " " << index;
        return value;
    }
    template <class T>
    static T Value(IShader* shader, const std::string& name) {
        T value{};
        EXPECT_TRUE(shader->GetParameter(name)->Get(value)) << name;
        return value;
    }
    static IShader* Connected(IShader* shader, const std::string& name) {
        return Value<IShader*>(shader, name);
    }

    std::unique_ptr<MgrLightShaders> lights = std::make_unique<MgrLightShaders>();
};

} // namespace Tolen::Effects::Tests
