#include "shaders/ShaderLibrary.h"

#include "support/paths/SourceFolder.h"

#include "TolenEffects/IParameter.h"
#include "TolenOpenKL/Mesh.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

namespace Tolen::Tests {

namespace {

std::vector<std::filesystem::path> GetFiles(const std::string& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(SourceFolder() + "/" + folder)) {
        if (entry.path().extension() == ".klsl") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string Read(const std::filesystem::path& file) {
    std::ifstream stream(file);
    return {std::istreambuf_iterator<char>(stream), {}};
}

} // namespace

std::vector<DeclaredClass> GetDeclaredClasses(const std::string& folder) {
    std::vector<DeclaredClass> classes;
    const std::regex head("\nclass (\\w+)(?: : (\\w+))?\n\\{");
    for (const std::filesystem::path& file : GetFiles(folder)) {
        const std::string text = Read(file);
        for (std::sregex_iterator at(text.begin(), text.end(), head), end; at != end; ++at) {
            const auto begin = static_cast<std::size_t>(at->position() + at->length());
            classes.push_back({(*at)[1], (*at)[2],
                               text.substr(begin, text.find("\n}\n", begin) - begin),
                               text.substr(0, text.find("\nclass "))});
        }
    }
    return classes;
}

ShaderLibrary::ShaderLibrary() {
    Result result;
    context = OpenKL::CreateContext(OpenKL::ContextOptions(), &result);
    EXPECT_NE(context, nullptr);
    EXPECT_TRUE(manager.Init(console.Get(), context, &result));
    manager.SetOutputAttachmentIndex("o_color", 0);
    manager.AddRayAttribute(Effects::kType_Vec3, "throughput");
    manager.AddRayAttribute(Effects::kType_Float, "direct");
    LoadFolder("shaders");
    Load("viewer", R"(
        class Viewer
        {
            int GetRayCount() { return 1; }

            void Render() { spawnRay(vec3(kl_PixelCoord, 1.0), vec3(0.0, 0.0, -1.0)); }
        })");
    Effects::IEffect* const viewer = manager.CreateEffectRenderer();
    viewer->SetRoot(Make("Viewer"));
    OpenKL::IPrimitive* const frame = context->CreatePrimitive();
    viewer->CreateReference(frame);
    context->SetFramePrimitive(frame);
    EXPECT_TRUE(Compiles(viewer));
}

ShaderLibrary::~ShaderLibrary() {
    manager.Shutdown();
    OpenKL::DestroyContext(context);
}

void ShaderLibrary::Load(const std::string& name, const std::string& source) {
    Result result;
    ASSERT_TRUE(manager.AddLibrary(name, source, &result)) << result.GetLast();
}

void ShaderLibrary::LoadFolder(const std::string& folder) {
    for (const std::filesystem::path& file : GetFiles(folder)) {
        Load(file.string(), Read(file));
    }
}

Effects::IShader* ShaderLibrary::Make(const std::string& className) {
    Result result;
    Effects::IShader* const shader = manager.CreateShader(className, &result);
    EXPECT_NE(shader, nullptr) << className << console.GetAll();
    return shader;
}

void ShaderLibrary::Connect(Effects::IShader* shader, const std::string& input,
                            Effects::IShader* other) {
    Result result;
    EXPECT_TRUE(shader->SetParameter(&result, input, other))
        << input << (result.IsEmpty() ? "" : result.GetLast());
}

void ShaderLibrary::ConnectColor(Effects::IShader* shader, const std::string& input,
                                 const Vector3f& value) {
    Effects::IShader* const constant = Make("ColorConstant");
    Set(constant, "value", value);
    Connect(shader, input, constant);
}

void ShaderLibrary::ConnectScalar(Effects::IShader* shader, const std::string& input, float value) {
    Effects::IShader* const constant = Make("ScalarConstant");
    Set(constant, "value", value);
    Connect(shader, input, constant);
}

void ShaderLibrary::SetCells(Effects::IShader* shader, const std::string& input,
                             const std::vector<Effects::IShader*>& cells) {
    EXPECT_TRUE(shader->GetParameter(input)->SetLength(static_cast<int>(cells.size())));
    for (std::size_t i = 0; i < cells.size(); ++i) {
        EXPECT_TRUE(shader->SetParameter(nullptr, input, cells[i], static_cast<int>(i)));
    }
}

testing::AssertionResult ShaderLibrary::Compiles(Effects::IEffect* effect) {
    Result result;
    if (effect->Update(&result) && effect->IsCompiled()) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << (result.IsEmpty() ? "" : result.GetLast()) << console.GetAll();
}

std::vector<ShaderLibrary::Pixel> ShaderLibrary::Measure(Effects::IShader* root, int width,
                                                         int height, int samples) {
    Effects::IEffect* const effect = manager.CreateEffectSurface();
    EXPECT_TRUE(effect->SetRoot(root));
    OpenKL::IPrimitive* const wall = context->CreatePrimitive();
    OpenKL::SetMesh(*wall,
                    OpenKL::MakePlane(static_cast<float>(width), static_cast<float>(height)));
    Matrix44f place;
    place(0, 3) = 0.5f * static_cast<float>(width);
    place(1, 3) = 0.5f * static_cast<float>(height);
    wall->SetTransform(place);
    effect->CreateReference(wall);
    EXPECT_TRUE(Compiles(effect));

    Result result;
    OpenKL::IFramebuffer* const framebuffer = context->CreateFramebuffer(width, height, &result);
    framebuffer->Attach(0);
    OpenKL::RenderSettings settings;
    settings.samples = samples;
    Result messages;
    EXPECT_EQ(context->Render(framebuffer, settings, &messages), OpenKL::kRender_Finished);
    for (const std::string& message : messages.GetMessages()) {
        ADD_FAILURE() << message;
    }
    std::vector<Pixel> pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    framebuffer->Read(0, pixels.front().data());
    manager.DestroyEffectSurface(effect);
    context->DestroyPrimitive(wall);
    context->DestroyFramebuffer(framebuffer);
    return pixels;
}

ShaderLibrary::Pixel ShaderLibrary::MeasureMean(Effects::IShader* root, int width, int height,
                                                int samples) {
    const std::vector<Pixel> pixels = Measure(root, width, height, samples);
    std::array<double, 4> sum = {};
    for (const Pixel& pixel : pixels) {
        for (std::size_t i = 0; i < 4; ++i) {
            sum[i] += static_cast<double>(pixel[i]);
        }
    }
    Pixel mean;
    for (std::size_t i = 0; i < 4; ++i) {
        mean[i] = static_cast<float>(sum[i] / static_cast<double>(pixels.size()));
    }
    return mean;
}

} // namespace Tolen::Tests
