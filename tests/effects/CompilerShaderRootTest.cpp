#include "CompilerShaderRoot.h"

#include "EffectsFixture.h"

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kSource = R"(
class Ray {
    void Init() { }
    int GetRayCount(int rayClass) { return rayClass; }
    void Shade() { accumulate(o_color, vec3(1.0)); }
}
class Frame {
    void Init() { }
    int GetRayCount() { return 2; }
    void Render() { accumulate(o_color, vec3(1.0)); }
}
class Bare {
    void Shade() { accumulate(o_color, vec3(1.0)); }
    void Render() { accumulate(o_color, vec3(1.0)); }
}
)";

class CompilerShaderRootTest : public EffectsFixture {
protected:
    CompilerShaderRootTest() {
        Load(kSource);
        manager.AddRayAttribute(kType_Vec3, "weight");
        manager.AddVariableGlobal(kType_Float, "time");
    }

    /// The text of the root shader, with the keys of the root and of the graph taken out.
    std::string Compile(IEffect* effect, const std::string& className) {
        IShader* const root = Make(className);
        EXPECT_TRUE(effect->SetRoot(root));
        EXPECT_TRUE(effect->Update(nullptr));
        EXPECT_TRUE(effect->IsCompiled());
        std::string text = GetText("_root");
        for (auto at = text.find("_k"); at != std::string::npos; at = text.find("_k", at)) {
            const auto end = text.find_first_not_of("0123456789abcdef", at + 2);
            text.erase(at, end - at);
        }
        return text;
    }
};

TEST_F(CompilerShaderRootTest, ARay_DeclaresAttributesAndCallsItsConstructors) {
    std::string counts;
    for (int i = 0; i < 8; ++i) {
        const std::string index = std::to_string(i);
        counts += "\tkl_OutputRayCount[" + index + "] = Ray_GetRayCount(" + index + ");\n";
    }
    EXPECT_EQ(Compile(manager.CreateEffectSurface(), "Ray"), "\n"
                                                             "float time;\n"
                                                             "varying vec3 Normal;\n"
                                                             "rayattribute vec3 weight;\n"
                                                             "\n"
                                                             "int Ray_GetRayCount(int rayClass);\n"
                                                             "void Ray_Init();\n"
                                                             "void Ray_Shade();\n"
                                                             "void _ctor_instance();\n"
                                                             "void _ctor_static();\n"
                                                             "\n"
                                                             "void main()\n"
                                                             "{\n"
                                                             "\t_ctor_static();\n"
                                                             "\t_ctor_instance();\n"
                                                             "\tRay_Shade();\n"
                                                             "}\n"
                                                             "\n"
                                                             "void setup()\n"
                                                             "{\n"
                                                             "\tRay_Init();\n" +
                                                                 counts +
                                                                 "}\n"
                                                                 "\n");
}

TEST_F(CompilerShaderRootTest, AFrame_HasNoGlobalsAndNoConstructors) {
    EXPECT_EQ(Compile(manager.CreateEffectRenderer(), "Frame"),
              "\n"
              "rayattribute vec3 weight;\n"
              "\n"
              "int Frame_GetRayCount();\n"
              "void Frame_Init();\n"
              "void Frame_Render();\n"
              "\n"
              "void main()\n"
              "{\n"
              "\tFrame_Render();\n"
              "}\n"
              "\n"
              "void setup()\n"
              "{\n"
              "\tFrame_Init();\n"
              "\tkl_OutputRayCount = Frame_GetRayCount();\n"
              "}\n"
              "\n");
}

TEST_F(CompilerShaderRootTest, ARootWithoutInitAndRayCount_HasAnEmptySetup) {
    const std::string setup = "void setup()\n{\n}\n";
    const std::string prefix = Compile(manager.CreateEffectPrefix(), "Bare");
    EXPECT_NE(prefix.find(setup), std::string::npos);
    EXPECT_EQ(prefix.find("varying"), std::string::npos);
    EXPECT_NE(prefix.find("float time;\n"), std::string::npos);
    EXPECT_NE(Compile(manager.CreateEffectRenderer(), "Bare").find(setup), std::string::npos);
    EXPECT_NE(Compile(manager.CreateEffectSurface(), "Bare").find(setup), std::string::npos);
}

} // namespace
} // namespace Tolen::Effects::Tests
