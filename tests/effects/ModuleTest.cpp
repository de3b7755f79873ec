#include "SmallStack.h"
#include "TreeBuilder.h"

namespace Tolen::Effects::Tests {

namespace {

TEST(ModuleTest, DestroyString_OfAStranger_LeavesThePointer) {
    TreeBuilder tree;
    TreeBuilder other;
    String* stranger = other.Name("x");
    String* pointer = stranger;
    tree->DestroyString(pointer);
    EXPECT_EQ(pointer, stranger);
    other->DestroyString(pointer);
    EXPECT_EQ(pointer, nullptr);
    tree->DestroyString(pointer);
    EXPECT_EQ(pointer, nullptr);
}

TEST(ModuleTest, RemoveString_GivesTheNameToTheCaller) {
    TreeBuilder tree;
    String* name = tree.Name("x");
    EXPECT_TRUE(tree->RemoveString(name));
    EXPECT_FALSE(tree->RemoveString(name));
    tree.Reset();
    EXPECT_EQ(name->GetString(), "x");
    delete name;
}

TEST(ModuleTest, String_PrefixesAndCompares) {
    TreeBuilder tree;
    String* name = tree.Name("5");
    name->AddPrefix("-");
    EXPECT_EQ(name->GetString(), "-5");
    EXPECT_TRUE(name->Equals(tree.Name("-5")));
    EXPECT_FALSE(name->Equals(tree.Name("-6")));
    EXPECT_FALSE(name->Equals(nullptr));
}

TEST(ModuleTest, Interfaces_OfOneName_TheLaterIsFound) {
    TreeBuilder tree;
    InterfaceDefinition* earlier = tree.Interface("I");
    InterfaceDefinition* later = tree.Interface("I");
    tree->AddInterfaceDefinition(earlier);
    EXPECT_EQ(tree->GetInterfaceDefinition("I"), earlier);
    tree->AddInterfaceDefinition(later);
    EXPECT_EQ(tree->GetCountInterfaceDefinitions(), 2u);
    EXPECT_EQ(tree->GetInterfaceDefinition("I"), later);

    tree->RemoveInterfaceDefinition(earlier);
    EXPECT_EQ(tree->GetInterfaceDefinition("I"), later);
    tree->RemoveInterfaceDefinition(earlier);
    EXPECT_EQ(tree->GetCountInterfaceDefinitions(), 1u);
    tree->RemoveInterfaceDefinition(later);
    EXPECT_EQ(tree->GetInterfaceDefinition("I"), nullptr);
    delete earlier;
    delete later;
}

TEST(ModuleTest, Functions_OfOneName_TheFirstIsFound) {
    TreeBuilder tree;
    FunctionDefinition* first = tree.Function(tree.Prototype(kType_Void, "f"));
    FunctionDefinition* second = tree.Function(tree.Prototype(kType_Int, "f"));
    tree->AddFunctionDefinition(first);
    tree->AddFunctionDefinition(second);
    EXPECT_EQ(tree->GetFunctionDefinition("f"), first);
    tree->RemoveFunctionDefinition(first);
    EXPECT_EQ(tree->GetFunctionDefinition("f"), second);
    EXPECT_EQ(tree->GetFunctionDefinition("F"), nullptr);
    delete first;
}

TEST(ModuleTest, Lists_CountFindAndGiveBack) {
    TreeBuilder tree;
    ClassDefinition* shader = tree.MakeClass("C");
    tree->AddClassDefinition(shader);
    StructDefinition* block = tree->CreateStructDefinition();
    block->SetName(tree.Name("S"));
    tree->AddStructDefinition(block);
    FunctionPrototype* prototype = tree.Prototype(kType_Void, "p");
    tree->AddFunctionDeclaration(prototype);
    DeclarationStatement* variable = tree->CreateDeclarationStatement(tree.Declare(kType_Int, "v"));
    tree->AddVariableDeclaration(variable);
    EXPECT_TRUE(tree->AddStatement(tree->CreateEmptyStatement()));
    EXPECT_TRUE(tree->AddExpression(tree.Var("e")));

    EXPECT_EQ(tree->GetClassDefinition("C"), shader);
    EXPECT_EQ(tree->GetStructDefinition("S"), block);
    EXPECT_EQ(tree->GetFunctionDeclaration("p"), prototype);
    EXPECT_EQ(tree->GetClassDefinition("S"), nullptr);
    EXPECT_EQ(tree->GetCountStatements(), 1u);
    EXPECT_EQ(tree->GetCountExpressions(), 1u);

    tree->RemoveClassDefinition(shader);
    tree->RemoveStructDefinition(block);
    tree->RemoveVariableDeclaration(variable);
    EXPECT_EQ(tree->GetCountClassDefinitions(), 0u);
    EXPECT_EQ(tree->GetCountStructDefinitions(), 0u);
    EXPECT_EQ(tree->GetCountVariableDeclarations(), 0u);
    delete shader;
    delete block;
    delete variable;
    tree->ClearFunctionDeclarations();
    EXPECT_EQ(tree->GetCountFunctionDeclarations(), 0u);
}

TEST(ModuleTest, Messages_AreKeptInOrder) {
    TreeBuilder tree;
    tree->LogError("one");
    tree->LogError(std::string("two"));
    tree->LogWarning("three");
    EXPECT_EQ(tree->ErrorMessages(), (std::vector<std::string>{"one", "two"}));
    EXPECT_EQ(tree->WarningMessages(), std::vector<std::string>{"three"});
}

TEST(ModuleTest, CreateIntConstant_KeepsTheLow32Bits) {
    TreeBuilder tree;
    const std::unique_ptr<IntConstant> constant(tree.Int(4294967295L));
    EXPECT_EQ(constant->GetValue(), -1);
}

TEST(ModuleTest, Destruction_OfTreesOfAnyDepth_NeedsNoDeepStack) {
    OnSmallStack([] {
        constexpr int kDepth = 50000;
        TreeBuilder tree;
        Expression* unary = tree.Var("a");
        Expression* call = tree.Var("a");
        Expression* right = tree.Var("a");
        Expression* field = tree.Var("a");
        Statement* block = tree->CreateEmptyStatement();
        Statement* then = tree->CreateEmptyStatement();
        Statement* loop = tree->CreateEmptyStatement();
        for (int i = 0; i < kDepth; ++i) {
            unary = tree.Unary(kOperator_Subtract, unary);
            call = tree.Call("f", {call});
            right = tree.Assign(tree.Var("a"), right);
            field = tree->CreateSubscript(tree.Field(field, "x"), tree.Int(0));
            block = tree.Block({block});
            then = tree.If(tree.Var("a"), then);
            loop = tree.For(tree->CreateEmptyStatement(), nullptr, nullptr, loop);
        }
        for (Expression* expression : {unary, call, right, field, tree.Sum(kDepth)}) {
            tree->AddExpression(expression);
        }
        for (Statement* statement : {block, then, loop, tree.ElseIfs(kDepth)}) {
            tree->AddStatement(statement);
        }
    });
}

TEST(ModuleTest, SetterOfADeepChild_DestroysItWithoutADeepStack) {
    OnSmallStack([] {
        TreeBuilder tree;
        ExpressionStatement* statement = tree.Do(tree.Sum(200000));
        tree->AddStatement(statement);
        EXPECT_TRUE(statement->SetExpression(tree.Var("b")));
    });
}

} // namespace

} // namespace Tolen::Effects::Tests
