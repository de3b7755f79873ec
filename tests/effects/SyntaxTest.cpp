#include "TreeBuilder.h"

#include "support/CapturedChecks.h"

#include <cmath>
#include <limits>

namespace Tolen::Effects::Tests {

namespace {

const std::string kFileA = "a.kl";
const std::string kFileB = "b.kl";

TEST(SyntaxTest, NewNode_HasAClearedRange) {
    TreeBuilder tree;
    const std::unique_ptr<Expression> node(tree.Var("a"));
    EXPECT_EQ(node->GetRange(), LocationRange());
    EXPECT_EQ(node->GetModule(), tree.Get());
    EXPECT_EQ(tree->GetRange(), LocationRange());
}

TEST(SyntaxTest, SetRange_OfTwo_TakesTheStartOfTheFirstAndTheEndOfTheLast) {
    TreeBuilder tree;
    const LocationRange a = {&kFileA, 1, 2, 3, 4};
    const LocationRange b = {&kFileB, 5, 6, 7, 8};
    const std::unique_ptr<Expression> nodeA(tree.Var("a"));
    const std::unique_ptr<Expression> nodeB(tree.Var("b"));
    nodeA->SetRange(a);
    nodeB->SetRange(b);
    const LocationRange joined = {&kFileB, 1, 2, 7, 8};
    const std::unique_ptr<Expression> node(tree.Var("c"));
    node->SetRange(a, b);
    EXPECT_EQ(node->GetRange(), joined);
    node->ClearRange();
    node->SetRange(a, nodeB.get());
    EXPECT_EQ(node->GetRange(), joined);
    node->ClearRange();
    node->SetRange(nodeA.get(), b);
    EXPECT_EQ(node->GetRange(), joined);
    node->ClearRange();
    node->SetRange(nodeA.get(), nodeB.get());
    EXPECT_EQ(node->GetRange(), joined);
    node->SetRange(nodeA.get());
    EXPECT_EQ(node->GetRange(), a);
}

TEST(SyntaxTest, SetRange_WithALastThatHasNoFile_KeepsTheFileOfTheFirst) {
    TreeBuilder tree;
    const std::unique_ptr<Expression> node(tree.Var("a"));
    node->SetRange(LocationRange{&kFileA, 1, 1, 1, 1}, LocationRange{nullptr, 2, 2, 2, 2});
    EXPECT_EQ(node->GetRange(), (LocationRange{&kFileA, 1, 1, 2, 2}));
}

TEST(SyntaxTest, ExpandRange_MovesTheEndAndTakesAFileThatIsThere) {
    TreeBuilder tree;
    const std::unique_ptr<Expression> node(tree.Var("a"));
    const std::unique_ptr<Expression> other(tree.Var("b"));
    node->SetRange(LocationRange{&kFileA, 1, 2, 3, 4});
    other->SetRange(LocationRange{nullptr, 5, 6, 7, 8});
    node->ExpandRange(other.get());
    EXPECT_EQ(node->GetRange(), (LocationRange{&kFileA, 1, 2, 7, 8}));
    other->SetRange(LocationRange{&kFileB, 5, 6, 9, 9});
    node->ExpandRange(other.get());
    EXPECT_EQ(node->GetRange(), (LocationRange{&kFileB, 1, 2, 9, 9}));
}

TEST(SyntaxTest, UserType_IsAUserDefinedTypeWithoutArray) {
    TreeBuilder tree;
    const std::unique_ptr<UserType> type(tree->CreateUserType(tree.Name("Foo")));
    EXPECT_EQ(type->GetClass(), kClass_UserType);
    EXPECT_EQ(type->GetTypeSpecifier(), kType_UserDefined);
    EXPECT_FALSE(type->IsArray());
    EXPECT_EQ(type->GetLength(), nullptr);
}

TEST(SyntaxTest, SetLength_ToNull_LeavesTheArray) {
    TreeBuilder tree;
    const std::unique_ptr<Type> type(tree->CreateType(kType_Float));
    type->SetArray(true);
    EXPECT_TRUE(type->SetLength(tree.Int(3)));
    EXPECT_TRUE(type->SetLength(nullptr));
    EXPECT_TRUE(type->IsArray());
    EXPECT_EQ(type->GetLength(), nullptr);
}

TEST(SyntaxTest, Setter_GivenTheChildItHolds_KeepsIt) {
    TreeBuilder tree;
    const std::unique_ptr<BinaryOperator> node(
        tree.Binary(tree.Var("a"), kOperator_Add, tree.Var("b")));
    Expression* left = node->GetLeft();
    EXPECT_TRUE(node->SetLeft(left));
    ASSERT_EQ(node->GetLeft(), left);
    EXPECT_EQ(static_cast<Variable*>(left)->GetIdentifier()->GetString(), "a");
}

TEST(SyntaxTest, FloatConstants_KeepValueAndSpelling) {
    TreeBuilder tree;
    const std::unique_ptr<FloatConstant> spelled(tree.Float("1.5f"));
    EXPECT_EQ(spelled->GetValue(), 1.5);
    EXPECT_EQ(spelled->GetString()->GetString(), "1.5f");
    const std::unique_ptr<FloatConstant> valued(tree->CreateFloatConstant(1.0));
    EXPECT_EQ(valued->GetString()->GetString(), "1.000000000000000");
    const std::unique_ptr<FloatConstant> both(tree->CreateFloatConstant(tree.Name("x"), 7.0));
    EXPECT_EQ(both->GetValue(), 7.0);
    EXPECT_EQ(both->GetString()->GetString(), "x");
    const std::unique_ptr<FloatConstant> huge(tree.Float("1e999"));
    EXPECT_TRUE(std::isinf(huge->GetValue()));
    const std::unique_ptr<FloatConstant> zero(tree->CreateFloatConstant(-0.0));
    EXPECT_EQ(zero->GetString()->GetString(), "-0.000000000000000");
    const std::unique_ptr<FloatConstant> bare(tree->CreateFloatConstant(nullptr, 2.0));
    EXPECT_EQ(bare->GetString(), nullptr);
}

TEST(SyntaxTest, FloatConstant_OfAnyValue_IsSpelledSoThatItReadsBack) {
    TreeBuilder tree;
    for (const double value : {0.1, 1.0 / 3.0, 1e300, 5e-324, 123456789.0}) {
        const std::unique_ptr<FloatConstant> constant(tree->CreateFloatConstant(value));
        const std::unique_ptr<FloatConstant> again(tree.Float(constant->GetString()->GetString()));
        EXPECT_FLOAT_EQ(static_cast<float>(again->GetValue()), static_cast<float>(value));
    }
}

TEST(SyntaxTest, AddParameter_WithNull_FailsTheCheckAndAddsNothing) {
    TreeBuilder tree;
    Tolen::Tests::CapturedChecks checks;
    const std::unique_ptr<FunctionCall> call(tree.Call("f"));
    call->AddParameter(nullptr);
    EXPECT_TRUE(checks.Contains("pExpression != NULL", "Source/Syntax"));
    EXPECT_EQ(call->GetCountParameters(), 0u);
    call->AddParameter(tree.Int(1));
    EXPECT_EQ(call->GetCountParameters(), 1u);
}

TEST(SyntaxTest, CompoundStatement_GrowsItsRangeWithItsStatements) {
    TreeBuilder tree;
    const std::unique_ptr<CompoundStatement> block(tree->CreateCompoundStatement());
    const auto add = [&](const LocationRange& range) {
        Statement* statement = tree->CreateEmptyStatement();
        statement->SetRange(range);
        block->AddStatement(statement);
    };
    add({&kFileA, 3, 4, 5, 6});
    EXPECT_EQ(block->GetRange(), (LocationRange{&kFileA, 3, 4, 5, 6}));
    add({nullptr, 7, 8, 9, 10});
    EXPECT_EQ(block->GetRange(), (LocationRange{&kFileA, 3, 4, 9, 10}));

    Statement* first = tree->CreateEmptyStatement();
    first->SetRange(LocationRange{&kFileA, 1, 1, 1, 1});
    const std::unique_ptr<CompoundStatement> wrapped(tree->CreateCompoundStatement(first));
    EXPECT_EQ(wrapped->GetCountStatements(), 1u);
    EXPECT_EQ(wrapped->GetRange(), LocationRange());
}

TEST(SyntaxTest, AddCoord_WithANameThatIsThere_KeepsTheFirst) {
    TreeBuilder tree;
    ClassDefinition* definition = tree.MakeClass("A");
    tree->AddClassDefinition(definition);
    VariableDeclaration* first = tree.Declare(kType_Vec3, "P");
    const std::unique_ptr<VariableDeclaration> second(tree.Declare(kType_Vec2, "P"));
    EXPECT_TRUE(definition->AddCoord(first));
    EXPECT_FALSE(definition->AddCoord(second.get()));
    EXPECT_EQ(definition->GetCountCoords(), 1u);
    EXPECT_EQ(definition->GetCoords().at("P"), first);
}

TEST(SyntaxTest, AddOutput_WithATextThatIsThere_ChangesNothing) {
    TreeBuilder tree;
    ClassDefinition* definition = tree.MakeClass("A");
    tree->AddClassDefinition(definition);
    EXPECT_TRUE(definition->AddOutput(tree->CreateType(kType_Vec4), tree.Name("o_color")));
    const std::unique_ptr<Type> type(tree->CreateType(kType_Vec3));
    EXPECT_FALSE(definition->AddOutput(type.get(), tree.Name("o_color")));
    EXPECT_EQ(definition->GetCountOutputs(), 1u);
    EXPECT_EQ(definition->GetOutputs().begin()->second->GetTypeSpecifier(), kType_Vec4);
}

TEST(SyntaxTest, Outputs_AreWalkedInTheOrderOfTheirNames) {
    TreeBuilder tree;
    ClassDefinition* definition = tree.MakeClass("A");
    tree->AddClassDefinition(definition);
    String* first = tree.Name("z");
    String* second = tree.Name("a");
    EXPECT_TRUE(definition->AddOutput(tree->CreateType(kType_Vec4), second));
    EXPECT_TRUE(definition->AddOutput(tree->CreateType(kType_Vec4), first));
    EXPECT_EQ(definition->GetOutputs().begin()->first, first);
}

} // namespace

} // namespace Tolen::Effects::Tests
