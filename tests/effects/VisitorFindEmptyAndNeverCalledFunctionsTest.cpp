#include "VisitorFindEmptyAndNeverCalledFunctions.h"

#include "FakeGraph.h"
#include "FakeReferenceShader.h"
#include "SmallStack.h"
#include "TreeBuilder.h"

#include "TolenEffects/VisitorPrintKsl.h"

namespace Tolen::Effects::Tests {

namespace {

/// A module of functions with their prototypes, and a graph to run the pass for.
class DeadCodeTest : public testing::Test {
protected:
    /// Declares and defines a function; null @p prototype for one without parameters.
    FunctionDefinition* Add(const std::string& name, std::initializer_list<Statement*> statements,
                            FunctionPrototype* prototype = nullptr) {
        if (prototype == nullptr) {
            prototype = t.Prototype(kType_Void, name);
        }
        t->AddFunctionDeclaration(prototype->Clone(t.Get()));
        t->AddFunctionDefinition(t.Function(prototype, statements));
        return t->GetFunctionDefinitions().back();
    }
    Statement* CallOf(const std::string& name) { return t.Do(t.Call(name)); }
    bool Run() {
        graph.root = &root;
        VisitorFindEmptyAndNeverCalledFunctions pass(&graph);
        return t->AcceptVisitor(&pass);
    }
    Optimization OfDeclaration(const std::string& name) {
        return t->GetFunctionDeclaration(name)->GetOptimization();
    }

    TreeBuilder t;
    FakeGraph graph;
    FakeReferenceShader root;
};

TEST_F(DeadCodeTest, EmptyFunction_IsMarkedWithItsCalls) {
    root.methods["Shade"] = "Shade_k1";
    FunctionDefinition* empty = Add("Empty", {});
    FunctionCall* first = t.Call("Empty");
    FunctionCall* second = t.Call("Empty");
    FunctionDefinition* shade = Add("Shade_k1", {t.Do(first), t.Do(second)});
    ASSERT_TRUE(Run());
    EXPECT_EQ(empty->GetOptimization(), OptimizationEmpty);
    EXPECT_EQ(OfDeclaration("Empty"), OptimizationEmpty);
    EXPECT_EQ(first->GetOptimization(), OptimizationEmpty);
    EXPECT_EQ(second->GetOptimization(), OptimizationEmpty);
    EXPECT_EQ(shade->GetOptimization(), OptimizationNone);
    EXPECT_EQ(OfDeclaration("Shade_k1"), OptimizationNone);

    VisitorPrintKsl printer(nullptr, nullptr, false);
    ASSERT_TRUE(t->AcceptVisitor(&printer));
    EXPECT_EQ(printer.GetText(),
              "\n\n// optimizer removed prototype for empty function Empty;\nvoid Shade_k1();\n\n"
              "// optimizer removed definition of empty function Empty\n\n"
              "void Shade_k1()\n{\n"
              "\t// optimizer removed call to empty function Empty\n;\n"
              "\t// optimizer removed call to empty function Empty\n;\n}\n\n");
}

TEST_F(DeadCodeTest, Roots_StayEvenWhenTheyAreEmpty) {
    for (const char* method : {"Init", "GetRayCount", "Shade", "Render"}) {
        root.methods[method] = std::string(method) + "_k1";
        Add(std::string(method) + "_k1", {});
    }
    graph.constructor = "_ctor_instance_k1";
    graph.constructorStatic = "_ctor_static_k1";
    Add(graph.constructor, {});
    Add(graph.constructorStatic, {});
    ASSERT_TRUE(Run());
    for (const FunctionDefinition* definition : t->GetFunctionDefinitions()) {
        EXPECT_EQ(definition->GetOptimization(), OptimizationNone);
    }
    for (const FunctionPrototype* prototype : t->GetFunctionDeclarations()) {
        EXPECT_EQ(prototype->GetOptimization(), OptimizationNone);
    }
}

TEST_F(DeadCodeTest, AddRoot_LetsAFunctionStay) {
    FunctionDefinition* kept = Add("Kept", {CallOf("Other")});
    FunctionDefinition* gone = Add("Gone", {CallOf("Other")});
    VisitorFindEmptyAndNeverCalledFunctions pass(&graph);
    pass.AddRoot("Kept");
    ASSERT_TRUE(t->AcceptVisitor(&pass));
    EXPECT_EQ(kept->GetOptimization(), OptimizationNone);
    EXPECT_EQ(gone->GetOptimization(), OptimizationNeverCalled);
}

TEST_F(DeadCodeTest, FunctionThatOnlyARemovedOneCalls_Stays) {
    FunctionDefinition* inner = Add("Inner", {t.Do(t.Var("a"))});
    FunctionDefinition* outer = Add("Outer", {CallOf("Inner")});
    ASSERT_TRUE(Run());
    EXPECT_EQ(inner->GetOptimization(), OptimizationNone);
    EXPECT_EQ(outer->GetOptimization(), OptimizationNeverCalled);
    EXPECT_EQ(OfDeclaration("Outer"), OptimizationNeverCalled);
}

TEST_F(DeadCodeTest, OverloadedNames_StayEvenWhenOneIsEmpty) {
    FunctionDefinition* one =
        Add("f", {}, t.Prototype(kType_Void, "f", {t.Parameter(kType_Int, "i")}));
    FunctionDefinition* other =
        Add("f", {}, t.Prototype(kType_Void, "f", {t.Parameter(kType_Float, "x")}));
    ASSERT_TRUE(Run());
    EXPECT_EQ(one->GetOptimization(), OptimizationNone);
    EXPECT_EQ(other->GetOptimization(), OptimizationNone);
}

TEST_F(DeadCodeTest, RepeatedPrototypes_TheLastIsMarked) {
    t->AddFunctionDeclaration(t.Prototype(kType_Void, "f"));
    FunctionDefinition* definition = Add("f", {});
    ASSERT_TRUE(Run());
    EXPECT_EQ(definition->GetOptimization(), OptimizationEmpty);
    EXPECT_EQ(t->GetFunctionDeclarations()[0]->GetOptimization(), OptimizationNone);
    EXPECT_EQ(t->GetFunctionDeclarations()[1]->GetOptimization(), OptimizationEmpty);
}

TEST_F(DeadCodeTest, EmptyFunctionThatReturnsAValue_KeepsItsCalls) {
    root.methods["Shade"] = "Shade_k1";
    FunctionDefinition* value = Add("Value", {}, t.Prototype(kType_Int, "Value"));
    FunctionCall* call = t.Call("Value");
    Add("Shade_k1", {t.Do(t.Assign(t.Var("a"), t.Binary(t.Int(1), kOperator_Add, call)))});
    ASSERT_TRUE(Run());
    EXPECT_EQ(value->GetOptimization(), OptimizationNone);
    EXPECT_EQ(call->GetOptimization(), OptimizationNone);
}

TEST_F(DeadCodeTest, EmptyFunctionThatNothingCalls_IsMarkedEmpty) {
    FunctionDefinition* empty = Add("Empty", {});
    ASSERT_TRUE(Run());
    EXPECT_EQ(empty->GetOptimization(), OptimizationEmpty);
}

TEST_F(DeadCodeTest, PrototypeAlone_IsMarkedWhenNothingCallsIt) {
    t->AddFunctionDeclaration(t.Prototype(kType_Void, "Called"));
    t->AddFunctionDeclaration(t.Prototype(kType_Void, "Uncalled"));
    root.methods["Shade"] = "Shade_k1";
    Add("Shade_k1", {CallOf("Called")});
    ASSERT_TRUE(Run());
    EXPECT_EQ(OfDeclaration("Called"), OptimizationNone);
    EXPECT_EQ(OfDeclaration("Uncalled"), OptimizationNeverCalled);
}

TEST_F(DeadCodeTest, DefinitionWithoutPrototype_IsLeftAlone) {
    t->AddFunctionDefinition(t.Function(t.Prototype(kType_Void, "f")));
    t->AddFunctionDefinition(
        t->CreateFunctionDefinition(t.Prototype(kType_Void, "bodiless"), nullptr));
    ASSERT_TRUE(Run());
    EXPECT_EQ(t->GetFunctionDefinitions()[0]->GetOptimization(), OptimizationNone);
    EXPECT_EQ(t->GetFunctionDefinitions()[1]->GetOptimization(), OptimizationNone);
}

TEST_F(DeadCodeTest, CallsInArguments_CountAsCalls) {
    root.methods["Shade"] = "Shade_k1";
    FunctionDefinition* argument =
        Add("Argument", {t->CreateJumpStatement(kJumpType_Return, t.Int(1))},
            t.Prototype(kType_Int, "Argument"));
    Add("Empty", {}, t.Prototype(kType_Void, "Empty", {t.Parameter(kType_Int, "i")}));
    Add("Shade_k1", {t.Do(t.Call("Empty", {t.Call("Argument")}))});
    ASSERT_TRUE(Run());
    EXPECT_EQ(argument->GetOptimization(), OptimizationNone);
    VisitorPrintKsl printer(nullptr, nullptr, false);
    ASSERT_TRUE(t->AcceptVisitor(&printer));
    EXPECT_NE(printer.GetText().find("\t{\n\t\tArgument();\n\t};\n"), std::string::npos);
}

TEST_F(DeadCodeTest, GraphWithoutRoot_MarksWhatNothingCalls) {
    FunctionDefinition* function = Add("f", {t.Do(t.Var("a"))});
    VisitorFindEmptyAndNeverCalledFunctions pass(&graph);
    ASSERT_TRUE(t->AcceptVisitor(&pass));
    EXPECT_EQ(function->GetOptimization(), OptimizationNeverCalled);
}

TEST_F(DeadCodeTest, LoopWithoutCondition_IsWalked) {
    FunctionDefinition* called = Add("Called", {t.Do(t.Var("a"))});
    Add("f", {t.For(t->CreateEmptyStatement(), nullptr, nullptr, t.Block({CallOf("Called")}))});
    ASSERT_TRUE(Run());
    EXPECT_EQ(called->GetOptimization(), OptimizationNone);
}

TEST_F(DeadCodeTest, LongChains_AreWalkedOnASmallStack) {
    OnSmallStack([this] {
        FunctionDefinition* function = Add("f", {t.Do(t.Sum(100000)), t.ElseIfs(100000)});
        EXPECT_TRUE(Run());
        EXPECT_EQ(function->GetOptimization(), OptimizationNeverCalled);
    });
}

} // namespace

} // namespace Tolen::Effects::Tests
