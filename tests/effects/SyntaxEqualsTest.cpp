#include "TreeBuilder.h"

#include <algorithm>

namespace Tolen::Effects::Tests {

namespace {

/// Owns two nodes while they are compared.
template <class Base>
bool AreEqual(Base* a, Base* b) {
    const std::unique_ptr<Base> ownerA(a);
    const std::unique_ptr<Base> ownerB(b);
    return a->Equals(b);
}

bool Same(Expression* a, Expression* b) {
    return AreEqual(a, b);
}

bool Same(Statement* a, Statement* b) {
    return AreEqual(a, b);
}

bool Same(Declaration* a, Declaration* b) {
    return AreEqual(a, b);
}

TEST(SyntaxEqualsTest, Expressions_CompareByStructure) {
    TreeBuilder t;
    EXPECT_TRUE(Same(t.Var("a"), t.Var("a")));
    EXPECT_FALSE(Same(t.Var("a"), t.Var("b")));
    EXPECT_FALSE(Same(t.Var("a"), t.Int(1)));
    EXPECT_TRUE(Same(t.Int(1), t.Int(1)));
    EXPECT_FALSE(Same(t.Int(1), t.Int(2)));
    EXPECT_TRUE(Same(t.Float("1.0"), t.Float("1.00")));
    EXPECT_TRUE(Same(t.Float("1.0"), t.Float("1.0f")));
    EXPECT_FALSE(Same(t.Float("1.0"), t.Float("1.1")));
    EXPECT_FALSE(Same(t->CreateBoolConstant(true), t->CreateBoolConstant(false)));
    EXPECT_FALSE(Same(t.Unary(kOperator_Increment, t.Var("a")),
                      t->CreatePostOperator(kOperator_Increment, t.Var("a"))));
    EXPECT_FALSE(Same(t.Unary(kOperator_Add, t.Var("a")), t.Unary(kOperator_Subtract, t.Var("a"))));
    EXPECT_TRUE(Same(t.Assign(t.Var("a"), t.Var("b")), t.Assign(t.Var("a"), t.Var("b"))));
    EXPECT_FALSE(
        Same(t.Assign(t.Var("a"), t.Var("b")), t.Assign(t.Var("a"), t.Var("b"), kOperator_Add)));
    EXPECT_FALSE(Same(t.Field(t.Var("a"), "x"), t.Field(t.Var("a"), "y")));
    EXPECT_FALSE(Same(t.Choice(t.Var("a"), t.Var("b"), t.Var("c")),
                      t.Choice(t.Var("a"), t.Var("b"), t.Var("d"))));
    EXPECT_FALSE(
        Same(t->CreateSubscript(t.Var("a"), t.Int(0)), t->CreateSubscript(t.Var("a"), t.Int(1))));
}

TEST(SyntaxEqualsTest, OperatorChains_CompareWhereverTheyDiffer) {
    TreeBuilder t;
    const auto chain = [&](const char* first, const char* second, const char* third) {
        return t.Binary(t.Binary(t.Var(first), kOperator_Add, t.Var(second)), kOperator_Multiply,
                        t.Var(third));
    };
    EXPECT_TRUE(Same(chain("a", "b", "c"), chain("a", "b", "c")));
    EXPECT_FALSE(Same(chain("x", "b", "c"), chain("a", "b", "c")));
    EXPECT_FALSE(Same(chain("a", "x", "c"), chain("a", "b", "c")));
    EXPECT_FALSE(Same(chain("a", "b", "x"), chain("a", "b", "c")));
    EXPECT_FALSE(Same(t.Sum(3), t.Sum(2)));
    EXPECT_FALSE(Same(t.Sum(2), t.Sum(3)));
}

TEST(SyntaxEqualsTest, Calls_CompareNamesTypesAndArguments) {
    TreeBuilder t;
    EXPECT_TRUE(Same(t.Call("f", {t.Int(1)}), t.Call("f", {t.Int(1)})));
    EXPECT_FALSE(Same(t.Call("f", {t.Int(1)}), t.Call("f", {t.Int(1), t.Int(2)})));
    EXPECT_FALSE(Same(t.Call("f", {t.Int(1), t.Int(2)}), t.Call("f", {t.Int(1)})));
    EXPECT_FALSE(Same(t.Call("f"), t.Call("g")));
    EXPECT_FALSE(Same(t.Call("f"), t.Construct(kType_Vec2)));
    EXPECT_FALSE(Same(t.Construct(kType_Vec2), t.Call("f")));
    EXPECT_TRUE(Same(t.Construct(kType_Vec2), t.Construct(kType_Vec2)));
    EXPECT_FALSE(Same(t.Construct(kType_Vec2), t.Construct(kType_Vec3)));
}

TEST(SyntaxEqualsTest, Calls_FindTheirPrototypeByNameAlone) {
    TreeBuilder t;
    const std::unique_ptr<FunctionPrototype> prototype(
        t.Prototype(kType_Void, "f", {t.Parameter(kType_Int, "a")}));
    const std::unique_ptr<FunctionPrototype> unnamed(
        t->CreateFunctionPrototype(kFunctionQualifier_None, t->CreateType(kType_Void), nullptr));
    const std::unique_ptr<FunctionCall> call(t.Call("f"));
    const std::unique_ptr<FunctionCall> other(t.Call("g"));
    const std::unique_ptr<FunctionCall> constructor(t.Construct(kType_Vec2));
    EXPECT_TRUE(call->Equals(prototype.get()));
    EXPECT_FALSE(other->Equals(prototype.get()));
    EXPECT_FALSE(constructor->Equals(prototype.get()));
    EXPECT_FALSE(call->Equals(unnamed.get()));
    EXPECT_FALSE(call->Equals(static_cast<const FunctionPrototype*>(nullptr)));
}

TEST(SyntaxEqualsTest, Conditions_CompareWhatTheyHold) {
    TreeBuilder t;
    const auto declared = [&](const char* name) {
        return t->CreateCondition(static_cast<Declaration*>(t.Declare(kType_Bool, name)));
    };
    EXPECT_TRUE(Same(t->CreateCondition(t.Var("a")), t->CreateCondition(t.Var("a"))));
    EXPECT_FALSE(Same(t->CreateCondition(t.Var("a")), t->CreateCondition(t.Var("b"))));
    EXPECT_TRUE(Same(declared("a"), declared("a")));
    EXPECT_FALSE(Same(declared("a"), declared("b")));
    EXPECT_FALSE(Same(declared("a"), t->CreateCondition(t.Var("a"))));
}

TEST(SyntaxEqualsTest, Statements_CompareByStructure) {
    TreeBuilder t;
    EXPECT_TRUE(Same(t->CreateEmptyStatement(), t->CreateEmptyStatement()));
    EXPECT_FALSE(Same(t->CreateEmptyStatement(), t.Block()));
    EXPECT_TRUE(Same(t.Block({t.Do(t.Var("a"))}), t.Block({t.Do(t.Var("a"))})));
    EXPECT_FALSE(Same(t.Block({t.Do(t.Var("a"))}), t.Block()));
    EXPECT_TRUE(Same(t.If(t.Var("a"), t.Block()), t.If(t.Var("a"), t.Block())));
    EXPECT_FALSE(Same(t.If(t.Var("a"), t.Block()), t.If(t.Var("a"), t.Block(), t.Block())));
    EXPECT_FALSE(Same(t.If(t.Var("a"), t.Block(), t.Block()), t.If(t.Var("a"), t.Block())));
    EXPECT_TRUE(Same(t.ElseIfs(5), t.ElseIfs(5)));
    EXPECT_FALSE(Same(t.ElseIfs(5), t.ElseIfs(6)));
    EXPECT_TRUE(Same(t->CreateJumpStatement(kJumpType_Break, nullptr),
                     t->CreateJumpStatement(kJumpType_Break, nullptr)));
    EXPECT_FALSE(Same(t->CreateJumpStatement(kJumpType_Break, nullptr),
                      t->CreateJumpStatement(kJumpType_Continue, nullptr)));
    EXPECT_FALSE(Same(t->CreateJumpStatement(kJumpType_Return, nullptr),
                      t->CreateJumpStatement(kJumpType_Return, t.Int(1))));
    const auto loop = [&](Condition* condition) {
        return t.For(t->CreateEmptyStatement(), condition, nullptr, t.Block());
    };
    EXPECT_TRUE(Same(loop(nullptr), loop(nullptr)));
    EXPECT_FALSE(Same(loop(nullptr), loop(t->CreateCondition(t.Var("a")))));
}

TEST(SyntaxEqualsTest, Equals_WithNull_IsFalse) {
    TreeBuilder t;
    const std::unique_ptr<Expression> expression(t.Sum(1));
    const std::unique_ptr<Statement> statement(t.ElseIfs(1));
    const std::unique_ptr<Declaration> declaration(t.Prototype(kType_Int, "f"));
    EXPECT_FALSE(expression->Equals(nullptr));
    EXPECT_FALSE(statement->Equals(nullptr));
    EXPECT_FALSE(declaration->Equals(nullptr));
}

TEST(SyntaxEqualsTest, Types_CompareSpecifierPrecisionAndArray) {
    TreeBuilder t;
    const auto make = [&](TypeSpecifier specifier, int length) {
        Type* type = t->CreateType(specifier);
        if (length >= 0) {
            type->SetArray(true);
            type->SetLength(length == 0 ? nullptr : t.Int(length));
        }
        return type;
    };
    EXPECT_TRUE(AreEqual(make(kType_Int, -1), make(kType_Int, -1)));
    EXPECT_FALSE(AreEqual(make(kType_Int, -1), make(kType_Float, -1)));
    EXPECT_FALSE(AreEqual(make(kType_Int, -1), make(kType_Int, 0)));
    EXPECT_TRUE(AreEqual(make(kType_Int, 0), make(kType_Int, 0)));
    EXPECT_FALSE(AreEqual(make(kType_Int, 2), make(kType_Int, 0)));
    EXPECT_FALSE(AreEqual(make(kType_Int, 2), make(kType_Int, 3)));
    EXPECT_TRUE(AreEqual(make(kType_Int, 3), make(kType_Int, 3)));
    Type* precise = make(kType_Int, -1);
    precise->SetPrecisionQualifier(kPrecisionQualifier_High);
    EXPECT_FALSE(AreEqual(precise, make(kType_Int, -1)));
}

TEST(SyntaxEqualsTest, UserTypesAndClasses_AreNeverEqual) {
    TreeBuilder t;
    const std::unique_ptr<Type> type(t->CreateUserType(t.Name("T")));
    EXPECT_FALSE(type->Equals(type.get()));
    EXPECT_FALSE(Same(t.DeclareUser("T", "a"), t.DeclareUser("T", "a")));
    EXPECT_FALSE(Same(t.MakeClass("C"), t.MakeClass("C")));
    const std::unique_ptr<ClassDefinition> definition(t.MakeClass("C"));
    EXPECT_FALSE(definition->Equals(definition.get()));
}

TEST(SyntaxEqualsTest, Interfaces_CompareByTheirMethodsAlone) {
    TreeBuilder t;
    const auto make = [&](const char* name, const char* method) {
        InterfaceDefinition* definition = t.Interface(name);
        definition->AddMemberFunction(t.Prototype(kType_Void, method));
        return definition;
    };
    EXPECT_TRUE(Same(make("A", "f"), make("B", "f")));
    EXPECT_FALSE(Same(make("A", "f"), make("A", "g")));
}

TEST(SyntaxEqualsTest, VariableDeclarations_CompareEveryField) {
    TreeBuilder t;
    const auto changed = [&](auto&& change) {
        VariableDeclaration* declaration = t.Declare(kType_Int, "a", t.Int(1));
        change(declaration);
        return Same(declaration, t.Declare(kType_Int, "a", t.Int(1)));
    };
    EXPECT_TRUE(changed([](VariableDeclaration*) {}));
    EXPECT_FALSE(changed([](VariableDeclaration* d) { d->SetStatic(true); }));
    EXPECT_FALSE(changed([](VariableDeclaration* d) { d->SetConst(true); }));
    EXPECT_FALSE(changed([](VariableDeclaration* d) { d->SetInitializer(nullptr); }));
    EXPECT_FALSE(
        changed([](VariableDeclaration* d) { d->SetStorageQualifier(kStorageQualifier_Varying); }));
    EXPECT_FALSE(
        changed([](VariableDeclaration* d) { d->SetTransformation(kTransformationCoord_Normal); }));
    EXPECT_FALSE(changed([&](VariableDeclaration* d) { d->SetType(t->CreateType(kType_Bool)); }));
    EXPECT_FALSE(changed([](VariableDeclaration* d) { d->GetIdentifier()->SetString("b"); }));
}

TEST(SyntaxEqualsTest, Prototypes_CompareOneSidedly) {
    TreeBuilder t;
    const auto prototype = [&](std::initializer_list<const char*> names) {
        FunctionPrototype* result = t.Prototype(kType_Void, "f");
        for (const char* name : names) {
            result->AddParameter(t.Parameter(kType_Float, name));
        }
        return result;
    };
    EXPECT_TRUE(Same(prototype({"a"}), prototype({"a"})));
    EXPECT_FALSE(Same(prototype({"a"}), prototype({"b"})));
    EXPECT_TRUE(Same(prototype({"a"}), prototype({"a", "b"})));
    EXPECT_FALSE(Same(prototype({"a", "b"}), prototype({"a"})));
    EXPECT_FALSE(Same(prototype({}), t.Prototype(kType_Int, "f")));
    EXPECT_FALSE(Same(prototype({}), t.Prototype(kType_Void, "g")));
}

TEST(SyntaxEqualsTest, Equivalent_TakesNoNoticeOfParameterNames) {
    TreeBuilder t;
    const auto equivalent = [](FunctionPrototype* a, FunctionPrototype* b) {
        const std::unique_ptr<FunctionPrototype> ownerA(a);
        const std::unique_ptr<FunctionPrototype> ownerB(b);
        return a->Equivalent(b);
    };
    const auto prototype = [&](TypeSpecifier type, const char* name, ParameterQualifier qualifier) {
        return t.Prototype(kType_Void, "f", {t.Parameter(type, name, qualifier)});
    };
    EXPECT_TRUE(equivalent(prototype(kType_Float, "a", kParameterQualifier_In),
                           prototype(kType_Float, "b", kParameterQualifier_In)));
    EXPECT_FALSE(equivalent(prototype(kType_Float, "a", kParameterQualifier_In),
                            prototype(kType_Float, "a", kParameterQualifier_Out)));
    EXPECT_FALSE(equivalent(prototype(kType_Float, "a", kParameterQualifier_In),
                            prototype(kType_Int, "a", kParameterQualifier_In)));
    EXPECT_TRUE(equivalent(t.Prototype(kType_Void, "f"),
                           prototype(kType_Int, "a", kParameterQualifier_In)));
    EXPECT_FALSE(equivalent(prototype(kType_Int, "a", kParameterQualifier_In),
                            t.Prototype(kType_Void, "f")));
}

TEST(SyntaxEqualsTest, Prototypes_AreOrderedByQualifierNameTypeAndParameters) {
    TreeBuilder t;
    FunctionPrototype* isStatic = t.Prototype(kType_Void, "a");
    isStatic->SetQualifier(kFunctionQualifier_Static);
    const std::vector<FunctionPrototype*> inOrder = {
        t.Prototype(kType_Void, "B"),
        t.Prototype(kType_Void, "a"),
        t.Prototype(kType_Void, "a", {t.Parameter(kType_Float, "x")}),
        t.Prototype(kType_Void, "a", {t.Parameter(kType_Int, "a")}),
        t.Prototype(kType_Void, "a", {t.Parameter(kType_Int, "b")}),
        t.Prototype(kType_Void, "a", {t.Parameter(kType_Int, "a", kParameterQualifier_Out)}),
        t.Prototype(kType_Int, "a"),
        t.Prototype(kType_Void, "z"),
        isStatic,
    };
    for (std::size_t i = 0; i < inOrder.size(); ++i) {
        t->AddFunctionDeclaration(inOrder[i]);
        for (std::size_t j = 0; j < inOrder.size(); ++j) {
            EXPECT_EQ(*inOrder[i] < *inOrder[j], i < j) << i << " " << j;
        }
    }
}

TEST(SyntaxEqualsTest, Declarations_AreOrderedByQualifierThenName) {
    TreeBuilder t;
    const auto statement = [&](StorageQualifier qualifier, const char* name) {
        VariableDeclaration* declaration = t.Declare(kType_Int, name);
        declaration->SetStorageQualifier(qualifier);
        t->AddVariableDeclaration(t->CreateDeclarationStatement(declaration));
        return t->GetVariableDeclarations().back();
    };
    const DeclarationStatement* plain = statement(kStorageQualifier_None, "z");
    const DeclarationStatement* varyingA = statement(kStorageQualifier_Varying, "a");
    const DeclarationStatement* varyingB = statement(kStorageQualifier_Varying, "b");
    EXPECT_TRUE(*plain < *varyingA);
    EXPECT_TRUE(*varyingA < *varyingB);
    EXPECT_FALSE(*varyingB < *varyingA);
    EXPECT_FALSE(*varyingA < *varyingA);
}

TEST(SyntaxEqualsTest, Structures_AreOrderedByName) {
    TreeBuilder t;
    const std::unique_ptr<StructDefinition> a(t->CreateStructDefinition());
    a->SetName(t.Name("a"));
    const std::unique_ptr<StructDefinition> b(t->CreateStructDefinition());
    b->SetName(t.Name("b"));
    EXPECT_TRUE(*a < *b);
    EXPECT_FALSE(*b < *a);
    EXPECT_FALSE(a->Equals(b.get()));
    b->GetName()->SetString("a");
    EXPECT_TRUE(a->Equals(b.get()));
    b->SetUniform(true);
    EXPECT_FALSE(a->Equals(b.get()));
}

} // namespace

} // namespace Tolen::Effects::Tests
