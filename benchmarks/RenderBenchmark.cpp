#include "TolenOpenKL/IContext.h"
#include "TolenOpenKL/Mesh.h"

#include "TolenOpenKLWrapper/Scoped.h"

#include "TolenCore/Result.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

/// What the embedded OpenKL renders in a second: rays of a camera, rays in all directions, whole
/// frames of paths. The counter "rays" is the rays traced per second, those of occluded() included.

namespace Tolen::OpenKL {

namespace {

constexpr int kWidth = 512;
constexpr int kHeight = 512;

struct ContextDeleter {
    void operator()(IContext* context) const { DestroyContext(context); }
};

/// A field of spheres, half a million triangles, above a plane.
class Scene {
public:
    Scene(int threads, const std::string& frameText, const std::string& surfaceText,
          const std::string& missText) {
        ContextOptions options;
        options.threads = threads;
        _pContext.reset(CreateContext(options, nullptr));
        IPrimitive* const frame = _MakePrimitive({{IKLShader::kType_Frame, frameText}});
        _pContext->SetFramePrimitive(frame);
        _pContext->SetMissPrimitive(_MakePrimitive({{IKLShader::kType_Ray, missText}}));
        const std::vector<Text> surface = {{IKLShader::kType_Ray, surfaceText},
                                           {IKLShader::kType_Vertex, kVertexText}};
        const Mesh sphere = MakeSphere(0.45f, 128, 64);
        for (int i = 0; i < 32; ++i) {
            IPrimitive* const primitive = _MakePrimitive(surface);
            SetMesh(*primitive, sphere);
            const int row = i / 8;
            Matrix44f matrix;
            matrix(0, 3) = static_cast<float>(i % 8) - 3.5f;
            matrix(1, 3) = static_cast<float>(row) - 1.5f;
            primitive->SetTransform(matrix);
        }
        IPrimitive* const floor = _MakePrimitive(surface);
        SetMesh(*floor, MakePlane(40.0f, 40.0f));
        Matrix44f matrix;
        matrix(2, 3) = -0.45f;
        floor->SetTransform(matrix);
        _pFramebuffer = _pContext->CreateFramebuffer(kWidth, kHeight, nullptr);
        _pFramebuffer->Attach(0);
        _pContext->Prepare(nullptr);
    }

    /// Renders one more sample of every pixel.
    void Render() {
        RenderSettings settings;
        settings.firstSample = _sample++;
        settings.sampleCount = 1 << 20;
        if (_pContext->Render(_pFramebuffer, settings, nullptr) != kRender_Finished) {
            std::abort();
        }
    }

    void Report(benchmark::State& state) const {
        const Statistics statistics = _pContext->GetStatistics();
        const auto rays = static_cast<double>(statistics.cameraRays + statistics.secondaryRays +
                                              statistics.occlusionRays + statistics.distanceRays);
        const auto samples = static_cast<double>(statistics.frameInvocations);
        state.counters["rays"] = benchmark::Counter(rays, benchmark::Counter::kIsRate);
        state.counters["samples"] = benchmark::Counter(samples, benchmark::Counter::kIsRate);
        state.counters["rays/sample"] = rays / samples;
    }

private:
    struct Text {
        IKLShader::Type type;
        std::string text;
    };

    static constexpr const char* kVertexText = R"(
        attribute vec3 a_Position;
        attribute vec3 a_Normal;
        transformed normalized varying vec3 Normal;
        void main() { kl_Position = vec4(a_Position, 1.0); Normal = a_Normal; })";

    IPrimitive* _MakePrimitive(const std::vector<Text>& texts) {
        IKLProgram* const program = _pContext->CreateProgram();
        for (const Text& text : texts) {
            IKLShader* const shader = _pContext->CreateShader(text.type);
            Result result;
            if (!shader->SetString(text.text, &result)) {
                std::fprintf(stderr, "%s\n", result.GetLast().c_str());
                std::abort();
            }
            program->AddShader(shader);
        }
        Result result;
        if (!program->Link(&result)) {
            std::fprintf(stderr, "%s\n", result.GetLast().c_str());
            std::abort();
        }
        IPrimitive* const primitive = _pContext->CreatePrimitive();
        const AutoBindKLPrimitive bind(primitive);
        klUseProgram(program->GetHandle());
        return primitive;
    }

    std::unique_ptr<IContext, ContextDeleter> _pContext;
    IFramebuffer* _pFramebuffer = nullptr;
    int _sample = 0;
};

constexpr const char* kCamera = R"(
    rayattribute vec3 weight;
    void main() {
        vec2 p = kl_PixelCoord / kl_Resolution - 0.5;
        weight = vec3(1.0);
        spawnRay(vec3(0.0, -1.0, 9.0), vec3(p, -1.0));
    })";

constexpr const char* kSky = R"(
    rayattribute vec3 weight;
    void main() { accumulate(0, weight * (kl_RayDirection.z * 0.5 + 0.5)); })";

/// A path that goes on in a random direction around the normal until depth DEPTH.
constexpr const char* kMatt = R"(
    rayattribute vec3 weight;
    varying vec3 Normal;
    void main() {
        if (kl_RayDepth >= DEPTH) return;
        vec3 n = faceforward(Normal, kl_RayDirection, Normal);
        vec2 r = random2();
        float phi = 6.2831853 * r.x;
        float z = 2.0 * r.y - 1.0;
        float s = sqrt(1.0 - z * z);
        weight *= vec3(0.8, 0.7, 0.6);
        spawnRay(kl_HitPosition, n + vec3(s * cos(phi), s * sin(phi), z) * 0.999);
    })";

std::string MakeMatt(int depth) {
    std::string text = kMatt;
    return text.replace(text.find("DEPTH"), 5, std::to_string(depth));
}

/// Two lights with shadows.
constexpr const char* kLit = R"(
    rayattribute vec3 weight;
    varying vec3 Normal;
    void main() {
        vec3 color = vec3(0.0);
        for (int i = 0; i < 2; i++) {
            vec3 d = normalize(i == 0 ? vec3(0.5, 0.3, 1.0) : vec3(-0.8, 0.1, 0.6));
            if (!occluded(kl_HitPosition, d, 100.0)) color += vec3(max(dot(Normal, d), 0.0));
        }
        accumulate(0, weight * color);
    })";

void Run(benchmark::State& state, const std::string& surfaceText) {
    Scene scene(static_cast<int>(state.range(0)), kCamera, surfaceText, kSky);
    for (auto _ : state) {
        scene.Render();
    }
    scene.Report(state);
}

void BM_CameraRays(benchmark::State& state) {
    Run(state, "rayattribute vec3 weight; varying vec3 Normal;"
               "void main() { accumulate(0, weight * Normal); }");
}

void BM_OneBounce(benchmark::State& state) {
    Run(state, MakeMatt(1));
}
void BM_Paths(benchmark::State& state) {
    Run(state, MakeMatt(8));
}
void BM_Shadows(benchmark::State& state) {
    Run(state, kLit);
}

void BM_FrameProgramAlone(benchmark::State& state) {
    Scene scene(static_cast<int>(state.range(0)),
                "void main() { accumulate(0, vec3(kl_PixelCoord, 0.0)); }", "void main() {}",
                "void main() {}");
    for (auto _ : state) {
        scene.Render();
    }
    scene.Report(state);
}

/// Arguments: the number of threads.
BENCHMARK(BM_FrameProgramAlone)->Arg(1)->Arg(2)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CameraRays)->Arg(1)->Arg(2)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Shadows)->Arg(1)->Arg(2)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_OneBounce)->Arg(1)->Arg(2)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Paths)->Arg(1)->Arg(2)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

} // namespace Tolen::OpenKL
