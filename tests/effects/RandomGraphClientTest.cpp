#include "EffectsFixture.h"

#include "TolenEffects/IGraph.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IPrototypeShader.h"

#include <cstdlib>
#include <deque>
#include <map>
#include <memory>
#include <random>
#include <regex>
#include <set>
#include <vector>

/// A client that connects and destroys shaders as it comes, and gives some of them graphs of their
/// own. What its programs do in the end has to be what those of a manager do that was built for the
/// same connections at once, without such graphs.
///
/// TOLEN_RANDOM_CALLS and TOLEN_RANDOM_SEED set how many calls are made, and the first seed.

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kSource = R"(
interface INode { float Get(float x); }
class Leaf : INode {
    input float value;
    float Get(float x) { return x + value; }
}
class Pair : INode {
    input INode a = Leaf();
    input INode b = Leaf();
    input float value;
    float Get(float x) { return a.Get(x) * b.Get(value); }
}
class List : INode {
    input INode items[] = Leaf();
    input float value;
    float Get(float x) {
        float sum = value;
        for (int i = 0; i < items.length; ++i) { sum += items[i].Get(x); }
        return sum + items[items.length - 1].Get(x);
    }
}
class Fixed : INode {
    input INode items[2] = Leaf();
    coord vec2 uv;
    float Get(float x) { return items[0].Get(x) - items[1].Get(uv.x); }
}
class Shared : INode {
    static input INode common = Leaf();
    input INode a = Leaf();
    float Get(float x) { return common.Get(x) + a.Get(x); }
}
class Root {
    input INode node = List();
    input float value;
    void Shade() { accumulate(o_color, vec3(node.Get(value))); }
}
)";

constexpr const char* kClasses[] = {"Leaf", "Pair", "List", "Fixed", "Shared", "Root", "Root"};
constexpr const char* kInputs[] = {"a", "b", "items", "node"};

std::string _WithoutKeys(const std::string& text) {
    static const std::regex key("_k[0-9a-f]+");
    return std::regex_replace(text, key, "");
}

/// The functions that texts define, by name.
std::map<std::string, std::string> _GetFunctions(const std::vector<const IKLShader*>& shaders) {
    std::map<std::string, std::string> functions;
    static const std::regex definition("(?:^|\n)\\w+ (\\w+)\\([^\n]*\\)\n\\{\n");
    for (const IKLShader* shader : shaders) {
        const std::string& text = static_cast<const RecordingShader*>(shader)->GetText();
        for (std::sregex_iterator it(text.begin(), text.end(), definition), end; it != end; ++it) {
            const auto from = static_cast<std::size_t>(it->position() + it->length());
            functions[(*it)[1]] = text.substr(from, text.find("\n}", from) - from);
        }
    }
    return functions;
}

/// A function with everything that it calls in place, and no keys in the names.
class Expansion {
public:
    explicit Expansion(const std::map<std::string, std::string>& functions)
        : _functions(functions) {}

    const std::string& Get(const std::string& name) {
        const auto known = _expanded.find(name);
        if (known != _expanded.end()) {
            return known->second;
        }
        static const std::regex call("(\\w+)\\(");
        const std::string& body = _functions.at(name);
        std::string text;
        std::size_t at = 0;
        for (std::sregex_iterator it(body.begin(), body.end(), call), end; it != end; ++it) {
            const std::string callee = (*it)[1];
            text += body.substr(at, static_cast<std::size_t>(it->position()) - at);
            at = static_cast<std::size_t>(it->position() + it->length());
            text += _functions.count(callee) != 0 ? "{" + Get(callee) + "}(" : callee + "(";
        }
        text += body.substr(at);
        // What is long is told apart by its hash.
        text = _WithoutKeys(text);
        if (text.size() > 2000) {
            text = std::to_string(std::hash<std::string>{}(text));
        }
        return _expanded[name] = text;
    }

private:
    const std::map<std::string, std::string>& _functions;
    std::map<std::string, std::string> _expanded;
};

class RandomGraphClient {
public:
    RandomGraphClient(RecordingContext& context, MgrEffects& manager, unsigned int seed)
        : _context(context), _manager(manager), _random(seed) {}

    void Step() {
        switch (_Pick(18)) {
        case 0:
        case 1:
            if (_shaders.size() < 24) {
                _Add(_manager.CreateShader(kClasses[_Pick(std::size(kClasses))], nullptr));
            }
            break;
        case 2:
            if (!_shaders.empty() && _Pick(3) == 0) {
                _DestroyShader();
            }
            break;
        case 3:
            _StepEffects();
            break;
        case 4:
            if (!_effects.empty() && !_shaders.empty()) {
                IShader* root = _AnyShader();
                for (int tries = 0; !root->HasMethod("Shade") && tries < 8; ++tries) {
                    root = _AnyShader();
                }
                _effects[_Pick(_effects.size())]->SetRoot(root);
            }
            break;
        case 5:
            _SetValue();
            break;
        case 6:
            _Resize();
            break;
        case 7:
            _manager.GetPrototypeShader("Shared", nullptr)->SetParameter("common", _AnyOrNone());
            break;
        case 8:
            if (!_shaders.empty()) {
                _AnyShader()->SetCoord(nullptr, "uv", _Pick(9) == 0 ? "" : "A");
            }
            break;
        case 9:
            _Listen();
            break;
        case 10:
            _manager.Update(nullptr);
            break;
        case 11:
            _ConnectAll();
            break;
        case 12:
            _StepGraphs();
            break;
        default:
            _Connect();
            break;
        }
    }

    /// How many of the effects described so far were compiled.
    int GetCountCompiled() const { return _countCompiled; }

    /// Lets the listeners do nothing any more.
    void Stop() { _isQuiet = true; }

    /// Fills the cells that are empty, so that most programs can be made.
    void Mend() {
        _isQuiet = true;
        for (IShader* shader : _shaders) {
            for (const char* name : kInputs) {
                IParameter* const input = shader->GetParameter(name);
                for (int i = 0; input != nullptr && i < input->GetLength(); ++i) {
                    IShader* held = nullptr;
                    input->Get(held, i);
                    for (int tries = 0; held == nullptr && tries < 8; ++tries) {
                        input->Set(_AnyShader(), i);
                        input->Get(held, i);
                    }
                }
            }
        }
        _isQuiet = false;
    }

    /// What the program of every effect does, and what it is given.
    std::string Describe() {
        _isQuiet = true;
        std::string all;
        for (IEffect* effect : _effects) {
            RecordingPrimitive primitive(_context);
            IReferenceEffect* const reference = effect->CreateReference(&primitive);
            const bool isCompiled = effect->Update(nullptr) && effect->IsCompiled();
            all += isCompiled ? "compiled" : "incomplete";
            _countCompiled += isCompiled ? 1 : 0;
            IShader* root = nullptr;
            effect->GetRoot(root);
            if (isCompiled && root->HasMethod("Shade")) {
                const auto functions = _GetFunctions(_GetTexts(effect->GetKLProgram()));
                all += " " + Expansion(functions).Get(root->GetMethodNameMangled("Shade"));
                std::multiset<std::string> values;
                for (const auto& [name, value] : primitive.GetUniforms()) {
                    values.insert(_WithoutKeys(name) + "=" + value);
                }
                for (const std::string& value : values) {
                    all += " " + value;
                }
            }
            all += "\n";
            if (reference != nullptr) {
                effect->DestroyReference(reference);
            }
        }
        _isQuiet = false;
        return all;
    }

    /// Makes the same graph in another manager.
    std::string DescribeAfresh(RecordingContext& context, MgrEffects& manager) const {
        RandomGraphClient afresh(context, manager, 0);
        std::map<IShader*, IShader*> copies;
        for (IShader* shader : _shaders) {
            copies[shader] = manager.CreateShader(shader->GetClassName(), nullptr);
        }
        for (IShader* shader : _shaders) {
            _Copy(shader, copies.at(shader), copies);
        }
        IParameter* const shared =
            _manager.GetPrototypeShader("Shared", nullptr)->GetParameter("common");
        IShader* common = nullptr;
        shared->Get(common);
        if (!shared->IsDefault()) {
            manager.GetPrototypeShader("Shared", nullptr)
                ->GetParameter("common")
                ->Set(common == nullptr ? nullptr : copies.at(common));
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
    /// Makes one more step when it is told of a change.
    struct Meddler : public CreationOrder {
        RandomGraphClient* pClient = nullptr;
        bool OnChange(IShader*) {
            pClient->_StepInside();
            return true;
        }
        bool OnCreateGraph(IShader* shader, IGraph*) { return OnChange(shader); }
    };

    Meddler& _AddMeddler() {
        _meddlers.emplace_back().pClient = this;
        return _meddlers.back();
    }

    /// Those of a program and of all graphs that it may have linked.
    std::vector<const IKLShader*> _GetTexts(IKLProgram* program) const {
        const auto& shaders = static_cast<RecordingProgram*>(program)->GetShaders();
        std::vector<const IKLShader*> texts(shaders.begin(), shaders.end());
        for (IShader* shader : _shaders) {
            IGraph* const own = shader->GetGraphKind0();
            if (own != nullptr && own->IsCompiled()) {
                texts.push_back(own->GetKLShader());
            }
        }
        return texts;
    }

    std::size_t _Pick(std::size_t count) { return _random() % count; }
    IShader* _AnyShader() { return _shaders[_Pick(_shaders.size())]; }
    IShader* _AnyOrNone() { return _shaders.empty() || _Pick(16) == 0 ? nullptr : _AnyShader(); }

    void _Add(IShader* shader) {
        if (shader != nullptr) {
            shader->SetParameter(nullptr, "value", static_cast<float>(_Pick(1000)));
            shader->SetCoord(nullptr, "uv", "A");
            _shaders.push_back(shader);
        }
    }

    void _DestroyShader() {
        const std::size_t i = _Pick(_shaders.size());
        IShader* const shader = _shaders[i];
        _shaders.erase(_shaders.begin() + static_cast<long>(i));
        _manager.DestroyShader(shader);
    }

    void _StepEffects() {
        if (_effects.size() < 5) {
            _effects.push_back(_manager.CreateEffectSurface());
        } else if (_Pick(3) == 0) {
            const std::size_t i = _Pick(_effects.size());
            IEffect* const effect = _effects[i];
            _effects.erase(_effects.begin() + static_cast<long>(i));
            _manager.DestroyEffectSurface(effect);
        }
    }

    void _StepGraphs() {
        if (_shaders.empty()) {
            return;
        }
        IShader* const shader = _AnyShader();
        switch (_Pick(8)) {
        case 0:
            shader->DestroyGraphKind0();
            break;
        case 1:
            _Pick(2) == 0 ? shader->CreateGraphKind2() : shader->CreateGraphKind3();
            break;
        case 2:
            shader->DestroyGraphKind2();
            shader->DestroyGraphKind3();
            break;
        case 3:
            for (IGraph* graph :
                 {shader->GetGraphKind0(), shader->GetGraphKind2(), shader->GetGraphKind3()}) {
                // A listener may destroy the shader and its graphs.
                if (graph != nullptr) {
                    graph->Compile(nullptr);
                    break;
                }
            }
            break;
        case 4: {
            Meddler& meddler = _AddMeddler();
            auto listener = MakeDelegate(&meddler, &Meddler::OnCreateGraph);
            shader->AddListenerCreateGraphKind0(listener);
            break;
        }
        default:
            shader->CreateGraphKind0();
            break;
        }
    }

    void _SetValue() {
        if (!_shaders.empty()) {
            _AnyShader()->SetParameter(nullptr, "value", static_cast<float>(_Pick(1000)));
        }
    }

    void _Connect() {
        if (_shaders.empty()) {
            return;
        }
        IShader* const shader = _AnyShader();
        for (const char* name : kInputs) {
            IParameter* const input = shader->GetParameter(name);
            if (input == nullptr || _Pick(2) == 0) {
                continue;
            }
            const int index = static_cast<int>(_Pick(4)) - 1;
            if (input->IsArray()) {
                shader->SetParameter(nullptr, name, _AnyOrNone(), index);
            } else {
                shader->SetParameter(nullptr, name, _AnyOrNone());
            }
            return;
        }
    }

    void _ConnectAll() {
        if (_shaders.empty()) {
            return;
        }
        std::vector<IShader*> cells;
        for (std::size_t i = _Pick(4); i > 0; --i) {
            cells.push_back(_AnyOrNone());
        }
        IShader* const shader = _AnyShader();
        shader->SetParameter(nullptr, "items", cells.data(), static_cast<int>(cells.size()));
    }

    void _Resize() {
        if (_shaders.empty()) {
            return;
        }
        if (IParameter* const items = _AnyShader()->GetParameter("items")) {
            items->SetLength(static_cast<int>(_Pick(4)));
        }
    }

    void _Listen() {
        if (_shaders.empty() || _meddlers.size() > 40) {
            return;
        }
        auto listener = MakeDelegate(&_AddMeddler(), &Meddler::OnChange);
        _AnyShader()->AddListenerChangeStructure(listener);
    }

    void _StepInside() {
        if (_isQuiet || _depth > 1 || _Pick(4) != 0) {
            return;
        }
        ++_depth;
        Step();
        --_depth;
    }

    static void _Copy(IShader* from, IShader* to, const std::map<IShader*, IShader*>& copies) {
        float value = 0.0f;
        if (IParameter* const parameter = from->GetParameter("value")) {
            parameter->Get(value);
            to->SetParameter(nullptr, "value", value);
        }
        if (IParameter* const coord = from->GetCoord("uv")) {
            std::string name;
            coord->Get(name);
            to->SetCoord(nullptr, "uv", name);
        }
        for (const char* name : kInputs) {
            IParameter* const input = from->GetParameter(name);
            if (input == nullptr) {
                continue;
            }
            to->GetParameter(name)->SetLength(input->GetLength());
            for (int i = 0; i < input->GetLength(); ++i) {
                IShader* held = nullptr;
                input->Get(held, i);
                if (!input->IsDefault(i)) {
                    IShader* const copy = held == nullptr ? nullptr : copies.at(held);
                    to->GetParameter(name)->Set(copy, i);
                }
            }
        }
    }

    RecordingContext& _context;
    MgrEffects& _manager;
    std::mt19937 _random;
    std::vector<IShader*> _shaders;
    std::vector<IEffect*> _effects;
    std::deque<Meddler> _meddlers;
    int _countCompiled = 0;
    int _depth = 0;
    bool _isQuiet = false;
};

int _GetNumber(const char* name, int otherwise) {
    const char* const text = std::getenv(name);
    return text == nullptr ? otherwise : std::atoi(text);
}

TEST(RandomGraphClient, AnyOrderOfConnections_EndsWhereAFreshManagerDoes) {
    constexpr int kRounds = 10;
    constexpr int kSteps = 100;
    const int calls = _GetNumber("TOLEN_RANDOM_CALLS", 10000);
    const auto firstSeed = static_cast<unsigned int>(_GetNumber("TOLEN_RANDOM_SEED", 1));
    const auto lastSeed = firstSeed + static_cast<unsigned int>(calls / (kRounds * kSteps));
    int countCompiled = 0;
    for (unsigned int seed = firstSeed; seed < lastSeed; ++seed) {
        SCOPED_TRACE(seed);
        CapturedConsole console;
        CapturedChecks checks;
        RecordingContext context;
        {
            MgrEffects manager;
            ASSERT_TRUE(manager.Init(console.Get(), &context, nullptr));
            ASSERT_TRUE(manager.AddLibrary("library", kSource, nullptr)) << console.GetAll();
            RandomGraphClient client(context, manager, seed);
            for (int round = 0; round < kRounds; ++round) {
                for (int step = 0; step < kSteps; ++step) {
                    client.Step();
                }
                if (round % 4 != 0) {
                    client.Mend();
                }
                RecordingContext freshContext;
                MgrEffects fresh;
                ASSERT_TRUE(fresh.Init(console.Get(), &freshContext, nullptr));
                ASSERT_TRUE(fresh.AddLibrary("library", kSource, nullptr));
                EXPECT_EQ(client.Describe(), client.DescribeAfresh(freshContext, fresh));
                if (testing::Test::HasFailure()) {
                    client.Stop();
                    manager.Shutdown();
                    return;
                }
            }
            countCompiled += client.GetCountCompiled();
            client.Stop();
            manager.Shutdown();
            EXPECT_EQ(context.GetCountLive(), 0);
        }
        EXPECT_TRUE(context.GetLog().GetMisuses().empty());
        EXPECT_EQ(console.GetAll().find("Not Found"), std::string::npos);
    }
    // One in five is enough to say that programs were compared.
    EXPECT_GT(countCompiled, calls / kSteps);
}

} // namespace
} // namespace Tolen::Effects::Tests
