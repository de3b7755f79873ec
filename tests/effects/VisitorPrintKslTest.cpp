#include "TolenEffects/VisitorPrintKsl.h"

#include "FakeMgrEffects.h"
#include "GoldenFile.h"
#include "SmallStack.h"
#include "TreeBuilder.h"

#include "TolenEffects/Limits.h"

#include "TolenCore/Result.h"

#include "support/CapturedConsole.h"

#include <algorithm>
#include <clocale>

namespace Tolen::Effects::Tests {

namespace {

/// The text of one node alone.
std::string Print(Expression* node) {
    const std::unique_ptr<Expression> owner(node);
    VisitorPrintKsl printer(nullptr, nullptr, false);
    EXPECT_TRUE(node->AcceptVisitor(&printer, static_cast<TIParentSyntax<Expression>*>(nullptr)));
    return printer.GetText();
}

std::string Print(Statement* node) {
    const std::unique_ptr<Statement> owner(node);
    VisitorPrintKsl printer(nullptr, nullptr, false);
    EXPECT_TRUE(node->AcceptVisitor(&printer, static_cast<TIParentSyntax<Statement>*>(nullptr)));
    return printer.GetText();
}

/// The text of a declaration, a type or a parameter.
template <class Node>
std::string PrintPlain(Node* node) {
    const std::unique_ptr<Node> owner(node);
    VisitorPrintKsl printer(nullptr, nullptr, false);
    EXPECT_TRUE(node->AcceptVisitor(&printer));
    return printer.GetText();
}

TEST(VisitorPrintKslTest, Expressions_PrintAsTheyAreRead) {
    TreeBuilder t;
    EXPECT_EQ(Print(t.Var("a")), "a");
    EXPECT_EQ(Print(t->CreateBoolConstant(true)), "true");
    EXPECT_EQ(Print(t->CreateBoolConstant(false)), "false");
    EXPECT_EQ(Print(t.Int(-7)), "-7");
    EXPECT_EQ(Print(t.Int(-2147483648L)), "-2147483648");
    EXPECT_EQ(Print(t.Unary(kOperator_LogicalNot, t.Var("a"))), "!a");
    EXPECT_EQ(Print(t->CreatePostOperator(kOperator_Increment, t.Var("a"))), "a++");
    EXPECT_EQ(Print(t.Assign(t.Var("a"), t.Var("b"))), "a = b");
    EXPECT_EQ(Print(t.Assign(t.Var("a"), t.Var("b"), kOperator_Add)), "a+= b");
    EXPECT_EQ(Print(t.Assign(t.Var("a"), t.Var("b"), kOperator_ShiftLeft)), "a<<= b");
    EXPECT_EQ(Print(t.Choice(t.Var("a"), t.Var("b"), t.Var("c"))), "(a) ? (b) : (c)");
    EXPECT_EQ(Print(t->CreateSubscript(t.Var("a"), t.Int(3))), "a[3]");
    EXPECT_EQ(Print(t.Field(t.Var("a"), "xyz")), "a.xyz");
    EXPECT_EQ(Print(t.Call("f", {t.Var("a"), t.Int(1)})), "f(a, 1)");
    EXPECT_EQ(Print(t.Call("f")), "f()");
    EXPECT_EQ(Print(t->CreateCondition(t.Var("a"))), "a");
    EXPECT_EQ(
        Print(t->CreateCondition(static_cast<Declaration*>(t.Declare(kType_Int, "i", t.Int(1))))),
        "int i = 1");
}

TEST(VisitorPrintKslTest, BinaryOperators_StandInParenthesesWithoutBlanks) {
    TreeBuilder t;
    for (int i = 0; i < 24; ++i) {
        const Operator op = static_cast<Operator>(i);
        EXPECT_EQ(Print(t.Binary(t.Var("a"), op, t.Var("b"))),
                  std::string("(a") + OperatorToString(op) + "b)");
    }
    EXPECT_EQ(Print(t.Sum(3)), "(((a+a)+a)+a)");
    EXPECT_EQ(Print(t.Binary(t.Var("a"), kOperator_Subtract,
                             t.Binary(t.Var("b"), kOperator_Subtract, t.Var("c")))),
              "(a-(b-c))");
}

TEST(VisitorPrintKslTest, FloatConstants_LoseTheirFAndStayFloats) {
    TreeBuilder t;
    const std::pair<const char*, const char*> cases[] = {
        {"1.5f", "1.5"},   {"1.5", "1.5"},  {"1.f", "1."},        {".5f", ".5"},
        {"1f", "1.0"},     {"0f", "0.0"},   {"007f", "007.0"},    {"1e3", "1e3"},
        {"-1.5f", "-1.5"}, {"-1f", "-1.0"}, {"1.5E+2", "1.5E+2"},
    };
    for (const auto& [spelling, text] : cases) {
        EXPECT_EQ(Print(t.Float(spelling)), text);
    }
    EXPECT_EQ(Print(t->CreateFloatConstant(1.0)), "1.000000000000000");
    EXPECT_EQ(Print(t->CreateFloatConstant(nullptr, 0.5)), "0.5000000000000000");
}

TEST(VisitorPrintKslTest, FloatConstant_PrintedTwice_GivesTheSameText) {
    TreeBuilder t;
    const std::unique_ptr<FloatConstant> constant(t.Float("1f"));
    for (int i = 0; i < 2; ++i) {
        VisitorPrintKsl printer(nullptr, nullptr, false);
        EXPECT_TRUE(
            constant->AcceptVisitor(&printer, static_cast<TIParentSyntax<Expression>*>(nullptr)));
        EXPECT_EQ(printer.GetText(), "1.0");
        EXPECT_EQ(constant->GetString()->GetString(), "1");
    }
}

TEST(VisitorPrintKslTest, Numbers_HaveAPointWhateverTheLocale) {
    TreeBuilder t;
    const std::string before = std::setlocale(LC_ALL, nullptr);
    for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8"}) {
        std::setlocale(LC_ALL, name);
    }
    EXPECT_EQ(Print(t->CreateFloatConstant(nullptr, 1234.5)), "1234.500000000000");
    EXPECT_EQ(Print(t->CreateFloatConstant(0.25)), "0.2500000000000000");
    std::setlocale(LC_ALL, before.c_str());
}

TEST(VisitorPrintKslTest, LooseOperands_StandInOnePairOfParentheses) {
    TreeBuilder t;
    const auto choice = [&] { return t.Choice(t.Var("a"), t.Var("b"), t.Var("c")); };
    const auto assignment = [&] { return t.Assign(t.Var("a"), t.Var("b")); };
    EXPECT_EQ(Print(t.Binary(choice(), kOperator_Multiply, t.Var("d"))), "(((a) ? (b) : (c))*d)");
    EXPECT_EQ(Print(t.Binary(t.Var("d"), kOperator_Add, assignment())), "(d+(a = b))");
    EXPECT_EQ(Print(t.Unary(kOperator_Subtract, choice())), "-((a) ? (b) : (c))");
    EXPECT_EQ(Print(t->CreatePostOperator(kOperator_Decrement, assignment())), "(a = b)--");
    EXPECT_EQ(Print(t.Field(choice(), "x")), "((a) ? (b) : (c)).x");
    EXPECT_EQ(Print(t->CreateSubscript(assignment(), choice())), "(a = b)[(a) ? (b) : (c)]");
    EXPECT_EQ(Print(t.Assign(t.Var("x"), choice())), "x = (a) ? (b) : (c)");
    EXPECT_EQ(Print(t.Assign(t.Var("x"), assignment())), "x = a = b");
    EXPECT_EQ(Print(t.Assign(assignment(), t.Var("x"))), "(a = b) = x");
    EXPECT_EQ(Print(t.Call("f", {choice(), assignment()})), "f((a) ? (b) : (c), a = b)");
    EXPECT_EQ(Print(t.Choice(choice(), assignment(), t.Var("x"))),
              "((a) ? (b) : (c)) ? (a = b) : (x)");
}

TEST(VisitorPrintKslTest, JoiningOperands_StandInParentheses) {
    TreeBuilder t;
    const auto minus = [&](Expression* operand) { return t.Unary(kOperator_Subtract, operand); };
    const auto plus = [&](Expression* operand) { return t.Unary(kOperator_Add, operand); };
    const auto from = [&](Expression* operand) {
        return Print(t.Binary(t.Var("a"), kOperator_Subtract, operand));
    };
    EXPECT_EQ(from(minus(t.Var("b"))), "(a-(-b))");
    EXPECT_EQ(from(t.Unary(kOperator_Decrement, t.Var("b"))), "(a-(--b))");
    EXPECT_EQ(from(t.Int(-1)), "(a-(-1))");
    EXPECT_EQ(from(t.Float("-1.5")), "(a-(-1.5))");
    EXPECT_EQ(from(plus(t.Var("b"))), "(a-+b)");
    EXPECT_EQ(from(t.Field(t->CreateSubscript(t.Var("b"), minus(t.Int(1))), "x")), "(a-b[-1].x)");
    EXPECT_EQ(Print(t.Binary(t.Var("a"), kOperator_Add, plus(t.Var("b")))), "(a+(+b))");
    EXPECT_EQ(Print(t.Binary(t.Var("a"), kOperator_Add, minus(t.Var("b")))), "(a+-b)");
    EXPECT_EQ(Print(t.Binary(t.Var("a"), kOperator_Add, t.Int(-1))), "(a+-1)");
    EXPECT_EQ(Print(minus(minus(t.Var("x")))), "-(-x)");
    EXPECT_EQ(Print(minus(t.Unary(kOperator_Decrement, t.Var("x")))), "-(--x)");
    EXPECT_EQ(Print(t.Unary(kOperator_Decrement, minus(t.Var("x")))), "--(-x)");
    EXPECT_EQ(Print(t.Unary(kOperator_LogicalNot, t.Unary(kOperator_LogicalNot, t.Var("x")))),
              "!!x");
    EXPECT_EQ(Print(minus(plus(t.Var("x")))), "-+x");
    EXPECT_EQ(Print(t.Binary(minus(t.Var("a")), kOperator_Subtract, t.Var("b"))), "(-a-b)");
    // The longest operator is read first, so that these mean what they look like.
    EXPECT_EQ(Print(t.Binary(t->CreatePostOperator(kOperator_Increment, t.Var("a")), kOperator_Add,
                             t.Var("b"))),
              "(a+++b)");
    EXPECT_EQ(Print(t.Field(t.Int(1), "x")), "(1).x");
    EXPECT_EQ(Print(t.Field(t.Float("1.5"), "x")), "1.5.x");
}

TEST(VisitorPrintKslTest, PrefixedObjects_KeepTheirOperator) {
    TreeBuilder t;
    const auto minus = [&] { return t.Unary(kOperator_Subtract, t.Var("a")); };
    EXPECT_EQ(Print(t.Field(minus(), "x")), "(-a).x");
    EXPECT_EQ(Print(t->CreateSubscript(minus(), t.Int(0))), "(-a)[0]");
    EXPECT_EQ(Print(t->CreatePostOperator(kOperator_Increment, minus())), "(-a)++");
    EXPECT_EQ(Print(t.Unary(kOperator_Subtract, t.Field(t.Var("a"), "x"))), "-a.x");
    EXPECT_EQ(Print(t.Binary(t.Var("b"), kOperator_Subtract, t.Field(minus(), "x"))), "(b-(-a).x)");
}

TEST(VisitorPrintKslTest, Constructors_PrintBuiltInTypesAlone) {
    TreeBuilder t;
    EXPECT_EQ(Print(t.Construct(kType_Vec3, {t.Int(1)})), "vec3(1)");
    EXPECT_EQ(Print(t.Construct(kType_Float)), "float()");
    EXPECT_EQ(Print(t.Construct(kType_Mat4)), "mat4()");
    EXPECT_EQ(Print(t.Construct(kType_Void, {t.Int(1)})), "(1)");
    EXPECT_EQ(Print(t.Construct(kType_Sampler2D, {t.Int(1)})), "(1)");
    EXPECT_EQ(Print(t->CreateFunctionCall(t->CreateUserType(t.Name("Foo")))), "()");
}

TEST(VisitorPrintKslTest, Types_PrintPrecisionAndName) {
    TreeBuilder t;
    Type* type = t->CreateType(kType_Vec2);
    type->SetPrecisionQualifier(kPrecisionQualifier_Medium);
    EXPECT_EQ(PrintPlain(type), "mediump vec2");
    EXPECT_EQ(PrintPlain(t->CreateType(kType_Primitive)), "primitive");
    EXPECT_EQ(PrintPlain(t->CreateType(kType_UserDefined)), "<user-defined>");
    EXPECT_EQ(PrintPlain(static_cast<Type*>(t->CreateUserType(t.Name("Foo")))), "Foo");
}

TEST(VisitorPrintKslTest, VariableDeclarations_PrintEveryPart) {
    TreeBuilder t;
    VariableDeclaration* declaration = t.Declare(kType_Float, "a", t.Int(1));
    declaration->SetStatic(true);
    declaration->SetConst(true);
    declaration->SetStorageQualifier(kStorageQualifier_TransformedNormalizedVarying);
    declaration->GetType()->SetArray(true);
    declaration->GetType()->SetLength(t.Int(3));
    EXPECT_EQ(PrintPlain(declaration),
              "static const transformed normalized varying float a[3] = 1");
    VariableDeclaration* unsizedArray = t.Declare(kType_Float, "a");
    unsizedArray->GetType()->SetArray(true);
    EXPECT_EQ(PrintPlain(unsizedArray), "float a");
    EXPECT_EQ(PrintPlain(t.DeclareUser("Foo", "foo")), "");
    EXPECT_EQ(Print(t->CreateDeclarationStatement(t.DeclareUser("Foo", "foo"))), ";\n");
}

TEST(VisitorPrintKslTest, Prototypes_PrintQualifiedAndArrayParameters) {
    TreeBuilder t;
    FunctionParameter* array = t.Parameter(kType_Vec3, "v", kParameterQualifier_InOut);
    array->GetType()->SetArray(true);
    array->GetType()->SetLength(t.Int(2));
    FunctionPrototype* prototype =
        t.Prototype(kType_Vec4, "f",
                    {t.Parameter(kType_Int, "i"),
                     t.Parameter(kType_Bool, "b", kParameterQualifier_Out), array});
    prototype->AddParameter(t->CreateFunctionParameter(t->CreateType(kType_Float)));
    prototype->SetQualifier(kFunctionQualifier_Static);
    EXPECT_EQ(PrintPlain(prototype), "vec4 f(int i, out bool b, inout vec3 v[2], float)");
    EXPECT_EQ(PrintPlain(t.Prototype(kType_Void, "g")), "void g()");
}

TEST(VisitorPrintKslTest, Statements_PrintWithTabsAndLineFeeds) {
    TreeBuilder t;
    const auto condition = [&] { return t->CreateCondition(t.Var("c")); };
    EXPECT_EQ(Print(t.Do(t.Var("a"))), "a;\n");
    EXPECT_EQ(Print(t->CreateEmptyStatement()), ";");
    EXPECT_EQ(Print(t->CreateJumpStatement(kJumpType_Continue, nullptr)), "continue;\n");
    EXPECT_EQ(Print(t->CreateJumpStatement(kJumpType_Break, nullptr)), "break;\n");
    EXPECT_EQ(Print(t->CreateJumpStatement(kJumpType_Return, nullptr)), "return ;\n");
    EXPECT_EQ(Print(t->CreateJumpStatement(kJumpType_Return, t.Var("a"))), "return a;\n");
    EXPECT_EQ(Print(t.Block({t.Block({t.Do(t.Var("a"))})})), "{\n\t{\n\t\ta;\n\t}\n}\n");
    EXPECT_EQ(Print(t->CreateWhileStatement(condition(), t.Block())), "while(c)\n{\n}\n");
    EXPECT_EQ(Print(t->CreateDoWhileStatement(t.Block(), t.Var("c"))), "do\n{\n}\nwhile(c);\n");
    EXPECT_EQ(Print(t.Block({t.For(t.Do(t.Var("i")), condition(), t.Var("j"), t.Block())})),
              "{\n\tfor(\ti;\n\tc;j)\n\t{\n\t}\n}\n");
    EXPECT_EQ(Print(t.For(t->CreateEmptyStatement(), nullptr, nullptr, t->CreateEmptyStatement())),
              "for(;;)\n;");
    EXPECT_EQ(Print(t.If(t.Var("c"), t.Block())), "if (c)\n{\n}\n");
    EXPECT_EQ(Print(t.If(t.Var("c"), t.Do(t.Var("a")))), "if (c)\n\ta;\n");
    EXPECT_EQ(Print(t.Block({t.If(t.Var("c"), t.Block(), t.Block())})),
              "{\n\tif (c)\n\t{\n\t}\n\n\telse\n\t\t{\n\t}\n}\n");
    EXPECT_EQ(Print(t.If(t.Var("c"), t.Do(t.Var("a")), t.Do(t.Var("b")))),
              "if (c)\n\ta;\n\nelse\nb;\n");
    EXPECT_EQ(Print(t.ElseIfs(2)), "if (a)\n\ta;\n\nelse\nif (a)\n\ta;\n");
}

TEST(VisitorPrintKslTest, RemovedCalls_BecomeCommentsThatKeepTheirArguments) {
    TreeBuilder t;
    FunctionCall* bare = t.Call("f");
    bare->SetOptimization(OptimizationEmpty);
    EXPECT_EQ(Print(t.Block({t.Do(bare)})),
              "{\n\t// optimizer removed call to empty function f\n;\n}\n");
    FunctionCall* call = t.Call("f", {t.Call("g"), t.Var("a")});
    call->SetOptimization(OptimizationNeverCalled);
    EXPECT_EQ(Print(t.Block({t.Do(call)})),
              "{\n\t// optimizer removed call to never-called function f\n"
              "\t// emitting parameters of removed call as standalone expressions:\n"
              "\t{\n\t\tg();\n\t\ta;\n\t};\n}\n");
    FunctionCall* constructor = t.Construct(kType_Vec2, {t.Int(1)});
    constructor->SetOptimization(OptimizationEmpty);
    EXPECT_EQ(Print(constructor), "vec2(1)");
}

TEST(VisitorPrintKslTest, RemovedFunctions_BecomeComments) {
    TreeBuilder t;
    FunctionPrototype* prototype = t.Prototype(kType_Void, "f");
    prototype->SetOptimization(OptimizationNeverCalled);
    EXPECT_EQ(PrintPlain(prototype), "// optimizer removed prototype for never-called function f");
    FunctionDefinition* definition = t.Function(t.Prototype(kType_Void, "f"));
    definition->SetOptimization(OptimizationEmpty);
    EXPECT_EQ(PrintPlain(definition), "// optimizer removed definition of empty function f\n");
}

/// Prints one call of accumulate in a function and keeps what was said.
struct AccumulateCase {
    AccumulateCase(std::initializer_list<const char*> outputs, bool useOutputIndices)
        : printer(&result, &manager, useOutputIndices) {
        manager.outputs.insert(outputs.begin(), outputs.end());
    }
    bool Print(FunctionCall* call) {
        tree->AddFunctionDefinition(
            tree.Function(tree.Prototype(kType_Void, "f"), {tree.Do(call)}));
        return tree->AcceptVisitor(&printer);
    }

    TreeBuilder tree;
    FakeMgrEffects manager;
    Result result;
    Tolen::Tests::CapturedConsole console;
    VisitorPrintKsl printer;
};

TEST(VisitorPrintKslTest, Accumulate_OfAnOutput_UsesTheUniformOfItsIndex) {
    AccumulateCase c({"o_color"}, true);
    TreeBuilder& t = c.tree;
    t->AddVariableDeclaration(t->CreateDeclarationStatement(t.Declare(kType_Int, "v")));
    ASSERT_TRUE(c.Print(t.Call("accumulate", {t.Var("o_color"), t.Var("c")})));
    EXPECT_EQ(c.printer.GetText(), "uniform int __outputAttachmentIndex_o_color;\n\n"
                                   "\nint v;\n\n\nvoid f()\n{\n"
                                   "\taccumulate(__outputAttachmentIndex_o_color, c);\n}\n\n");
    EXPECT_EQ(c.printer.GetOutputsUsed(), std::set<std::string>{"o_color"});
    EXPECT_EQ(c.console.GetAll(), "");
}

TEST(VisitorPrintKslTest, Accumulate_OfManyOutputs_DeclaresEachOnceByName) {
    AccumulateCase c({"b", "a"}, true);
    TreeBuilder& t = c.tree;
    const auto call = [&](const char* name) {
        return t.Call("accumulate", {t.Var(name), t.Int(0)});
    };
    t->AddFunctionDefinition(t.Function(t.Prototype(kType_Void, "g"),
                                        {t.Do(call("b")), t.Do(call("a")), t.Do(call("b"))}));
    ASSERT_TRUE(t->AcceptVisitor(&c.printer));
    const std::string header = "uniform int __outputAttachmentIndex_a;\n"
                               "uniform int __outputAttachmentIndex_b;\n\n";
    EXPECT_EQ(c.printer.GetText().substr(0, header.size()), header);
    EXPECT_EQ(c.printer.GetOutputsUsed().size(), 2u);
}

TEST(VisitorPrintKslTest, Accumulate_OfAnIndex_PrintsItAsItIs) {
    AccumulateCase c({}, false);
    ASSERT_TRUE(c.Print(c.tree.Call("accumulate", {c.tree.Int(3), c.tree.Var("c")})));
    EXPECT_NE(c.printer.GetText().find("\taccumulate(3, c);\n"), std::string::npos);
    EXPECT_TRUE(c.printer.GetOutputsUsed().empty());
}

TEST(VisitorPrintKslTest, Accumulate_OfAnUnknownOutput_IsLeftOutWithAWarning) {
    AccumulateCase c({}, true);
    ASSERT_TRUE(c.Print(c.tree.Call("accumulate", {c.tree.Var("x"), c.tree.Var("c")})));
    const std::string message = "accumulate() call refers to unknown output 'x', call omitted...";
    EXPECT_NE(c.printer.GetText().find("{\n\t;\n}"), std::string::npos);
    EXPECT_EQ(c.tree->WarningMessages(), std::vector<std::string>{message});
    EXPECT_EQ(c.console.GetGeneral(), message + "\n");
    EXPECT_EQ(c.printer.GetText().front(), '\n');
}

TEST(VisitorPrintKslTest, Accumulate_OfAnOutputWithoutIndices_Fails) {
    AccumulateCase c({"o"}, false);
    EXPECT_FALSE(c.Print(c.tree.Call("accumulate", {c.tree.Var("o"), c.tree.Var("c")})));
    const std::string message = "CANNOT GENERATE KLSL WITHOUT OUTPUT ATTACHMENT INDEX ARRAY";
    EXPECT_EQ(c.tree->WarningMessages(), std::vector<std::string>{message});
    EXPECT_EQ(c.console.GetGeneral(), message + "\n");
}

TEST(VisitorPrintKslTest, Accumulate_OfAnythingElse_Fails) {
    AccumulateCase malformed({}, true);
    EXPECT_FALSE(malformed.Print(malformed.tree.Call("accumulate", {malformed.tree.Int(1)})));
    EXPECT_EQ(malformed.tree->ErrorMessages(),
              std::vector<std::string>{
                  "Malformed accumulate() call found during code generation - must be of the form "
                  "accumulate(output, value)"});
    AccumulateCase computed({}, true);
    EXPECT_FALSE(computed.Print(
        computed.tree.Call("accumulate", {computed.tree.Sum(1), computed.tree.Int(1)})));
    const std::string message =
        "First parameter of an accumulate() call must be an output variable or int constant";
    EXPECT_EQ(computed.tree->ErrorMessages(), std::vector<std::string>{message});
    EXPECT_EQ(computed.console.GetGeneral(), message + "\n");
}

TEST(VisitorPrintKslTest, FunctionSelection_FailsWithItsLocation) {
    const std::string file = "shaders/wood.kl";
    const auto print = [&](bool ofVariable) {
        TreeBuilder t;
        Result result;
        VisitorPrintKsl printer(&result, nullptr, true);
        VisitorPrintKsl silent(nullptr, nullptr, true);
        Expression* object = ofVariable ? static_cast<Expression*>(t.Var("Noise")) : t.Call("f");
        FunctionSelection* selection = t->CreateFunctionSelection(object, t.Call("at"));
        selection->SetRange(Lines(&file, 12, 13));
        t->AddFunctionDefinition(t.Function(t.Prototype(kType_Void, "f"), {t.Do(selection)}));
        EXPECT_FALSE(t->AcceptVisitor(&silent));
        EXPECT_FALSE(t->AcceptVisitor(&printer));
        return result.GetLast();
    };
    EXPECT_EQ(print(true), "wood.kl:12: Class \"Noise\" cannot be found.");
    EXPECT_EQ(print(false), "wood.kl:12: Class for function selection cannot be resolved.");
}

/// A module with something of everything that stands in a generated text.
void BuildProgram(TreeBuilder& t) {
    StructDefinition* block = t->CreateStructDefinition();
    block->SetName(t.Name("Weights"));
    block->SetUniform(true);
    VariableDeclaration* member = t.Declare(kType_Float, "w");
    member->GetType()->SetArray(true);
    member->GetType()->SetLength(t.Int(8));
    block->AddMemberVariable(member);
    t->AddStructDefinition(block);
    StructDefinition* structure = t->CreateStructDefinition();
    structure->AddMemberVariable(t.Declare(kType_Vec2, "uv"));
    t->AddStructDefinition(structure);

    const auto global = [&](StorageQualifier qualifier, TypeSpecifier type, const char* name) {
        VariableDeclaration* declaration = t.Declare(type, name);
        declaration->SetStorageQualifier(qualifier);
        t->AddVariableDeclaration(t->CreateDeclarationStatement(declaration));
    };
    global(kStorageQualifier_RayAttribute, kType_Vec3, "weight");
    global(kStorageQualifier_Uniform, kType_Float, "gain_k2");
    global(kStorageQualifier_None, kType_Bool, "inside");
    global(kStorageQualifier_NormalizedVarying, kType_Vec3, "Normal");
    global(kStorageQualifier_Varying, kType_Vec2, "uv");

    FunctionPrototype* helper = t.Prototype(kType_Vec4, "Helper_k4", {t.Parameter(kType_Int, "i")});
    t->AddFunctionDeclaration(helper->Clone(t.Get()));
    FunctionPrototype* unused = t.Prototype(kType_Void, "Unused_k5");
    unused->SetOptimization(OptimizationNeverCalled);
    t->AddFunctionDeclaration(unused);
    FunctionDefinition* removed = t.Function(t.Prototype(kType_Void, "Unused_k5"));
    removed->SetOptimization(OptimizationNeverCalled);
    t->AddFunctionDefinition(removed);
    FunctionCall* emptyCall = t.Call("Empty_k6", {t.Call("Next_k7")});
    emptyCall->SetOptimization(OptimizationEmpty);
    t->AddFunctionDefinition(t.Function(
        t.Prototype(kType_Void, "Shade_k4"),
        {t->CreateDeclarationStatement(t.Declare(kType_Vec4, "c", t.Call("Helper_k4", {t.Int(1)}))),
         t->CreateDeclarationStatement(t.DeclareUser("ILight", "light")), t.Do(emptyCall),
         t.If(t.Var("inside"), t.Do(t.Assign(t.Var("c"), t.Var("weight"), kOperator_Multiply)),
              t.If(t.Binary(t.Var("gain_k2"), kOperator_Greater, t.Float("1f")), t.Block(),
                   t.Block({t.Do(t.Var("c"))}))),
         t.Do(t.Call("accumulate", {t.Var("o_color"), t.Var("c")}))}));
    t->AddFunctionDefinition(t.Function(
        helper, {t.For(t->CreateDeclarationStatement(t.Declare(kType_Int, "k", t.Int(0))),
                       t->CreateCondition(t.Binary(t.Var("k"), kOperator_Less, t.Var("i"))),
                       t->CreatePostOperator(kOperator_Increment, t.Var("k")),
                       t.Block({t->CreateJumpStatement(kJumpType_Continue, nullptr)})),
                 t->CreateJumpStatement(kJumpType_Return,
                                        t.Construct(kType_Vec4, {t->CreateFloatConstant(0.5),
                                                                 t.Field(t.Var("uv"), "x")}))}));

    ClassDefinition* shader = t.MakeClass("Flat");
    shader->AddMemberVariable(t.Declare(kType_Float, "flat_k8", t.Float("2.0")));
    shader->AddMemberFunction(
        t.Function(t.Prototype(kType_Void, "Flat_Init_k8"), {t.Do(t.Call("Helper_k4"))}));
    t->AddClassDefinition(shader);
}

TEST(VisitorPrintKslTest, Program_PrintsAsItsGoldenFile) {
    TreeBuilder t;
    BuildProgram(t);
    FakeMgrEffects manager;
    manager.outputs.insert("o_color");
    VisitorPrintKsl printer(nullptr, &manager, true);
    ASSERT_TRUE(t->AcceptVisitor(&printer));
    ExpectGolden("Program.kl", printer.GetText());
}

TEST(VisitorPrintKslTest, Program_BuiltInAnotherOrder_PrintsTheSame) {
    TreeBuilder t;
    BuildProgram(t);
    std::reverse(t->GetVariableDeclarations().begin(), t->GetVariableDeclarations().end());
    std::reverse(t->GetStructDefinitions().begin(), t->GetStructDefinitions().end());
    std::reverse(t->GetFunctionDeclarations().begin(), t->GetFunctionDeclarations().end());
    std::reverse(t->GetFunctionDefinitions().begin(), t->GetFunctionDefinitions().end());
    FakeMgrEffects manager;
    manager.outputs.insert("o_color");
    VisitorPrintKsl printer(nullptr, &manager, true);
    ASSERT_TRUE(t->AcceptVisitor(&printer));
    ExpectGolden("Program.kl", printer.GetText());
    const std::string first = printer.GetText();
    ASSERT_TRUE(t->AcceptVisitor(&printer));
    EXPECT_EQ(printer.GetText(), first);
}

TEST(VisitorPrintKslTest, EmptyModule_PrintsItsBlankLines) {
    TreeBuilder t;
    VisitorPrintKsl plain(nullptr, nullptr, false);
    EXPECT_TRUE(t->AcceptVisitor(&plain));
    EXPECT_EQ(plain.GetText(), "\n\n\n");
    VisitorPrintKsl graph(nullptr, nullptr, true);
    EXPECT_TRUE(t->AcceptVisitor(&graph));
    EXPECT_EQ(graph.GetText(), "\n\n\n\n");
}

TEST(VisitorPrintKslTest, LineTable_HasTheNodeThatBeganEachLine) {
    TreeBuilder t;
    BuildProgram(t);
    // Number the nodes by the lines of the text that they begin.
    FakeMgrEffects manager;
    manager.outputs.insert("o_color");
    VisitorPrintKsl printer(nullptr, &manager, true);
    ASSERT_TRUE(t->AcceptVisitor(&printer));
    const std::string& text = printer.GetText();
    const auto lines = static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    const auto lineOf = [&](const std::string& part) {
        const auto end = text.begin() + static_cast<std::ptrdiff_t>(text.find(part));
        return static_cast<int>(std::count(text.begin(), end, '\n')) + 1;
    };
    const auto classAt = [&](const std::string& part) {
        return printer.GetSyntaxForLine(lineOf(part))->GetClass();
    };
    EXPECT_EQ(printer.GetSyntaxForLine(1), t.Get());
    EXPECT_EQ(classAt("uniform float gain_k2"), kClass_DeclarationStatement);
    EXPECT_EQ(classAt("vec4 Helper_k4(int i);"), kClass_FunctionPrototype);
    EXPECT_EQ(classAt("\tvec4 c ="), kClass_DeclarationStatement);
    EXPECT_EQ(classAt("accumulate(__"), kClass_ExpressionStatement);
    EXPECT_EQ(classAt("\tif (inside)"), kClass_SelectionStatement);
    EXPECT_EQ(classAt("Next_k7();"), kClass_FunctionCall);
    EXPECT_EQ(classAt("int k = 0"), kClass_DeclarationStatement);
    EXPECT_EQ(classAt("return vec4"), kClass_JumpStatement);
    EXPECT_EQ(classAt("float flat_k8"), kClass_Module);
    for (const int line : {lines + 1, lines + 2, 0, -1}) {
        EXPECT_EQ(printer.GetSyntaxForLine(line), t.Get()) << line;
    }
    for (int line = 1; line <= lines; ++line) {
        EXPECT_NE(printer.GetSyntaxForLine(line), nullptr) << line;
    }
}

TEST(VisitorPrintKslTest, ChainsOfAnyLength_PrintOnASmallStack) {
    OnSmallStack([] {
        constexpr int kLength = 100000;
        TreeBuilder t;
        const std::string sum = Print(t.Sum(kLength));
        EXPECT_EQ(sum.size(), 1u + 4u * kLength);
        const std::string chain = Print(t.ElseIfs(kLength));
        EXPECT_EQ(chain.size(), kLength * std::string("if (a)\n\ta;\n\nelse\n").size() -
                                    std::string("\nelse\n").size());
    });
}

TEST(VisitorPrintKslTest, Text_UpToItsLimitPrintsAndBeyondIsRefused) {
    const std::string file = "big.kl";
    const auto print = [&](std::size_t bytes, Result* result) {
        TreeBuilder t;
        ExpressionStatement* statement = t.Do(t.Var(std::string(bytes - 2, 'a')));
        statement->SetRange(Lines(&file, 5, 5));
        const std::unique_ptr<Statement> owner(statement);
        VisitorPrintKsl printer(result, nullptr, false);
        return statement->AcceptVisitor(&printer, static_cast<TIParentSyntax<Statement>*>(nullptr));
    };
    Result result;
    EXPECT_TRUE(print(kLimitGeneratedText, &result));
    EXPECT_TRUE(result.IsEmpty());
    EXPECT_FALSE(print(kLimitGeneratedText + 1, &result));
    EXPECT_EQ(result.GetMessages(),
              std::vector<std::string>{
                  "big.kl:5: The generated text exceeds the limit of 67108864 bytes."});
    EXPECT_FALSE(print(kLimitGeneratedText + 1, nullptr));
}

} // namespace

} // namespace Tolen::Effects::Tests
