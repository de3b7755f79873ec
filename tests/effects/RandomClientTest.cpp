#include "EffectsFixture.h"
#include "TolenEffects/ILocalParameter.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IReferenceEffect.h"

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <vector>

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kSource = R"(
float shared(float x) { return Left.Of(x) + Right.Of(x); }
class Left {
    static input float level = 1.0;
    static float Of(float x) { return x < 0.0 ? Right.Of(x + 1.0) : level; }
    static float Own(float x) { return Own(x); }
    output vec4 o_left;
    void Shade() { accumulate(o_left, vec4(Of(1.0))); }
}
class Right {
    static input float level = 2.0;
    static float count[] = float[](1.0, 2.0);
    static float Of(float x) { return x > 5.0 ? Left.Of(x) : level * count[0]; }
    void Shade() { accumulate(o_color, vec3(Left.Of(2.0))); }
}
class Coords {
    input vec3 color = vec3(1.0);
    input int list[] = int[](1, 2, 3);
    coord vec2 uv;
    tangent vec3 along;
    void Shade() { accumulate(o_color, color * uv.x * shared(along.x) * float(list[0])); }
}
)";

constexpr const char* kClasses[] = {"Left", "Right", "Coords"};
constexpr const char* kCoords[] = {"A", "B", ""};
constexpr const char* kTangents[] = {"C", "Normal", ""};

/// Does to a manager what a careless client might do, in an order that a seed settles, and keeps
/// what a client knows.
class RandomClient {
public:
    RandomClient(RecordingContext& context, MgrEffects& manager, unsigned int seed)
        : _context(context), _manager(manager), _random(seed) {}

    void Step() {
        switch (_Pick(12)) {
        case 0:
            _MakeShader();
            break;
        case 1:
            _MakeEffect();
            break;
        case 2:
            if (!_shaders.empty() && _Pick(3) == 0) {
                _DestroyShader();
            }
            break;
        case 3:
            if (!_effects.empty() && _Pick(3) == 0) {
                const std::size_t i = _Pick(_effects.size());
                _manager.DestroyEffectSurface(_effects[i]);
                _effects.erase(_effects.begin() + static_cast<long>(i));
            }
            break;
        case 4:
        case 5:
            _SetRoot();
            break;
        case 6:
        case 7:
            _SetCoord();
            break;
        case 8:
            _SetValue();
            break;
        case 9:
            _UsePrimitive();
            break;
        case 10:
            _manager.GetPrototypeShader("Left", nullptr)
                ->SetParameter("level", static_cast<float>(_Pick(10)));
            break;
        default:
            _manager.Update(nullptr);
            break;
        }
    }

    /// What every effect writes on a primitive of its own, without the keys in the names, and
    /// whether it compiles at all.
    std::string Describe() {
        std::string all;
        for (IEffect* effect : _effects) {
            RecordingPrimitive primitive(_context);
            IReferenceEffect* const reference = effect->CreateReference(&primitive);
            const bool updated = effect->Update(nullptr) && effect->IsCompiled();
            all += updated ? "compiled" : "incomplete";
            for (const auto& [name, value] : primitive.GetUniforms()) {
                const bool isBlock = value.rfind("block", 0) == 0;
                all += " " + name.substr(0, name.find("_k")) + "=" + (isBlock ? "block" : value);
            }
            all += "\n";
            if (reference != nullptr) {
                effect->DestroyReference(reference);
            }
        }
        return all;
    }

    /// Makes the same shaders and effects in another manager.
    std::string DescribeAfresh(RecordingContext& context, MgrEffects& manager) const {
        RandomClient afresh(context, manager, 0);
        float level = 1.0f;
        IParameter* const parameter =
            const_cast<MgrEffects&>(_manager).GetPrototypeShader("Left", nullptr)->GetParameter(
                "level");
        parameter->Get(level);
        manager.GetPrototypeShader("Left", nullptr)->SetParameter("level", level);
        std::map<IShader*, IShader*> copies;
        for (IShader* shader : _shaders) {
            IShader* const copy =
                manager.CreateShader(shader->GetPrototype()->GetClassName(), nullptr);
            copies[shader] = copy;
            _Copy(shader, copy);
        }
        for (IEffect* effect : _effects) {
            IEffect* const copy = manager.CreateEffectSurface();
            IShader* root = nullptr;
            effect->GetRoot(root);
            if (root != nullptr) {
                copy->SetRoot(copies.at(root));
            }
            afresh._effects.push_back(copy);
        }
        return afresh.Describe();
    }

private:
    static void _Copy(IShader* from, IShader* to) {
        auto copyCoord = [to](const std::string& name, IParameter* coord) {
            std::string value;
            coord->Get(value);
            to->SetCoord(nullptr, name, value);
            return true;
        };
        auto visit = FastDelegate2<const std::string&, IParameter*, bool>::Borrow(copyCoord);
        from->VisitCoords(visit);
        Vector3f color;
        if (IParameter* const parameter = from->GetParameter("color")) {
            parameter->Get(color);
            to->SetParameter(nullptr, "color", color);
            to->GetParameter("list")->SetLength(from->GetParameter("list")->GetLength());
        }
    }

    std::size_t _Pick(std::size_t count) { return _random() % count; }

    void _MakeShader() {
        if (_shaders.size() < 12) {
            _shaders.push_back(_manager.CreateShader(kClasses[_Pick(3)], nullptr));
        }
    }

    void _MakeEffect() {
        if (_effects.size() < 6) {
            _effects.push_back(_manager.CreateEffectSurface());
        }
    }

    void _DestroyShader() {
        const std::size_t i = _Pick(_shaders.size());
        _manager.DestroyShader(_shaders[i]);
        _shaders.erase(_shaders.begin() + static_cast<long>(i));
    }

    void _SetRoot() {
        if (!_effects.empty() && !_shaders.empty()) {
            _effects[_Pick(_effects.size())]->SetRoot(_shaders[_Pick(_shaders.size())]);
        }
    }

    void _SetCoord() {
        if (!_shaders.empty()) {
            IShader* const shader = _shaders[_Pick(_shaders.size())];
            if (_Pick(2) == 0) {
                shader->SetCoord(nullptr, "uv", kCoords[_Pick(3)]);
            } else {
                shader->SetCoord(nullptr, "along", kTangents[_Pick(3)]);
            }
        }
    }

    void _SetValue() {
        if (_shaders.empty()) {
            return;
        }
        IShader* const shader = _shaders[_Pick(_shaders.size())];
        const float x = static_cast<float>(_Pick(100));
        shader->SetParameter(nullptr, "color", Vector3f(x, x, x));
        if (IParameter* const list = shader->GetParameter("list")) {
            list->SetLength(static_cast<int>(_Pick(5)));
        }
    }

    void _UsePrimitive() {
        if (_effects.empty()) {
            return;
        }
        IEffect* const effect = _effects[_Pick(_effects.size())];
        if (_primitives.size() < 20) {
            _primitives.push_back(std::make_unique<RecordingPrimitive>(_context));
        }
        IReferenceEffect* const reference =
            effect->CreateReference(_primitives[_Pick(_primitives.size())].get());
        IShader* root = nullptr;
        effect->GetRoot(root);
        if (reference != nullptr && root != nullptr) {
            if (ILocalParameter* const local = reference->AcquireParameterLocal(root, "color")) {
                local->Set(Vector3f(7.0f, 7.0f, 7.0f));
            }
        }
        if (reference != nullptr && _Pick(2) == 0) {
            effect->DestroyReference(reference);
        }
    }

    RecordingContext& _context;
    MgrEffects& _manager;
    std::mt19937 _random;
    std::vector<IShader*> _shaders;
    std::vector<IEffect*> _effects;
    std::vector<std::unique_ptr<RecordingPrimitive>> _primitives;
};

TEST(RandomClient, AnyOrderOfCalls_EndsWhereAFreshManagerDoes) {
    for (unsigned int seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        CapturedConsole console;
        CapturedChecks checks;
        RecordingContext context;
        {
            MgrEffects manager;
            ASSERT_TRUE(manager.Init(console.Get(), &context, nullptr));
            ASSERT_TRUE(manager.AddLibrary("library", kSource, nullptr)) << console.GetAll();
            RandomClient client(context, manager, seed);
            for (int round = 0; round < 10; ++round) {
                for (int step = 0; step < 60; ++step) {
                    client.Step();
                }
                RecordingContext freshContext;
                MgrEffects fresh;
                ASSERT_TRUE(fresh.Init(console.Get(), &freshContext, nullptr));
                ASSERT_TRUE(fresh.AddLibrary("library", kSource, nullptr));
                ASSERT_EQ(client.Describe(), client.DescribeAfresh(freshContext, fresh));
            }
            manager.Shutdown();
            EXPECT_EQ(context.GetCountLive(), 0);
        }
        EXPECT_TRUE(context.GetLog().GetMisuses().empty());
        EXPECT_EQ(console.GetAll().find("Not Found"), std::string::npos);
    }
}

} // namespace
} // namespace Tolen::Effects::Tests
