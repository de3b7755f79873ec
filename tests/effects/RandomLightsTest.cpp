#include "LightsFixture.h"
#include "support/RecordingPrimitive.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <random>

/// A client that adds, changes, connects and destroys lights as it comes and closes the holes now
/// and then. Each light has to be what it is in a scene that was built for the same lights at once.
///
/// TOLEN_RANDOM_CALLS and TOLEN_RANDOM_SEED set how many calls are made, and the seed.

namespace Tolen::Effects::Tests {
namespace {

struct Kind {
    const char* className;
    const char* interfaceName;
    const char* valueName;
    const char* inputName; ///< null for none
    const char* inputType;
};

constexpr Kind kKinds[] = {
    {"LightDecayDoubleArray", "ILightDecay", "rate", nullptr, nullptr},
    {"LightDecayInverseArray", "ILightDecay", "rate", nullptr, nullptr},
    {"LightPointArray", "ILight", "intensity", "decay", "ILightDecay"},
    {"LightDirectArray", "ILight", "intensity", "decay", "ILightDecay"},
    {"LightInstanceStandardArray", "ILightInstance", "dimmer", "light", "ILight"},
};

constexpr int kStandard = -1; ///< what an input is connected to at first
constexpr int kNothing = -2;

/// A light, or a part of one, as the client remembers it.
struct Node {
    const Kind* kind;
    float value;
    int target; ///< another node or one of the above
};
using Nodes = std::map<int, Node>;

/// The nodes as shaders of a manager, and the receiver of those that stand in the world.
class Scene {
public:
    Scene(MgrEffects& manager, IMgrConsole* console) {
        EXPECT_TRUE(_lights.Init(&manager, console));
        _pReceiver = _lights.CreateShader("LightManagerArray", nullptr);
    }

    void Build(const Nodes& nodes) {
        for (const auto& [id, node] : nodes) {
            Add(id, node);
            SetValue(id, node);
        }
        for (const auto& [id, node] : nodes) {
            if (node.target != kStandard) {
                Connect(id, node);
            }
        }
        Receive(nodes);
    }

    IShader* GetReceiver() { return _pReceiver; }
    void Add(int id, const Node& node) {
        _views[id] = _lights.CreateShader(node.kind->className, nullptr);
        ASSERT_NE(_views[id], nullptr);
    }
    void Destroy(int id) {
        EXPECT_TRUE(_lights.DestroyShader(_views[id]));
        _views.erase(id);
    }
    void SetValue(int id, const Node& node) {
        EXPECT_TRUE(_views[id]->SetParameter(nullptr, node.kind->valueName, node.value));
    }
    void Connect(int id, const Node& node) {
        IShader* const target = node.target < 0 ? nullptr : _views.at(node.target);
        EXPECT_TRUE(_views[id]->SetParameter(nullptr, node.kind->inputName, target));
    }
    void Receive(const Nodes& nodes) {
        std::vector<IShader*> instances;
        for (const auto& [id, node] : nodes) {
            if (node.kind == &kKinds[4]) {
                instances.push_back(_views.at(id));
            }
        }
        const int count = static_cast<int>(instances.size());
        EXPECT_TRUE(_pReceiver->GetParameter("lights")->SetLength(count));
        for (int i = 0; i < count; ++i) {
            EXPECT_TRUE(_pReceiver->SetParameter(nullptr, "lights",
                                                 instances[static_cast<std::size_t>(i)], i));
        }
    }
    /// Gives the lights other cells and connects everything again.
    void Update(const Nodes& nodes) {
        EXPECT_TRUE(_lights.Update(false));
        for (const auto& [id, node] : nodes) {
            if (node.target >= 0) {
                Connect(id, Node{node.kind, node.value, kNothing});
                Connect(id, node);
            }
        }
        Receive(nodes);
    }

    /// What generated code finds for a node, with all that is connected to it.
    std::string Describe(int id, const Nodes& nodes) {
        auto* const view = dynamic_cast<Shader_LightShader*>(_views.at(id));
        const Node& node = nodes.at(id);
        float value = 0.0f;
        IShader* connected = nullptr;
        EXPECT_TRUE(view->GetParameter(node.kind->valueName)->Get(value));
        EXPECT_EQ(value, node.value);
        if (node.kind->inputName != nullptr) {
            EXPECT_TRUE(view->GetParameter(node.kind->inputName)->Get(connected));
            EXPECT_EQ(connected == nullptr, node.target == kNothing);
        }
        if (node.target >= 0) {
            EXPECT_EQ(connected, _views.at(node.target));
        }
        return _Describe(view->GetShader(), view->GetSubIndex(), node.target == kNothing);
    }
    std::string DescribeReceiver(const Nodes& nodes) {
        IShader* const real = dynamic_cast<Shader_PassThrough&>(*_pReceiver).GetShader();
        std::string text;
        const int count = _pReceiver->GetParameter("lights")->GetLength();
        for (int i = 0; i < count; ++i) {
            const std::string light = _DescribeTarget(real, "lights", i);
            text += light.substr(0, light.find(" of ")) + "\n";
        }
        EXPECT_EQ(count, std::count_if(nodes.begin(), nodes.end(), [](const auto& entry) {
                      return entry.second.kind == &kKinds[4];
                  }));
        return text;
    }

private:
    static std::string _Describe(IShader* real, int cell, bool isUnconnected) {
        std::string text = real->GetClassName();
        for (const Kind& kind : kKinds) {
            if (text != kind.className) {
                continue;
            }
            float value = 0.0f;
            EXPECT_TRUE(real->GetParameter(kind.valueName)->Get(value, cell));
            text += " " + std::to_string(value);
            if (kind.inputName != nullptr && !isUnconnected) {
                const std::string target = _DescribeTarget(real, kind.inputName, cell);
                // What is connected below may itself be unconnected: that is told of its own.
                text += " of " + target.substr(0, target.find(" of "));
            }
            break;
        }
        return text;
    }
    static std::string _DescribeTarget(IShader* real, const std::string& name, int cell) {
        Vector2i at;
        IShader* base = nullptr;
        EXPECT_TRUE(real->GetParameter(name + "Ref")->Get(at, cell));
        EXPECT_TRUE(real->GetParameter(name)->Get(base, at.x)) << name << " " << at.x;
        return base == nullptr ? "nothing" : _Describe(base, at.y, true);
    }

    MgrLightShaders _lights;
    IShader* _pReceiver;
    std::map<int, IShader*> _views;
};

class RandomLightsTest : public EffectsFixture {
protected:
    RandomLightsTest() {
        Load(LightLibraryText::Make());
        EXPECT_TRUE(_managerFresh.Init(console.Get(), &_contextFresh, nullptr));
        EXPECT_TRUE(_managerFresh.AddLibrary("lights", LightLibraryText::Make(), nullptr));
        _pScene = std::make_unique<Scene>(manager, console.Get());
        IShader* const root = Make("Root");
        EXPECT_TRUE(root->SetParameter(nullptr, "lighting", _pScene->GetReceiver()));
        MakeSurface(root)->CreateReference(&_primitive);
    }
    ~RandomLightsTest() override {
        _pScene.reset();
        manager.Shutdown();
    }

    void Step() {
        switch (_Pick(8)) {
        case 0:
        case 1:
            if (_nodes.size() < 60) {
                const int id = _nextId++;
                _nodes[id] = Node{&kKinds[_Pick(std::size(kKinds))], 1.0f, kStandard};
                _pScene->Add(id, _nodes[id]);
            }
            break;
        case 2:
        case 3:
            if (!_nodes.empty()) {
                const auto entry = _Any();
                entry->second.value = static_cast<float>(_Pick(1000));
                _pScene->SetValue(entry->first, entry->second);
            }
            break;
        case 4:
        case 5:
            _Retarget();
            break;
        case 6:
            if (!_nodes.empty() && _Pick(2) == 0) {
                _Destroy(_Any());
            }
            break;
        default:
            if (_Pick(4) == 0) {
                _pScene->Update(_nodes);
            } else if (_Pick(4) == 0) {
                _pScene->Receive(_nodes);
                manager.Update();
            }
        }
    }

    void Compare() {
        context.GetLog().Clear();
        _contextFresh.GetLog().Clear();
        _pScene->Receive(_nodes);
        Scene fresh(_managerFresh, console.Get());
        fresh.Build(_nodes);
        for (const auto& [id, node] : _nodes) {
            EXPECT_EQ(_pScene->Describe(id, _nodes), fresh.Describe(id, _nodes)) << id;
        }
        EXPECT_EQ(_pScene->DescribeReceiver(_nodes), fresh.DescribeReceiver(_nodes));
    }

    std::mt19937 random;

private:
    std::size_t _Pick(std::size_t count) { return random() % count; }
    Nodes::iterator _Any() {
        return std::next(_nodes.begin(), static_cast<std::ptrdiff_t>(_Pick(_nodes.size())));
    }
    void _Retarget() {
        if (_nodes.empty()) {
            return;
        }
        const auto entry = _Any();
        if (entry->second.kind->inputName == nullptr) {
            return;
        }
        std::vector<int> targets = {kNothing};
        for (const auto& [id, node] : _nodes) {
            if (std::string(node.kind->interfaceName) == entry->second.kind->inputType) {
                targets.push_back(id);
            }
        }
        entry->second.target = targets[_Pick(targets.size())];
        _pScene->Connect(entry->first, entry->second);
    }
    void _Destroy(Nodes::iterator entry) {
        const int id = entry->first;
        _pScene->Destroy(id);
        _nodes.erase(entry);
        for (auto& [other, node] : _nodes) {
            if (node.target == id) {
                node.target = kNothing;
            }
        }
    }

    RecordingPrimitive _primitive{context};
    RecordingContext _contextFresh;
    MgrEffects _managerFresh;
    std::unique_ptr<Scene> _pScene;
    Nodes _nodes;
    int _nextId = 0;
};

int GetNumber(const char* name, int standard) {
    const char* const text = std::getenv(name);
    return text == nullptr ? standard : std::atoi(text);
}

TEST_F(RandomLightsTest, Lights_AreWhatTheyAreInASceneBuiltAtOnce) {
    const int calls = GetNumber("TOLEN_RANDOM_CALLS", 3000);
    random.seed(static_cast<unsigned int>(GetNumber("TOLEN_RANDOM_SEED", 1)));
    for (int i = 1; i <= calls && !HasFailure(); ++i) {
        Step();
        if (i % 100 == 0) {
            SCOPED_TRACE(i);
            Compare();
        }
    }
    EXPECT_TRUE(checks.IsEmpty());
}

} // namespace
} // namespace Tolen::Effects::Tests
