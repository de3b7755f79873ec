#include "effects/InputCode.h"

#include "effects/GoldenFile.h"
#include "support/CapturedChecks.h"

namespace Tolen::Effects::Tests {
namespace {

using Tolen::Tests::CapturedChecks;

class ParameterInterfaceArrayCode : public InputCode {
protected:
    /// Loads a class "User" with the array `inputs` of @p type.
    Shader* MakeUser(const std::string& members, const std::string& type = "Value",
                     const std::string& length = "") {
        loaded.Load("user.klsl", "class User\n{\n    input " + type + " inputs[" + length + "];\n" +
                                     members + "}\n");
        return Make("User", "u");
    }

    void LoadValues() {
        loaded.Load("values.klsl", R"(
interface Value
{
    float Get(float at);
    void Put(int index, inout float at, out vec2 to);
}
class One : Value
{
    float Get(float at) { return at; }
    void Put(int index, inout float at, out vec2 to) { at = Get(at); to = vec2(at); }
}
)");
    }
};

TEST_F(ParameterInterfaceArrayCode, Call_OfAnElement_GoesThroughTheDispatchFunction) {
    LoadValues();
    Shader* const user = MakeUser("float F(int k) { return inputs[k + 1].Get(2.0); }\n");
    ConnectAll(user, "inputs", {Make("One", "a"), Make("One", "b")});
    EXPECT_EQ(Body(user, "User_F.u"), "{ return Input0_Get((k+1), 2.0); }");
    EXPECT_EQ(Body(user, "Input0_Get"),
              "{ if ((iThis==0)) return One_Get.a(at); if ((iThis==1)) return One_Get.b(at); "
              "return 0.000000000000000; }");
    EXPECT_EQ(Count(Code(user), "float Input0_Get(int iThis, float at) {"), 1);
}

TEST_F(ParameterInterfaceArrayCode, DispatchOfAVoidMethod_ReturnsNothingAndPassesOnQualifiers) {
    LoadValues();
    Shader* const user = MakeUser("");
    ConnectAll(user, "inputs", {Make("One", "a"), Make("One", "b")});
    const std::string code = Code(user);
    EXPECT_EQ(Count(code, "void Input0_Put(int iThis, int index, inout float at, out vec2 to) { "
                          "if ((iThis==0)) One_Put.a(index, at, to); "
                          "if ((iThis==1)) One_Put.b(index, at, to); }"),
              1)
        << code;
}

TEST_F(ParameterInterfaceArrayCode, CalledMethods_AreDeclaredOnceForEachShader) {
    LoadValues();
    Shader* const user = MakeUser("");
    Shader* const one = Make("One", "a");
    ConnectAll(user, "inputs", {one, Make("One", "b"), one});
    const std::string code = Code(user);
    EXPECT_EQ(Count(code, "float One_Get.a(float at);"), 1) << code;
    EXPECT_EQ(Count(code, "float One_Get.b(float at);"), 1) << code;
    EXPECT_EQ(Count(code, "void One_Put.a(int index, inout float at, out vec2 to);"), 1) << code;
    EXPECT_EQ(Count(Body(user, "Input0_Get"), "return One_Get.a(at);"), 2);
}

TEST_F(ParameterInterfaceArrayCode, Length_IsAUniform) {
    LoadValues();
    Shader* const user = MakeUser("int F() { return inputs.length * inputs.length; }\n");
    ConnectAll(user, "inputs", {Make("One", "a")});
    EXPECT_EQ(Body(user, "User_F.u"), "{ return (Input0_Count*Input0_Count); }");
    EXPECT_EQ(Count(Code(user), "uniform int Input0_Count;"), 1);
}

TEST_F(ParameterInterfaceArrayCode, OtherFieldsAndOtherVariables_Stay) {
    LoadValues();
    Shader* const user = MakeUser(
        "float F(vec2 v) { return v.x + v.length + f(inputs.size) + inputs[0].length; }\n");
    ConnectAll(user, "inputs", {Make("One", "a")});
    EXPECT_EQ(Body(user, "User_F.u"),
              "{ return (((v.x+v.length)+f(inputs.size))+inputs[0].length); }");
}

TEST_F(ParameterInterfaceArrayCode, EmptyArray_GivesTheDefaultAndCallsNothing) {
    LoadValues();
    Shader* const user = MakeUser("float F() { return inputs[0].Get(2.0); }\n");
    ConnectAll(user, "inputs", std::vector<IShader*>());
    EXPECT_EQ(Body(user, "Input0_Get"), "{ return 0.000000000000000; }");
    EXPECT_EQ(Body(user, "Input0_Put"), "{ }");
    EXPECT_EQ(Count(Code(user), "One_"), 0);
}

TEST_F(ParameterInterfaceArrayCode, Constructor_CallsThoseOfTheCells) {
    LoadValues();
    Shader* const user = MakeUser("");
    ConnectAll(user, "inputs", {Make("One", "a"), Make("One", "b")});
    EXPECT_EQ(Body(user, "__ctor_.u"), "{ __ctor_.a(); __ctor_.b(); }");
}

TEST_F(ParameterInterfaceArrayCode, CallOfTheArrayItself_IsRefusedWithThePlace) {
    LoadValues();
    Shader* const user = MakeUser("float F() {\nreturn 1.0 +\ninputs.Get(2.0); }\n", "Value", "1");
    EXPECT_EQ(ConnectAllFails(user, "inputs", {Make("One", "a")}),
              "user.klsl:6: Calling array input \"inputs\" as single value.\n"
              "Parameter error \"Can't set indexed parameter\" parameter:\"inputs\" "
              "class:\"User\"\n");
}

TEST_F(ParameterInterfaceArrayCode, CallOfTheArrayItselfInAnotherCall_IsRefused) {
    LoadValues();
    Shader* const user =
        MakeUser("float F() { return inputs[0].Get(inputs.Get(2.0)); }\n", "Value", "1");
    EXPECT_EQ(Count(ConnectAllFails(user, "inputs", {Make("One", "a")}),
                    "user.klsl:4: Calling array input \"inputs\" as single value.\n"),
              1);
}

TEST_F(ParameterInterfaceArrayCode, CallOfWhatTheInterfaceLacks_IsRefusedWithThePlace) {
    LoadValues();
    Shader* const user = MakeUser("float F() {\nreturn inputs[1].Missing(); }\n", "Value", "1");
    EXPECT_EQ(ConnectAllFails(user, "inputs", {Make("One", "a")}),
              "user.klsl:5: Interface \"Value\" has no method named \"Missing\".\n"
              "Parameter error \"Can't set indexed parameter\" parameter:\"inputs\" "
              "class:\"User\"\n");
}

TEST_F(ParameterInterfaceArrayCode,
       ArrayOfAClass_DispatchesAllMethodsButStaticOnesAndTheConstructor) {
    loaded.Load("some.klsl", R"(
class Some
{
    void Some() { }
    int A() { return 1; }
    static int B() { return 2; }
    int C(int x) { return x; }
}
)");
    Shader* const user = MakeUser("int F() { return inputs[0].C(3); }\n", "Some");
    ConnectAll(user, "inputs", {Make("Some", "a")});
    const std::string code = Code(user);
    EXPECT_EQ(Count(code, "int Input0_A(int iThis) {"), 1) << code;
    EXPECT_EQ(Count(code, "int Input0_C(int iThis, int x) {"), 1) << code;
    EXPECT_EQ(Count(code, "Input0_B"), 0) << code;
    EXPECT_EQ(Count(code, "Input0_Some"), 0) << code;
}

TEST_F(ParameterInterfaceArrayCode, CallOfAStaticMethodOfAnElement_IsRefused) {
    loaded.Load("some.klsl", "class Some { static int B() { return 2; } }");
    Shader* const user = MakeUser("int F() { return inputs[0].B(); }\n", "Some", "1");
    EXPECT_EQ(Count(ConnectAllFails(user, "inputs", {Make("Some", "a")}),
                    "user.klsl:4: Class \"Some\" has no method named \"B\".\n"),
              1);
}

TEST_F(ParameterInterfaceArrayCode, Overloads_AreDispatchedUnderOneName) {
    loaded.Load("over.klsl", R"(
interface Over
{
    float F(float x);
    float F(float x, vec2 y);
}
class Overs : Over
{
    float F(float x) { return x; }
    float F(float x, vec2 y) { return x * y.x; }
}
)");
    Shader* const user = MakeUser("", "Over");
    ConnectAll(user, "inputs", {Make("Overs", "o")});
    const std::string code = Code(user);
    EXPECT_EQ(Count(code, "float Input0_F(int iThis, float x) { if ((iThis==0)) return "
                          "Overs_F.o(x);"),
              1)
        << code;
    EXPECT_EQ(Count(code, "float Input0_F(int iThis, float x, vec2 y) { if ((iThis==0)) return "
                          "Overs_F.o(x, y);"),
              1)
        << code;
}

TEST_F(ParameterInterfaceArrayCode, MethodThatAnInterfaceDeclaresTwice_IsDispatchedOnce) {
    loaded.Load("twice.klsl", "interface I { float F(float x); float F(float y); }\n"
                              "class A : I { float F(float x) { return x; } }\n");
    Shader* const user = MakeUser("", "I");
    ConnectAll(user, "inputs", {Make("A", "a")});
    EXPECT_EQ(Count(Code(user), "float Input0_F("), 1);
}

TEST_F(ParameterInterfaceArrayCode, ParameterCalledLikeTheIndexOrTwice_GetsANameOfItsOwn) {
    loaded.Load("odd.klsl",
                "interface I { float F(float iThis, float argument1, float argument1); }\n"
                "class A : I { float F(float x, float y, float z) { return x; } }\n");
    Shader* const user = MakeUser("", "I");
    ConnectAll(user, "inputs", {Make("A", "a")});
    const std::string code = Code(user);
    EXPECT_EQ(Count(code, "float Input0_F(int iThis, float argument2, float argument1, float "
                          "argument3) { if ((iThis==0)) return A_F.a(argument2, argument1, "
                          "argument3);"),
              1)
        << code;
}

TEST_F(ParameterInterfaceArrayCode, ClassCalledLikeTheInterfaceWithoutItsMethods_IsRefused) {
    // Such a class fits by its name alone.
    loaded.Load("named.klsl",
                "interface Named\n{\n float F();\n}\nclass Named { float G() { return "
                "1.0; } }\n");
    Shader* const user = MakeUser("", "Named", "1");
    CapturedChecks checks;
    EXPECT_EQ(ConnectAllFails(user, "inputs", {Make("Named", "n")}),
              "named.klsl:3: Class \"Named\" has no method named \"F\".\n"
              "Parameter error \"Can't set indexed parameter\" parameter:\"inputs\" "
              "class:\"User\"\n");
    ASSERT_EQ(checks.Get().size(), 1u);
    EXPECT_EQ(checks.Get()[0].expression, "!pShader->HasMethod( sName )");
}

TEST_F(ParameterInterfaceArrayCode, MethodParameterCalledLikeTheInput_IsNotTouchedInDispatch) {
    loaded.Load("same.klsl", "interface I { float F(float inputs); }\n"
                             "class A : I { float F(float x) { return x; } }\n");
    Shader* const user = MakeUser("float G() { return inputs[0].F(1.0); }\n", "I");
    ConnectAll(user, "inputs", {Make("A", "a")});
    EXPECT_EQ(Count(Body(user, "Input0_F"), "A_F.a(inputs)"), 1);
}

TEST_F(ParameterInterfaceArrayCode, Arrays_KeepTheirNamesApart) {
    LoadValues();
    Shader* const user = MakeUser("    input Value others[];\n"
                                  "float F() { return inputs[0].Get(others[1].Get(1.0)); }\n");
    ConnectAll(user, "inputs", {Make("One", "a")});
    ConnectAll(user, "others", {Make("One", "b"), Make("One", "c")});
    EXPECT_EQ(Body(user, "User_F.u"), "{ return Input0_Get(0, Input1_Get(1, 1.0)); }");
    EXPECT_EQ(Count(Body(user, "Input1_Get"), "One_Get"), 2);
}

struct DefaultCase {
    const char* type;
    const char* value; ///< null for none
};

void PrintTo(const DefaultCase& value, std::ostream* out) {
    *out << value.type;
}

class DispatchDefault : public InputCode, public testing::WithParamInterface<DefaultCase> {};

TEST_P(DispatchDefault, IsWrittenByType) {
    const std::string type = GetParam().type;
    loaded.Load("typed.klsl", "interface I { " + type + " F(" + type + " x); }\n" +
                                  "class A : I { " + type + " F(" + type + " x) { return x; } }\n" +
                                  "class User { input I inputs[]; }\n");
    Shader* const user = Make("User", "u");
    ConnectAll(user, "inputs", {Make("A", "a")});
    const std::string tail =
        GetParam().value == nullptr ? "" : std::string("return ") + GetParam().value + "; ";
    EXPECT_EQ(Body(user, "Input0_F"), "{ if ((iThis==0)) return A_F.a(x); " + tail + "}");
}

INSTANTIATE_TEST_SUITE_P(
    Types, DispatchDefault,
    testing::Values(DefaultCase{"float", "0.000000000000000"}, DefaultCase{"int", "0"},
                    DefaultCase{"bool", "false"}, DefaultCase{"vec2", "vec2(0.000000000000000)"},
                    DefaultCase{"vec3", "vec3(0.000000000000000)"},
                    DefaultCase{"vec4", "vec4(0.000000000000000)"},
                    DefaultCase{"bvec2", "bvec2(false)"}, DefaultCase{"bvec3", "bvec3(false)"},
                    DefaultCase{"bvec4", "bvec4(false)"}, DefaultCase{"ivec2", "ivec2(0)"},
                    DefaultCase{"ivec3", "ivec3(0)"}, DefaultCase{"ivec4", "ivec4(0)"},
                    DefaultCase{"mat2", "mat2(0.000000000000000)"},
                    DefaultCase{"mat3", "mat3(0.000000000000000)"},
                    DefaultCase{"mat4", "mat4(0.000000000000000)"},
                    DefaultCase{"sampler2D", nullptr}, DefaultCase{"sampler3D", nullptr},
                    DefaultCase{"samplerCube", nullptr}, DefaultCase{"primitive", nullptr}),
    [](const auto& instance) { return std::string(instance.param.type); });

TEST_F(ParameterInterfaceArrayCode, StaticArray_IsDispatchedByTheCodeOfTheClass) {
    LoadValues();
    loaded.Load("shared.klsl", "class Shared { static input Value all[];\n"
                               "float F() { return all[0].Get(1.0); }\n"
                               "static int G() { return all.length; } }\n");
    PrototypeShader* const prototype = loaded.GetPrototype("Shared");
    Shader* const one = Make("One", "a");
    std::vector<IShader*> shaders{one};
    ASSERT_TRUE(prototype->GetParameter("all")->SetLength(1));
    ASSERT_TRUE(prototype->SetParameter("all", shaders.data(), 1));
    Shader* const shared = Make("Shared", "s");
    EXPECT_EQ(Body(shared, "Shared_F.s"), "{ return Input0_Get(0, 1.0); }");
    const std::string code = loaded.Collect(prototype);
    EXPECT_NE(code.find("uniform int ParameterInterfaceArray"), std::string::npos);
    EXPECT_NE(code.find("return " + one->GetMethodNameMangled("Get") + "(at);"), std::string::npos);
}

TEST_F(ParameterInterfaceArrayCode, Dispatch_GivesThisText) {
    LoadValues();
    Shader* const user =
        MakeUser("float F(int k) { return inputs[k].Get(float(inputs.length)); }\n");
    ConnectAll(user, "inputs", {Make("One", "a"), Make("One", "b"), Make("One", "c")});
    ExpectGolden("inputs_dispatch.txt", loaded.Collect(user));
}

} // namespace
} // namespace Tolen::Effects::Tests
