#pragma once

#include "support/CapturedConsole.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"

#include "TolenCore/Result.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace Tolen::Tests {

/// A class of one of our files, as its text declares it.
struct DeclaredClass {
    std::string name;
    std::string interface; ///< empty when it has none
    std::string body;
    std::string head; ///< of its file, ahead of all classes
};

/// All classes of a folder, in the order of files and lines.
std::vector<DeclaredClass> GetDeclaredClasses(const std::string& folder = "shaders");

/// All of shaders/, loaded by a manager over the embedded OpenKL. What shaders answer is measured
/// by surface roots that accumulate it on a wall that fills the picture: each pixel holds the mean
/// over its samples.
class ShaderLibrary : public testing::Test {
protected:
    using Pixel = std::array<float, 4>;

    ShaderLibrary();
    ~ShaderLibrary() override;

    void Load(const std::string& name, const std::string& source);
    void LoadFolder(const std::string& folder);
    Effects::IShader* Make(const std::string& className);
    void Connect(Effects::IShader* shader, const std::string& input, Effects::IShader* other);
    /// Connects a constant of its own.
    void ConnectColor(Effects::IShader* shader, const std::string& input, const Vector3f& value);
    void ConnectScalar(Effects::IShader* shader, const std::string& input, float value);
    /// Gives an array input as many cells as there are shaders, and connects these.
    void SetCells(Effects::IShader* shader, const std::string& input,
                  const std::vector<Effects::IShader*>& cells);
    template <class T>
    void Set(Effects::IShader* shader, const std::string& input, const T& value) {
        Result result;
        EXPECT_TRUE(shader->SetParameter(&result, input, value)) << input;
    }

    /// Makes a program of @p effect. @return whether it compiled
    testing::AssertionResult Compiles(Effects::IEffect* effect);

    /// The picture of a root with the method Shade, row by row from the lowest.
    std::vector<Pixel> Measure(Effects::IShader* root, int width, int height, int samples);
    /// The mean over all pixels of such a picture.
    Pixel MeasureMean(Effects::IShader* root, int width, int height, int samples);

    CapturedConsole console;
    Effects::MgrEffects manager;
    OpenKL::IContext* context = nullptr;
};

} // namespace Tolen::Tests
