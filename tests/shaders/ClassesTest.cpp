#include "shaders/ShaderLibrary.h"

#include "support/paths/SourceFolder.h"

#include "TolenEffects/IReferenceEffect.h"

#include <fstream>
#include <iterator>
#include <map>
#include <regex>

namespace Tolen::Tests {
namespace {

using Effects::IEffect;
using Effects::IShader;

class Classes : public ShaderLibrary {
protected:
    /// Names all coords, as a shader without them makes no program.
    void NameCoords(IShader* shader, const std::string& body) {
        const std::regex coord("(?:coord|tangent) vec[23] (\\w+);");
        for (std::sregex_iterator at(body.begin(), body.end(), coord), end; at != end; ++at) {
            EXPECT_TRUE(shader->SetCoord(nullptr, (*at)[1], "Coord"));
        }
    }
};

// One root for each interface, which calls all of its methods.
const std::map<std::string, std::string> kHolders = {
    {"IScalar", "void Shade() { accumulate(0, vec3(node.Scalar(kl_HitPosition))); }"},
    {"IColor", "void Shade() { accumulate(0, node.Color(kl_HitPosition)); }"},
    {"IMapping", "void Shade() { accumulate(0, node.Map(kl_HitPosition)); }"},
    {"IBump", "void Shade() { accumulate(0, node.Bend(kl_HitPosition, kl_HitNormal)); }"},
    {"IBsdf", "void Shade() { vec3 up = vec3(0.0, 0.0, 1.0); vec3 w = up; float d = 0.0;"
              " node.Prepare(kl_HitPosition, up, true); accumulate(0, node.Sample(up, up, w, d));"
              " accumulate(0, node.Evaluate(up, w) * node.Density(up, w) + node.Albedo(up)); }"},
    {"IEnvironment", "void Shade() { vec3 w = kl_HitNormal; float d = 0.0;"
                     " accumulate(0, node.Sample(vec2(0.5), w, d) * node.Radiance(w)"
                     " * node.Density(w)); }"},
    {"IIntegrator", "void Shade() { vec3 w = kl_HitNormal; float d = 0.0;"
                    " vec3 found = node.FindLight(w, d); node.Gather(w, found, d, found, d);"
                    " for (int k = 0; k < node.LampCount(); ++k)"
                    " node.GatherLamp(w, node.FindLamp(k, w, w));"
                    " node.Continue(w, found, d); }"},
    {"ILighting", "void Shade() { vec3 w = kl_HitNormal; for (int k = 0; k < node.Count(); ++k)"
                  " accumulate(0, node.Find(k, kl_HitPosition, w, w) *"
                  " node.Visibility(kl_HitPosition, w)); }"},
    {"ICamera", "void Render() { vec3 o = vec3(0.0); vec3 w = o; node.Look(vec2(0.0), vec2(0.0),"
                " o, w); spawnRay(o, w); }"},
};

TEST_F(Classes, EveryClassThatIsARoot_Compiles) {
    int count = 0;
    for (const DeclaredClass& declared : GetDeclaredClasses()) {
        const bool isRenderer = declared.body.find("void Render()") != std::string::npos;
        const bool isSurface = declared.body.find("void Shade()") != std::string::npos;
        if (!isRenderer && !isSurface) {
            continue;
        }
        IShader* const shader = Make(declared.name);
        ASSERT_NE(shader, nullptr);
        NameCoords(shader, declared.body);
        IEffect* const effect =
            isRenderer ? manager.CreateEffectRenderer() : manager.CreateEffectSurface();
        ASSERT_TRUE(effect->SetRoot(shader)) << declared.name;
        EXPECT_TRUE(Compiles(effect)) << declared.name;
        ++count;
    }
    EXPECT_GT(count, 10);
}

TEST_F(Classes, EveryClassThatIsANode_CompilesAsThePartOfAnEffect) {
    for (const auto& [name, method] : kHolders) {
        Load("holder of " + name,
             "class Holder" + name + " { input " + name + " node; " + method + " }");
    }
    int count = 0;
    for (const DeclaredClass& declared : GetDeclaredClasses()) {
        if (declared.interface.empty()) {
            continue;
        }
        ASSERT_TRUE(kHolders.contains(declared.interface)) << declared.interface;
        IShader* const node = Make(declared.name);
        ASSERT_NE(node, nullptr);
        NameCoords(node, declared.body);
        IShader* const holder = Make("Holder" + declared.interface);
        Connect(holder, "node", node);
        IEffect* const effect = declared.interface == "ICamera" ? manager.CreateEffectRenderer()
                                                                : manager.CreateEffectSurface();
        ASSERT_TRUE(effect->SetRoot(holder)) << declared.name;
        EXPECT_TRUE(Compiles(effect)) << declared.name;
        ++count;
    }
    EXPECT_GT(count, 40);
}

const std::regex kInput("\n    (static )?input (\\w+) (\\w+(?:\\[\\])?)(?: = ([^;]*))?;");

struct Folder {
    const char* name;
    const char* page;
};

const Folder kFolders[] = {{"shaders", "docs/shaders.md"}, {"shaders/lights", "docs/lights.md"}};

TEST(ShaderFiles, TheHeadOfEachFile_NamesItsInputs) {
    for (const Folder& folder : kFolders) {
        for (const DeclaredClass& declared : GetDeclaredClasses(folder.name)) {
            const std::string& body = declared.body;
            for (std::sregex_iterator at(body.begin(), body.end(), kInput), end; at != end; ++at) {
                const std::string input = (*at)[3].str().substr(0, (*at)[3].str().find('['));
                EXPECT_TRUE(std::regex_search(declared.head, std::regex("\\b" + input + "\\b")))
                    << declared.name << "." << input;
            }
        }
    }
}

TEST(ShaderFiles, TheirPageInDocs_ListsAllInputsWithTypesAndDefaults) {
    for (const Folder& folder : kFolders) {
        std::ifstream stream(SourceFolder() + "/" + folder.page);
        const std::string page(std::istreambuf_iterator<char>(stream), {});
        for (const DeclaredClass& declared : GetDeclaredClasses(folder.name)) {
            std::size_t from = page.find("\n| `" + declared.name + "`");
            ASSERT_NE(from, std::string::npos) << declared.name;
            const std::string& body = declared.body;
            for (std::sregex_iterator at(body.begin(), body.end(), kInput), end; at != end; ++at) {
                // Companions are all alike, and told of once.
                if ((*at)[3].str().ends_with("Ref[]")) {
                    EXPECT_EQ((*at)[2].str(), "ivec2");
                    EXPECT_EQ((*at)[4].str(), "ivec2(-1)");
                    continue;
                }
                const std::string initial = (*at)[4].matched ? "`" + (*at)[4].str() + "`" : "";
                const std::string row = "| `" + (*at)[3].str() + "` | `" + (*at)[1].str() +
                                        (*at)[2].str() + "` | " + initial + " |";
                from = page.find(row, from);
                ASSERT_NE(from, std::string::npos) << declared.name << ": " << row;
            }
        }
    }
}

} // namespace
} // namespace Tolen::Tests
