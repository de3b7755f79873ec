#include "effects/InputCode.h"

#include "effects/GoldenFile.h"
#include "support/CapturedChecks.h"

namespace Tolen::Effects::Tests {
namespace {

class ParameterInterfaceSingleCode : public InputCode {
protected:
    ParameterInterfaceSingleCode() {
        loaded.Load("folder/values.klsl", R"(
interface Value
{
    float Get(float at);
}
class One : Value
{
    input float scale = 1.0;
    float Get(float at) { return scale * at; }
    float Extra() { return 7.0; }
    static float Half(float x) { return 0.5 * x; }
}
class Twice : Value
{
    input Value value;
    float Get(float at) { return 2.0 * value.Get(at + 1.0); }
}
)");
    }

    void LoadUser(const std::string& members) {
        loaded.Load("user.klsl", "class User\n{\n" + members + "}\n");
    }
};

TEST_F(ParameterInterfaceSingleCode, Call_OfAConnectedShader_GoesToItsMethod) {
    Shader* const twice = Make("Twice", "t");
    Connect(twice, "value", Make("One", "a"));
    EXPECT_EQ(Body(twice, "Twice_Get.t"), "{ return (2.0*One_Get.a((at+1.0))); }");
}

TEST_F(ParameterInterfaceSingleCode, Call_AfterAnotherConnection_GoesToTheOtherShader) {
    Shader* const twice = Make("Twice", "t");
    Shader* const first = Make("One", "a");
    Shader* const second = Make("One", "b");
    Connect(twice, "value", first);
    Connect(twice, "value", second);
    const std::string code = Code(twice);
    EXPECT_EQ(Count(code, "One_Get.b("), 1);
    EXPECT_EQ(Count(code, "One_Get.a("), 0);
}

TEST_F(ParameterInterfaceSingleCode, Code_HoldsNothingOfTheConnectedShaderItself) {
    Shader* const twice = Make("Twice", "t");
    Connect(twice, "value", Make("One", "a"));
    EXPECT_EQ(Count(Code(twice), "scale"), 0);
}

TEST_F(ParameterInterfaceSingleCode, Constructor_CallsThoseOfConnectedShaders) {
    Shader* const twice = Make("Twice", "t");
    Connect(twice, "value", Make("One", "a"));
    EXPECT_EQ(Body(twice, "__ctor_.t"), "{ __ctor_.a(); }");
}

TEST_F(ParameterInterfaceSingleCode, Code_OfAnUnconnectedInput_IsRefused) {
    Shader* const twice = Make("Twice", "t");
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    EXPECT_FALSE(twice->CollectShader(module.get()));
    EXPECT_EQ(module->GetCountFunctionDefinitions(), 0u);
}

TEST_F(ParameterInterfaceSingleCode, Calls_InArgumentsOfCalls_AreAllRewritten) {
    LoadUser("input Value a; input Value b;\n"
             "float Get() { return a.Get(b.Get(a.Get(1.0))) + Own(b.Get(2.0)); }\n"
             "float Own(float x) { return x; }\n");
    Shader* const user = Make("User", "u");
    Connect(user, "a", Make("One", "a"));
    Connect(user, "b", Make("One", "b"));
    EXPECT_EQ(Body(user, "User_Get.u"),
              "{ return (One_Get.a(One_Get.b(One_Get.a(1.0)))+User_Own.u(One_Get.b(2.0))); }");
}

TEST_F(ParameterInterfaceSingleCode, Calls_WhereverTheyStand_AreRewritten) {
    LoadUser("input Value v;\n"
             "float Get() {\n"
             "    float x = v.Get(0.0);\n"
             "    if (v.Get(1.0) > 0.0) { x += v.Get(2.0); } else x = v.Get(3.0);\n"
             "    while (v.Get(4.0) < x) --x;\n"
             "    do { x *= v.Get(5.0); } while (v.Get(6.0) < 0.0);\n"
             "    for (float y = v.Get(7.0); y < v.Get(8.0); y += v.Get(9.0)) v.Get(10.0);\n"
             "    float z[2]; z[int(v.Get(11.0))] = -v.Get(12.0);\n"
             "    return v.Get(13.0) > 0.0 ? v.Get(14.0) : vec2(v.Get(15.0)).x;\n"
             "}\n");
    Shader* const user = Make("User", "u");
    Connect(user, "v", Make("One", "a"));
    const std::string body = Body(user, "User_Get.u");
    EXPECT_EQ(Count(body, "One_Get.a("), 16) << body;
    EXPECT_EQ(Count(body, "v."), 0) << body;
}

TEST_F(ParameterInterfaceSingleCode, Call_OfWhatTheInterfaceLacks_TellsTheInterfaceAndThePlace) {
    LoadUser("input Value v;\nfloat Get() {\nreturn v.Extra(); }\n");
    Shader* const user = Make("User", "u");
    EXPECT_EQ(ConnectFails(user, "v", Make("One", "a")),
              "user.klsl:5: Interface \"Value\" has no method named \"Extra\".\n"
              "Parameter error \"Can't set parameter\" parameter:\"v\" class:\"User\"\n");
}

TEST_F(ParameterInterfaceSingleCode, Call_OfWhatTheClassLacks_TellsTheClassAndThePlace) {
    LoadUser("input One v;\nfloat Get() {\nreturn v.Missing(); }\n");
    Shader* const user = Make("User", "u");
    EXPECT_EQ(ConnectFails(user, "v", Make("One", "a")),
              "user.klsl:5: Class \"One\" has no method named \"Missing\".\n"
              "Parameter error \"Can't set parameter\" parameter:\"v\" class:\"User\"\n");
}

TEST_F(ParameterInterfaceSingleCode, AnotherClass_IsLookedAtAtOnceAfterOthersFitted) {
    Shader* const twice = Make("Twice", "t");
    Connect(twice, "value", Make("One", "a"));
    Connect(twice, "value", Make("One", "b"));
    // A class with the name of the interface may be connected, whatever it has.
    loaded.Load("odd.klsl", "class Value { float Other() { return 1.0; } }");
    EXPECT_EQ(Count(ConnectFails(twice, "value", Make("Value", "c")),
                    "Class \"Value\" has no method named \"Get\".\n"),
              1);
    Connect(twice, "value", Make("One", "d"));
    EXPECT_EQ(Body(twice, "__ctor_.t"), "{ __ctor_.d(); }");
}

TEST_F(ParameterInterfaceSingleCode, Call_WithinTheArgumentsOfAnother_IsRefusedJustTheSame) {
    LoadUser("input Value v;\nfloat Get() {\nreturn v.Get(v.Get(v.Missing())); }\n");
    Shader* const user = Make("User", "u");
    EXPECT_EQ(ConnectFails(user, "v", Make("One", "a")),
              "user.klsl:5: Interface \"Value\" has no method named \"Missing\".\n"
              "Parameter error \"Can't set parameter\" parameter:\"v\" class:\"User\"\n");
}

TEST_F(ParameterInterfaceSingleCode, Call_SpelledLikeAConstructor_IsRefused) {
    LoadUser("input Value v;\nfloat Get() { return v.vec2(1.0).x; }\n");
    Shader* const user = Make("User", "u");
    EXPECT_EQ(Count(ConnectFails(user, "v", Make("One", "a")),
                    "user.klsl:4: Interface \"Value\" has no method named \"vec2\".\n"),
              1);
}

TEST_F(ParameterInterfaceSingleCode, Call_OfAStaticMethodThroughAnInput_IsRefused) {
    LoadUser("input One v;\nfloat Get() { return v.Half(1.0); }\n");
    Shader* const user = Make("User", "u");
    EXPECT_EQ(Count(ConnectFails(user, "v", Make("One", "a")),
                    "user.klsl:4: Class \"One\" has no method named \"Half\".\n"),
              1);
}

TEST_F(ParameterInterfaceSingleCode, Call_ThroughAnInputOfAClass_ReachesAllMethodsOfTheClass) {
    LoadUser("input One v;\nfloat Get() { return v.Extra(); }\n");
    Shader* const user = Make("User", "u");
    Connect(user, "v", Make("One", "a"));
    EXPECT_EQ(Body(user, "User_Get.u"), "{ return One_Extra.a(); }");
}

TEST_F(ParameterInterfaceSingleCode, Call_OfAnOverloadedMethod_KeepsItsArguments) {
    loaded.Load("over.klsl", "class Over { float F(float x) { return x; }\n"
                             "float F(float x, float y) { return x * y; } }\n");
    LoadUser("input Over v;\nfloat Get() { return v.F(1.0) + v.F(2.0, 3.0); }\n");
    Shader* const user = Make("User", "u");
    Connect(user, "v", Make("Over", "o"));
    EXPECT_EQ(Body(user, "User_Get.u"), "{ return (Over_F.o(1.0)+Over_F.o(2.0, 3.0)); }");
}

TEST_F(ParameterInterfaceSingleCode, Default_IsCalledLikeAnyOther) {
    LoadUser("input Value v = One();\nfloat Get() { return v.Get(1.0); }\n");
    Shader* const user = Make("User", "u");
    IShader* made = nullptr;
    ASSERT_TRUE(user->GetParameter("v")->Get(made));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(Count(Code(user), "One_Get" + made->GetKeyName() + "(1.0)"), 1);
}

TEST_F(ParameterInterfaceSingleCode, Call_AtTheEndOfALongChainOfOperators_IsRewritten) {
    const int length = 20000;
    std::string sum = "v.Get(0.0)";
    for (int i = 0; i < length; ++i) {
        sum += " + v.Get(1.0)";
    }
    LoadUser("input Value v;\nfloat Get() { return " + sum + "; }\n");
    Shader* const user = Make("User", "u");
    Connect(user, "v", Make("One", "a"));
    EXPECT_EQ(Count(Code(user), "One_Get.a("), length + 1);
}

TEST_F(ParameterInterfaceSingleCode, StaticInput_RewritesTheCodeOfTheClassAndOfItsShaders) {
    LoadUser("static input Value v;\n"
             "float Get() { return v.Get(1.0); }\n"
             "static float All() { return v.Get(2.0); }\n");
    PrototypeShader* const prototype = loaded.GetPrototype("User");
    Shader* const one = Make("One", "a");
    ASSERT_TRUE(prototype->SetParameter("v", static_cast<IShader*>(one)));
    Shader* const user = Make("User", "u");
    EXPECT_EQ(Body(user, "User_Get.u"), "{ return One_Get.a(1.0); }");
    const std::string name = one->GetMethodNameMangled("Get");
    EXPECT_NE(loaded.Collect(prototype).find("return " + name + "(2.0);"), std::string::npos);
    EXPECT_NE(loaded.Collect(prototype).find(one->GetConstructorName() + "();"), std::string::npos);
}

TEST_F(ParameterInterfaceSingleCode, ThreeLevels_GiveTheseTexts) {
    Shader* const top = Make("Twice", "top");
    Shader* const middle = Make("Twice", "middle");
    Shader* const bottom = Make("One", "bottom");
    Connect(top, "value", middle);
    Connect(middle, "value", bottom);
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    for (Shader* shader : {top, middle, bottom}) {
        ASSERT_TRUE(shader->CollectShader(module.get()));
    }
    ExpectGolden("inputs_three_levels.txt", loaded.Print(module.get()));
}

} // namespace
} // namespace Tolen::Effects::Tests
