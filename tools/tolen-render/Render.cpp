#include "Render.h"

#include "Options.h"
#include "ProgressBar.h"
#include "RenderStatistics.h"

#include "scene/Connections.h"
#include "scene/ElementValues.h"
#include "scene/ImageFile.h"
#include "scene/SceneError.h"
#include "scene/SceneFile.h"
#include "scene/SceneSession.h"

#include "TolenEffects/IParameter.h"
#include "TolenEffects/Profiler.h"

#include "TolenCore/Format.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace Tolen::Render {

using namespace Tolen::Scene;

namespace {

using Clock = std::chrono::steady_clock;

double _SecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

/// A value of the command line as a scene file would hold it: JSON, or numbers with commas.
nlohmann::json _ParseValue(const std::string& option, const std::string& text) {
    nlohmann::json value = nlohmann::json::parse(text, nullptr, false);
    if (value.is_discarded()) {
        value = nlohmann::json::parse("[" + text + "]", nullptr, false);
    }
    if (value.is_discarded()) {
        throw SceneError(option, "'" + text + "' is no value");
    }
    return value;
}

/// Shaders of the command line as a scene file would name them: a name, or a list of names with
/// commas or as JSON.
nlohmann::json _ParseShaders(const std::string& text) {
    nlohmann::json value = nlohmann::json::parse(text, nullptr, false);
    if (value.is_null() || value.is_string() || value.is_array()) {
        return value;
    }
    if (text.find(',') == std::string::npos) {
        return text;
    }
    value = nlohmann::json::array();
    std::istringstream names(text);
    for (std::string name; std::getline(names, name, ',');) {
        value.push_back(name);
    }
    return value;
}

nlohmann::json _ParseInput(SceneShaders& shaders, const std::string& path,
                           const std::string& text) {
    Effects::IParameter* const input = shaders.FindInput(path);
    const bool takesShader =
        input != nullptr && input->GetClass() == Effects::IParameter::kClass_Interface;
    if (!takesShader) {
        return _ParseValue("--set", text);
    }
    nlohmann::json value = _ParseShaders(text);
    return TakesList(*input) && value.is_string() ? nlohmann::json::array({value}) : value;
}

/// The changing value of an animation.
class Animation {
public:
    Animation(const Options& options, SceneSession& session) : _path(options.animated) {
        _from = _Read(options.from, session);
        _to = _Read(options.to, session);
    }

    /// @param t 0 for the first picture, 1 for the last
    void Set(SceneSession& session, double t) const {
        nlohmann::json value = nlohmann::json::array();
        for (std::size_t i = 0; i < _from.size(); ++i) {
            value.push_back(_from[i] + (_to[i] - _from[i]) * t);
        }
        if (value.size() == 1) {
            value = nlohmann::json(value.front());
        }
        session.GetShaders().Set(_path, JsonNode(value, "--animate " + _path));
    }

private:
    std::vector<double> _Read(const std::string& text, SceneSession& session) const {
        const nlohmann::json value = _ParseValue("--animate", text);
        const JsonNode node(value, "--animate " + _path);
        Effects::IParameter* const input = session.GetShaders().FindInput(_path);
        const std::size_t count =
            input == nullptr || input->IsArray() ? 0 : CountNumbers(input->GetTypeSpecifier());
        if (count == 0) {
            // Complains of the name in the same words as any other use of it.
            session.GetShaders().Set(_path, node);
            node.Fail("only inputs with numbers can be animated");
        }
        return node.AsNumbers(count);
    }

    std::string _path;
    std::vector<double> _from;
    std::vector<double> _to;
};

/// "picture.png" and 7 give "picture.0007.png".
std::string _NumberFile(const std::string& file, int number) {
    const std::size_t dot = file.rfind('.');
    const std::string digits = Format(".%04d", number);
    return dot == std::string::npos ? file + digits
                                    : file.substr(0, dot) + digits + file.substr(dot);
}

void _Write(const std::string& file, const SceneDescription& description,
            const OpenKL::IFramebuffer& framebuffer) {
    const auto read = [&framebuffer](int index) {
        Image image{framebuffer.GetWidth(), framebuffer.GetHeight(), {}};
        image.rgba.resize(static_cast<std::size_t>(image.width) *
                          static_cast<std::size_t>(image.height) * 4);
        framebuffer.Read(index, image.rgba.data());
        return image;
    };
    if (file.size() < 4 || file.compare(file.size() - 4, 4, ".exr") != 0) {
        WritePng(file, read(0));
        return;
    }
    std::vector<std::pair<std::string, Image>> images;
    images.emplace_back("color", read(0));
    for (const SceneDescription::Output& output : description.outputs) {
        if (output.attachment != 0) {
            images.emplace_back(output.name, read(output.attachment));
        }
    }
    std::vector<std::pair<std::string, const Image*>> named;
    named.reserve(images.size());
    for (const auto& [name, image] : images) {
        named.emplace_back(name, &image);
    }
    WriteExr(file, named);
}

struct Times {
    double load = 0.0;
    double update = 0.0;
    double render = 0.0;
    double write = 0.0;
};

void _ReportTimes(const Times& times, SceneSession& session) {
    const OpenKL::Statistics statistics = session.GetContext().GetStatistics();
    std::printf("time report\n");
    const auto row = [](const char* name, double seconds) {
        std::printf("  %-36s %10.3f ms\n", name, seconds * 1000.0);
    };
    row("load scene, libraries and shaders", times.load);
    row("compile and apply", times.update);
    row("geometry and acceleration structures", statistics.sceneSeconds);
    row("render", times.render);
    row("write", times.write);
    for (const auto& [name, samples] : session.GetManager().GetProfiler()->GetTimeSamples()) {
        double sum = 0.0;
        for (const float sample : samples) {
            sum += static_cast<double>(sample);
        }
        std::printf("    %-34s %10.3f ms in %zu calls\n", name.c_str(), sum, samples.size());
    }
    const auto rays = static_cast<double>(statistics.cameraRays + statistics.secondaryRays +
                                          statistics.occlusionRays + statistics.distanceRays);
    std::printf("  %-36s %10.3f M, %.2f M/s\n", "rays", rays / 1e6,
                times.render > 0.0 ? rays / 1e6 / times.render : 0.0);
}

void _ReportCounts(SceneSession& session) {
    std::printf("%-24s %10s %14s\n", "effect", "compiles", "value updates");
    for (const EffectCount& count : session.GetCounts()) {
        std::printf("%-24s %10d %14d\n", count.name.c_str(), count.compiles, count.valueUpdates);
    }
}

/// A framebuffer for a scope.
class ScopedFramebuffer {
public:
    ScopedFramebuffer(OpenKL::IContext& context, int width, int height) : _context(context) {
        Result result;
        _pFramebuffer = context.CreateFramebuffer(width, height, &result);
        if (_pFramebuffer == nullptr) {
            throw std::runtime_error(result.GetLast());
        }
    }
    ~ScopedFramebuffer() { _context.DestroyFramebuffer(_pFramebuffer); }
    ScopedFramebuffer(const ScopedFramebuffer&) = delete;
    ScopedFramebuffer& operator=(const ScopedFramebuffer&) = delete;

    OpenKL::IFramebuffer* operator->() const { return _pFramebuffer; }
    OpenKL::IFramebuffer* Get() const { return _pFramebuffer; }

private:
    OpenKL::IContext& _context;
    OpenKL::IFramebuffer* _pFramebuffer = nullptr;
};

void _RenderPicture(SceneSession& session, const ScopedFramebuffer& framebuffer,
                    RenderStatistics& statistics, const std::string& label, int samples,
                    double time, const Options& options) {
    const double total = static_cast<double>(framebuffer->GetWidth()) *
                         static_cast<double>(framebuffer->GetHeight()) * samples;
    std::optional<ProgressBar> bar;
    if (!options.isQuiet) {
        bar.emplace(label, "samples", total);
    }
    auto show = [&](const OpenKL::RenderProgress& progress) {
        statistics.OnProgress(progress);
        if (bar) {
            bar->Show(static_cast<double>(progress.tilesDone) /
                      static_cast<double>(progress.tiles));
        }
        return true;
    };
    OpenKL::RenderSettings settings;
    settings.samples = samples;
    settings.time = static_cast<float>(time);
    settings.progress = FastDelegate1<const OpenKL::RenderProgress&, bool>::Borrow(show);
    Result result;
    framebuffer->Clear();
    session.GetContext().Prepare(&result);
    statistics.BeginPicture(session.GetContext(),
                            options.IsSingle() ? RenderStatistics::kStepsOfSinglePicture : 1);
    const OpenKL::RenderOutcome outcome =
        session.GetContext().Render(framebuffer.Get(), settings, &result);
    statistics.EndPicture(session.GetContext());
    bar.reset();
    for (const std::string& message : result.GetMessages()) {
        std::fprintf(stderr, "%s\n", message.c_str());
    }
    if (outcome != OpenKL::kRender_Finished) {
        throw std::runtime_error("the picture can't be rendered");
    }
}

/// Takes the effect @p name in place of the scene's renderer.
void _ChooseRenderer(const std::string& name, SceneDescription& description) {
    std::vector<std::string> known;
    for (const SceneDescription::Effect& effect : description.effects) {
        if (effect.kind == SceneDescription::kEffect_Renderer) {
            known.push_back(effect.name);
        }
    }
    if (std::find(known.begin(), known.end(), name) == known.end()) {
        throw SceneError("--renderer",
                         "there is no renderer effect '" + name + "'" + SuggestName(name, known));
    }
    description.renderer = name;
}

} // namespace

void RenderScene(const Options& options) {
    RenderStatistics statistics;
    Times times;
    Clock::time_point start = Clock::now();
    SceneDescription description = LoadScene(options.scene);
    if (!options.renderer.empty()) {
        _ChooseRenderer(options.renderer, description);
    }
    OpenKL::ContextOptions contextOptions;
    contextOptions.threads = options.threads;
    SceneSession session(description, contextOptions, options.searchPaths);
    for (const auto& [path, text] : options.values) {
        const nlohmann::json value = _ParseInput(session.GetShaders(), path, text);
        session.GetShaders().Set(path, JsonNode(value, "--set " + path));
    }
    times.load = _SecondsSince(start);

    std::optional<Animation> animation;
    if (!options.animated.empty()) {
        animation.emplace(options, session);
    }
    const ScopedFramebuffer framebuffer(session.GetContext(),
                                        options.width > 0 ? options.width : description.width,
                                        options.height > 0 ? options.height : description.height);
    framebuffer->Attach(0);
    for (const SceneDescription::Output& output : description.outputs) {
        framebuffer->Attach(output.attachment);
    }
    const int samples = options.samples > 0 ? options.samples : description.samples;

    if (animation) {
        // Compiled ahead of the first picture, so that each picture's value is an update alone.
        start = Clock::now();
        session.Update();
        times.update += _SecondsSince(start);
    }
    const int first = options.frame > 0 ? options.frame - 1 : 0;
    const int end = options.frame > 0 ? options.frame : options.frames;
    for (int frame = first; frame < end; ++frame) {
        start = Clock::now();
        if (animation) {
            animation->Set(session, options.frames > 1
                                        ? static_cast<double>(frame) / (options.frames - 1)
                                        : 0.0);
        }
        session.Update();
        times.update += _SecondsSince(start);
        if (frame == first && options.printsPrograms) {
            std::printf("%s", session.GetPrograms().c_str());
        }
        const std::string file =
            options.IsSingle() ? options.output : _NumberFile(options.output, frame + 1);
        start = Clock::now();
        _RenderPicture(session, framebuffer, statistics, file, samples, description.time, options);
        times.render += _SecondsSince(start);
        start = Clock::now();
        _Write(file, description, *framebuffer.Get());
        times.write += _SecondsSince(start);
    }
    if (!options.IsSingle()) {
        _ReportCounts(session);
    }
    if (options.reportsTimes) {
        _ReportTimes(times, session);
    }
    if (options.printsStatistics) {
        std::printf("%s", statistics.Print().c_str());
    }
}

} // namespace Tolen::Render
