#include "UnrollForStatementInterfaceArray.h"

#include "BakeForStatementIteration.h"
#include "ParameterInterfaceArray.h"
#include "PredicateUnrollForStatementInterfaceArray.h"
#include "SyntaxWalk.h"
#include "TolenEffects/Limits.h"
#include "effects/GoldenFile.h"
#include "effects/InputCode.h"
#include "effects/KslParsing.h"
#include "effects/SmallStack.h"
#include "support/CapturedChecks.h"

namespace Tolen::Effects::Tests {
namespace {

using Tolen::Tests::CapturedChecks;

struct LoopCase {
    const char* name;
    const char* text;
    bool isUnrolled;
};

void PrintTo(const LoopCase& loop, std::ostream* out) {
    *out << loop.text;
}

class PredicateUnroll : public testing::TestWithParam<LoopCase> {};

TEST_P(PredicateUnroll, AcceptsLoopsOverTheWholeArrayAlone) {
    const Parsed parsed = Parse(std::string("[") + GetParam().text + "]");
    ASSERT_TRUE(parsed.success) << parsed.Errors();
    ASSERT_EQ(parsed.module->GetCountStatements(), 1u);
    const auto* const loop = AsExactly<ForStatement>(parsed.module->GetStatements()[0]);
    ASSERT_NE(loop, nullptr);
    EXPECT_EQ(bool(PredicateUnrollForStatementInterfaceArray("inputs", loop)),
              GetParam().isUnrolled);
}

const LoopCase kLoops[] = {
    {"Plain", "for (int i = 0; i < inputs.length; ++i) { inputs[i].f(); }", true},
    {"WithoutBraces", "for (int i = 0; i < inputs.length; ++i) inputs[i].f();", true},
    {"WithoutCalls", "for (int i = 0; i < inputs.length; ++i) { x; }", true},
    {"EmptyBody", "for (int i = 0; i < inputs.length; ++i) { }", true},
    {"EmptyStatement", "for (int i = 0; i < inputs.length; ++i) ;", true},
    {"AnotherName", "for (int k = 0; k < inputs.length; ++k) inputs[k].f(inputs[k].g());", true},
    {"IndexAsArgument", "for (int i = 0; i < inputs.length; ++i) inputs[i].f(i, g(i), vec2(i));",
     true},
    {"Return", "for (int i = 0; i < inputs.length; ++i) { if (inputs[i].f()) return; }", true},
    {"BreakOfAnInnerWhile",
     "for (int i = 0; i < inputs.length; ++i) { while (x) { if (y) break; continue; } }", true},
    {"BreakOfAnInnerDo", "for (int i = 0; i < inputs.length; ++i) do { break; } while (x);", true},
    {"BreakOfAnInnerFor", "for (int i = 0; i < inputs.length; ++i) for (;;) { continue; break; }",
     true},
    {"AnotherArrayInside",
     "for (int i = 0; i < inputs.length; ++i) { others[0].f(); others[j].f(x + j); }", true},

    {"NoInitialization", "for (; i < inputs.length; ++i) inputs[i].f();", false},
    {"InitializationWithoutDeclaration", "for (i = 0; i < inputs.length; ++i) inputs[i].f();",
     false},
    {"NoInitialValue", "for (int i; i < inputs.length; ++i) inputs[i].f();", false},
    {"FromOne", "for (int i = 1; i < inputs.length; ++i) inputs[i].f();", false},
    {"FromAnExpression", "for (int i = 0 + 0; i < inputs.length; ++i) inputs[i].f();", false},
    {"FromAVariable", "for (int i = zero; i < inputs.length; ++i) inputs[i].f();", false},
    {"Float", "for (float i = 0; i < inputs.length; ++i) inputs[i].f();", false},
    {"FloatZero", "for (int i = 0.0; i < inputs.length; ++i) inputs[i].f();", false},
    {"ArrayOfInts", "for (int i[2] = 0; i < inputs.length; ++i) inputs[i].f();", false},
    {"NoCondition", "for (int i = 0; ; ++i) inputs[i].f();", false},
    {"ConditionThatDeclares", "for (int i = 0; bool b = i; ++i) inputs[i].f();", false},
    {"LessEqual", "for (int i = 0; i <= inputs.length; ++i) inputs[i].f();", false},
    {"TurnedRound", "for (int i = 0; inputs.length > i; ++i) inputs[i].f();", false},
    {"AnotherVariableCompared", "for (int i = 0; j < inputs.length; ++i) inputs[i].f();", false},
    {"AnotherField", "for (int i = 0; i < inputs.size; ++i) inputs[i].f();", false},
    {"LengthOfAnother", "for (int i = 0; i < inputs2.length; ++i) inputs[i].f();", false},
    {"LengthOfAnElement", "for (int i = 0; i < inputs[0].length; ++i) inputs[i].f();", false},
    {"Number", "for (int i = 0; i < 3; ++i) inputs[i].f();", false},
    {"NoIteration", "for (int i = 0; i < inputs.length;) inputs[i].f();", false},
    {"Postfix", "for (int i = 0; i < inputs.length; i++) inputs[i].f();", false},
    {"Down", "for (int i = 0; i < inputs.length; --i) inputs[i].f();", false},
    {"PlusOne", "for (int i = 0; i < inputs.length; i += 1) inputs[i].f();", false},
    {"AnotherVariableCounted", "for (int i = 0; i < inputs.length; ++j) inputs[i].f();", false},
    {"OtherIndex", "for (int i = 0; i < inputs.length; ++i) inputs[i + 1].f();", false},
    {"ConstantIndex", "for (int i = 0; i < inputs.length; ++i) inputs[0].f();", false},
    {"Arithmetic", "for (int i = 0; i < inputs.length; ++i) inputs[i].f(2 * i);", false},
    {"Assigned", "for (int i = 0; i < inputs.length; ++i) { inputs[i].f(); i = 2; }", false},
    {"Counted", "for (int i = 0; i < inputs.length; ++i) { inputs[i].f(); ++i; }", false},
    {"CountedBehind", "for (int i = 0; i < inputs.length; ++i) inputs[i].f(i++);", false},
    {"IndexOfAnother", "for (int i = 0; i < inputs.length; ++i) inputs[i].f(weights[i]);", false},
    {"Subscripted", "for (int i = 0; i < inputs.length; ++i) inputs[i].f(i[0]);", false},
    {"Break", "for (int i = 0; i < inputs.length; ++i) { inputs[i].f(); break; }", false},
    {"Continue", "for (int i = 0; i < inputs.length; ++i) { if (x) continue; inputs[i].f(); }",
     false},
    {"BreakBehindAnInnerLoop",
     "for (int i = 0; i < inputs.length; ++i) { while (x) y; if (z) break; }", false},
    {"Hidden", "for (int i = 0; i < inputs.length; ++i) { int i = 2; inputs[i].f(); }", false},
    {"HiddenInACondition",
     "for (int i = 0; i < inputs.length; ++i) while (bool i = x) inputs[i].f();", false},
};

INSTANTIATE_TEST_SUITE_P(Loops, PredicateUnroll, testing::ValuesIn(kLoops),
                         [](const auto& instance) { return instance.param.name; });

class Unroll : public InputCode {
protected:
    Unroll() {
        loaded.Load("values.klsl", R"(
interface Value
{
    float Get(float at);
    void Put(int index, inout float at);
}
class One : Value
{
    float Get(float at) { return at; }
    void Put(int index, inout float at) { at = Get(at); }
}
class Two : Value
{
    float Get(float at) { return 2.0 * at; }
    void Put(int index, inout float at) { at = Get(at); }
    void Extra() { }
}
)");
    }

    /// A shader called "u" with the arrays `inputs` and `others`, which starts with @p count values
    /// "a", "b" and so on in the first.
    Shader* MakeUser(const std::string& method, int count) {
        loaded.Load("user.klsl", "class User\n{\n    input Value inputs[];\n    input Value "
                                 "others[];\n    void Shade()\n    {\n" +
                                     method + "    }\n}\n");
        Shader* const user = Make("User", "u");
        for (int i = 0; i < count; ++i) {
            values.push_back(Make(i % 2 == 0 ? "One" : "Two", std::string(1, char('a' + i))));
        }
        ConnectAll(user, "others", {Make("One", "x"), Make("Two", "y")});
        ConnectAll(user, "inputs", values);
        return user;
    }

    std::string Unrolled(const std::string& method, int count) {
        return Body(MakeUser(method, count), "User_Shade.u");
    }

    std::vector<IShader*> values;
};

TEST_F(Unroll, Loop_BecomesABlockForEachElement) {
    EXPECT_EQ(Unrolled("for (int i = 0; i < inputs.length; ++i) { inputs[i].Get(x); }", 3),
              "{ { int i = 0; { One_Get.a(x); } ++i; { Two_Get.b(x); } ++i; "
              "{ One_Get.c(x); } } }");
}

TEST_F(Unroll, Loop_OverOneElement_CountsNothing) {
    EXPECT_EQ(Unrolled("for (int i = 0; i < inputs.length; ++i) inputs[i].Get(x);", 1),
              "{ { int i = 0; One_Get.a(x); } }");
}

TEST_F(Unroll, Loop_OverNothing_LeavesTheVariable) {
    EXPECT_EQ(Unrolled("for (int i = 0; i < inputs.length; ++i) inputs[i].Get(x);", 0),
              "{ { int i = 0; } }");
}

TEST_F(Unroll, Index_StaysAnArgument) {
    EXPECT_EQ(Unrolled("for (int i = 0; i < inputs.length; ++i) inputs[i].Put(i, x);", 2),
              "{ { int i = 0; One_Put.a(i, x); ++i; Two_Put.b(i, x); } }");
}

TEST_F(Unroll, CallsInCalls_AreAllDirect) {
    EXPECT_EQ(Unrolled("for (int i = 0; i < inputs.length; ++i) "
                       "x += inputs[i].Get(inputs[i].Get(x) + f(inputs[i].Get(1.0)));",
                       1),
              "{ { int i = 0; x+= One_Get.a((One_Get.a(x)+f(One_Get.a(1.0)))); } }");
}

TEST_F(Unroll, Declaration_AsTheBody_GetsAScopeOfItsOwn) {
    EXPECT_EQ(Unrolled("for (int i = 0; i < inputs.length; ++i) float y = inputs[i].Get(x);", 2),
              "{ { int i = 0; { float y = One_Get.a(x); } ++i; { float y = Two_Get.b(x); } } }");
}

TEST_F(Unroll, Loop_InALoopOverAnotherArray_UnrollsBoth) {
    EXPECT_EQ(Unrolled("for (int i = 0; i < inputs.length; ++i) "
                       "for (int j = 0; j < others.length; ++j) "
                       "inputs[i].Get(others[j].Get(x));",
                       2),
              "{ { int i = 0; "
              "{ int j = 0; One_Get.a(One_Get.x(x)); ++j; One_Get.a(Two_Get.y(x)); } ++i; "
              "{ int j = 0; Two_Get.b(One_Get.x(x)); ++j; Two_Get.b(Two_Get.y(x)); } } }");
}

TEST_F(Unroll, LoopOverTheSameArrayInside_UnrollsWhenOnlyTheInnerIndexIsUsed) {
    EXPECT_EQ(Unrolled("for (int i = 0; i < inputs.length; ++i) "
                       "for (int j = 0; j < inputs.length; ++j) inputs[j].Get(x);",
                       1),
              "{ { int i = 0; { int j = 0; One_Get.a(x); } } }");
}

TEST_F(Unroll, LoopsThatUseBothIndicesOfOneArray_StayLoops) {
    const std::string body = Unrolled("for (int i = 0; i < inputs.length; ++i) "
                                      "for (int j = 0; j < inputs.length; ++j) "
                                      "inputs[i].Get(inputs[j].Get(x));",
                                      2);
    EXPECT_EQ(Count(body, "for("), 2) << body;
    EXPECT_EQ(Count(body, "Input0_Get(i, Input0_Get(j, x))"), 1) << body;
}

TEST_F(Unroll, IndexOfTwoArrays_UnrollsOverTheOneThatIsRewrittenLast) {
    // `inputs` comes before `others` by name, and finds the index of `others` in the way.
    EXPECT_EQ(Count(Unrolled("for (int i = 0; i < inputs.length; ++i) "
                             "inputs[i].Get(others[i].Get(x));",
                             2),
                    "for("),
              1);
}

TEST_F(Unroll, IndexOfAnArrayThatIsRewrittenBefore_IsAnArgumentByThen) {
    const std::string body = Unrolled("for (int i = 0; i < others.length; ++i) "
                                      "others[i].Get(inputs[i].Get(x));",
                                      2);
    EXPECT_EQ(body, "{ { int i = 0; One_Get.x(Input0_Get(i, x)); ++i; "
                    "Two_Get.y(Input0_Get(i, x)); } }");
}

TEST_F(Unroll, Loop_WithABreak_GoesThroughTheDispatchFunction) {
    const std::string body = Unrolled("for (int i = 0; i < inputs.length; ++i) "
                                      "{ if (inputs[i].Get(x) > 1.0) break; }",
                                      2);
    EXPECT_EQ(body, "{ for( int i = 0; (i<Input0_Count);++i) "
                    "{ if ((Input0_Get(i, x)>1.0)) break; } }");
}

TEST_F(Unroll, Loop_WithoutBracesInABranch_Unrolls) {
    EXPECT_EQ(Unrolled("if (c) for (int i = 0; i < inputs.length; ++i) inputs[i].Get(x);", 1),
              "{ if (c) { int i = 0; One_Get.a(x); } }");
}

TEST_F(Unroll, MethodBeyondTheInterface_IsCalledWhereEveryShaderHasIt) {
    loaded.Load("extra.klsl",
                "class Extras { input Value all[];\n"
                "void F() { for (int i = 0; i < all.length; ++i) all[i].Extra(); } }");
    Shader* const extras = Make("Extras", "e");
    ConnectAll(extras, "all", {Make("Two", "a")});
    EXPECT_EQ(Body(extras, "Extras_F.e"), "{ { int i = 0; Two_Extra.a(); } }");
}

TEST_F(Unroll, MethodBeyondTheInterface_IsRefusedWhereAShaderLacksIt) {
    loaded.Load("extra.klsl",
                "class Extras { input Value all[1];\n"
                "void F() { for (int i = 0; i < all.length; ++i) all[i].Extra(); } }");
    Shader* const extras = Make("Extras", "e");
    EXPECT_EQ(Count(ConnectAllFails(extras, "all", {Make("One", "a")}),
                    "extra.klsl:2: Interface \"Value\" has no method named \"Extra\".\n"),
              1);
}

TEST_F(Unroll, Passes_ShareNothing) {
    Shader* const user =
        MakeUser("for (int i = 0; i < inputs.length; ++i) { float y = 1.0; y += x; }", 4);
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    ASSERT_TRUE(user->CollectShader(module.get()));
    // Every node and every name is met once.
    std::set<const void*> met;
    class Collector final : public Visitor {
    public:
        explicit Collector(std::set<const void*>& met) : _met(met) {}
        using Visitor::Visit;
        bool Visit(const Variable* node, TParentSyntaxConst<Expression>*) override {
            EXPECT_TRUE(_met.insert(node).second);
            EXPECT_TRUE(_met.insert(node->GetIdentifier()).second);
            return true;
        }

    private:
        std::set<const void*>& _met;
    } collector(met);
    std::as_const(*module).AcceptVisitor(&collector);
    EXPECT_GE(met.size(), 2u * 4 * 2);
}

/// A parameter and a statement for it.
class Bake : public Unroll {
protected:
    Bake() {
        MakeUser("", 2);
        parameter = static_cast<ParameterInterfaceArray*>(
            loaded.GetPrototype("User") == nullptr ? nullptr : _User()->GetParameter("inputs"));
    }

    Statement* ParseBody(const std::string& text) {
        parsed = Parse("[" + text + "]");
        EXPECT_TRUE(parsed.success) << parsed.Errors();
        return parsed.module->GetStatements()[0];
    }

    std::string Text(Statement* statement) {
        const std::unique_ptr<CompoundStatement> block(
            parsed.module->CreateCompoundStatement(statement->Clone(parsed.module.get())));
        VisitorPrintKsl printer(nullptr, nullptr, false);
        EXPECT_TRUE(block->AcceptVisitor(&printer, TParentSyntaxNull<Statement>::GetInstance()));
        return printer.GetText();
    }

    ParameterInterfaceArray* parameter = nullptr;
    Parsed parsed;

private:
    Shader* _User() {
        Shader* const user = Make("User", "v");
        ConnectAll(user, "inputs", values);
        return user;
    }
};

TEST_F(Bake, Call_WithTheIndex_BecomesDirect) {
    Statement* const statement = ParseBody("inputs[i].Get(x);");
    EXPECT_TRUE(BakeForStatementIteration(parameter, "i").Bake(statement, 1));
    EXPECT_NE(Text(statement).find(values[1]->GetMethodNameMangled("Get") + "(x)"),
              std::string::npos);
}

TEST_F(Bake, Call_WithAnotherIndexOrOfAnotherArrayOrMethod_Stays) {
    Statement* const statement =
        ParseBody("{ inputs[j].Get(x); others[i].Get(x); inputs[i].Missing(); inputs[i + 0].Get(x);"
                  " inputs.Get(x); }");
    const std::unique_ptr<Statement> before(statement->Clone(parsed.module.get()));
    EXPECT_TRUE(BakeForStatementIteration(parameter, "i").Bake(statement, 0));
    EXPECT_TRUE(statement->Equals(before.get()));
}

TEST_F(Bake, IndexOutOfBounds_FailsACheck) {
    CapturedChecks checks;
    Statement* const statement = ParseBody("inputs[i].Get(x);");
    EXPECT_FALSE(BakeForStatementIteration(parameter, "i").Bake(statement, 2));
    EXPECT_EQ(checks.Get().size(), 1u);
}

TEST_F(Bake, EmptyCell_EndsTheUnrolledLoopThere) {
    ASSERT_TRUE(parameter->SetLength(3));
    Statement* const statement =
        ParseBody("for (int i = 0; i < inputs.length; ++i) { inputs[i].Get(x); }");
    const std::unique_ptr<Statement> unrolled(
        UnrollForStatementInterfaceArray(parameter).Unroll(static_cast<ForStatement*>(statement)));
    ASSERT_NE(unrolled, nullptr);
    // The variable, two passes, and a count behind each.
    EXPECT_EQ(static_cast<CompoundStatement*>(unrolled.get())->GetCountStatements(), 5u);
}

TEST_F(Bake, LoopWithoutADeclaration_FailsACheck) {
    CapturedChecks checks;
    Statement* const statement = ParseBody("for (i = 0; i < 1; ++i) { }");
    EXPECT_EQ(
        UnrollForStatementInterfaceArray(parameter).Unroll(static_cast<ForStatement*>(statement)),
        nullptr);
    EXPECT_EQ(checks.Get().size(), 1u);
}

TEST_F(Unroll, Loop_BeyondTheLimit_StaysALoop) {
    // A block of n empty blocks has n + 1 pieces, a limit's worth of which fits.
    constexpr int kLength = 1024;
    constexpr int kPieces = static_cast<int>(kLimitUnrolledLoop / kLength);
    for (const int more : {0, 1}) {
        LoadedManager manager;
        std::string blocks;
        for (int i = 0; i < kPieces - 1 + more; ++i) {
            blocks += "{}";
        }
        manager.Load("lib", "class E { } class A { input E inputs[]; void F() {\n"
                            "for (int i = 0; i < inputs.length; ++i) {" +
                                blocks + "} } }");
        Shader* const shader = manager.Create("A");
        std::vector<IShader*> elements(kLength, manager.Create("E"));
        ASSERT_TRUE(shader->GetParameter("inputs")->SetLength(kLength));
        ASSERT_TRUE(shader->SetParameter(nullptr, "inputs", elements.data(), kLength));
        const std::unique_ptr<Module> module(Module::Create(nullptr));
        ASSERT_TRUE(shader->CollectShader(module.get()));
        const Statement* const loop =
            module->GetFunctionDefinitions()[0]->GetCompoundStatement()->GetStatements()[0];
        EXPECT_EQ(loop->GetClass(), more == 0 ? kClass_CompoundStatement : kClass_ForStatement);
    }
}

TEST_F(Unroll, LoopsOfTheGreatestDepth_UnrollOnASmallStack) {
    std::string loops;
    const int depth = kLimitNesting - 8;
    for (int i = 0; i < depth; ++i) {
        loops += "for (int i" + std::to_string(i) + " = 0; i" + std::to_string(i) +
                 " < inputs.length; ++i" + std::to_string(i) + ") ";
    }
    loops += "x = inputs[i" + std::to_string(depth - 1) + "].Get(x);";
    Shader* const user = MakeUser(loops, 0);
    OnSmallStack([&] {
        ConnectAll(user, "inputs", {Make("One", "a")});
        EXPECT_EQ(Count(Body(user, "User_Shade.u"), "One_Get.a(x)"), 1);
    });
}

TEST_F(Unroll, NestedLoops_GiveThisText) {
    Shader* const user = MakeUser(R"(
        float x = 1.0;
        for (int i = 0; i < inputs.length; ++i)
        {
            x += inputs[i].Get(x);
            for (int j = 0; j < others.length; ++j)
            {
                others[j].Put(i, x);
            }
        }
        for (int k = 0; k < inputs.length; ++k)
        {
            if (inputs[k].Get(x) > 2.0)
            {
                break;
            }
        }
)",
                                  3);
    ExpectGolden("inputs_loops.txt", loaded.Collect(user));
}

} // namespace
} // namespace Tolen::Effects::Tests
