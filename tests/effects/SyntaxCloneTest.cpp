#include "SmallStack.h"
#include "TreeBuilder.h"

#include "TolenEffects/Visitor.h"

#include <set>

namespace Tolen::Effects::Tests {

namespace {

const std::string kFile = "a.kl";

/// A module with every kind of node.
void BuildEverything(TreeBuilder& t) {
    StructDefinition* structure = t->CreateStructDefinition();
    structure->SetName(t.Name("Block"));
    structure->SetUniform(true);
    structure->AddMemberVariable(t.Declare(kType_Vec3, "v"));
    t->AddStructDefinition(structure);

    VariableDeclaration* global = t.Declare(kType_Int, "global", t.Int(3));
    global->SetStatic(true);
    global->SetConst(true);
    global->SetStorageQualifier(kStorageQualifier_Uniform);
    global->SetTransformation(kTransformationCoord_Tangent);
    global->GetType()->SetArray(true);
    global->GetType()->SetLength(t.Int(4));
    global->GetType()->SetPrecisionQualifier(kPrecisionQualifier_Medium);
    t->AddVariableDeclaration(t->CreateDeclarationStatement(global));
    t->AddFunctionDeclaration(t.Prototype(kType_Void, "declared"));

    Expression* expression = t.Assign(
        t.Field(t->CreateSubscript(t.Var("a"), t.Int(1)), "x"),
        t.Choice(t->CreateBoolConstant(true), t.Unary(kOperator_Subtract, t.Float("1.5f")),
                 t.Binary(t->CreatePostOperator(kOperator_Increment, t.Var("i")), kOperator_Add,
                          t->CreateFunctionSelection(t.Var("o"),
                                                     t.Call("m", {t.Construct(kType_Vec2)})))),
        kOperator_Add);
    Statement* loop =
        t.For(t->CreateDeclarationStatement(t.Declare(kType_Int, "i", t.Int(0))),
              t->CreateCondition(t.Binary(t.Var("i"), kOperator_Less, t.Int(3))),
              t->CreatePostOperator(kOperator_Increment, t.Var("i")), t->CreateEmptyStatement());
    Statement* doLoop = t->CreateDoWhileStatement(
        t.Block({t->CreateJumpStatement(kJumpType_Continue, nullptr)}), t.Var("c"));
    Statement* whileLoop =
        t->CreateWhileStatement(t->CreateCondition(static_cast<Declaration*>(
                                    t.Declare(kType_Bool, "go", t->CreateBoolConstant(true)))),
                                t->CreateJumpStatement(kJumpType_Break, nullptr));
    Statement* selection = t.If(t.Var("p"), t.Do(expression), t.If(t.Var("q"), loop));
    FunctionPrototype* head =
        t.Prototype(kType_Float, "f", {t.Parameter(kType_Vec4, "p", kParameterQualifier_InOut)});
    head->SetQualifier(kFunctionQualifier_Static);
    t->AddFunctionDefinition(
        t.Function(head, {selection, doLoop, whileLoop,
                          t->CreateJumpStatement(kJumpType_Return, t.Float("2.0"))}));

    InterfaceDefinition* contract = t.Interface("I");
    contract->AddMemberFunction(t.Prototype(kType_Void, "m"));
    t->AddInterfaceDefinition(contract);

    ClassDefinition* shader = t.MakeClass("C");
    shader->SetInterface(t.Name("I"));
    shader->AddMemberVariable(t.DeclareUser("I", "input"));
    shader->AddMemberFunction(t.Function(t.Prototype(kType_Void, "m")));
    shader->AddCoord(t.Declare(kType_Vec3, "P"));
    shader->AddOutput(t->CreateType(kType_Vec4), t.Name("o_color"));
    t->AddClassDefinition(shader);
    t->AddStatement(t->CreateEmptyStatement());
    t->AddExpression(t.Int(1));
    t->LogError("error");
    t->LogWarning("warning");
    t->SetRange(Lines(&kFile, 1, 9));
}

/// Notes every node it meets, with what the default walk leaves out.
class Collector : public Visitor {
public:
    using Visitor::Visit;
#define TOLEN_COLLECT(Node)                                                                        \
    bool Visit(const Node* node) override {                                                        \
        nodes.insert(node);                                                                        \
        return Visitor::Visit(node);                                                               \
    }
    TOLEN_COLLECT(InterfaceDefinition)
    TOLEN_COLLECT(ClassDefinition)
    TOLEN_COLLECT(StructDefinition)
    TOLEN_COLLECT(FunctionParameter)
    TOLEN_COLLECT(FunctionDefinition)
    TOLEN_COLLECT(FunctionPrototype)
    TOLEN_COLLECT(VariableDeclaration)
    TOLEN_COLLECT(UserType)
    TOLEN_COLLECT(Type)
#undef TOLEN_COLLECT
#define TOLEN_COLLECT(Node, Family)                                                                \
    bool Visit(const Node* node, TParentSyntaxConst<Family>* slot) override {                      \
        nodes.insert(node);                                                                        \
        return Visitor::Visit(node, slot);                                                         \
    }
    TOLEN_COLLECT(JumpStatement, Statement)
    TOLEN_COLLECT(ForStatement, Statement)
    TOLEN_COLLECT(DoWhileStatement, Statement)
    TOLEN_COLLECT(WhileStatement, Statement)
    TOLEN_COLLECT(SelectionStatement, Statement)
    TOLEN_COLLECT(CompoundStatement, Statement)
    TOLEN_COLLECT(ExpressionStatement, Statement)
    TOLEN_COLLECT(DeclarationStatement, Statement)
    TOLEN_COLLECT(EmptyStatement, Statement)
    TOLEN_COLLECT(Condition, Expression)
    TOLEN_COLLECT(FunctionCall, Expression)
    TOLEN_COLLECT(Subscript, Expression)
    TOLEN_COLLECT(FunctionSelection, Expression)
    TOLEN_COLLECT(FieldSelection, Expression)
    TOLEN_COLLECT(Variable, Expression)
    TOLEN_COLLECT(Conditional, Expression)
    TOLEN_COLLECT(BinaryOperator, Expression)
    TOLEN_COLLECT(PostOperator, Expression)
    TOLEN_COLLECT(UnaryOperator, Expression)
    TOLEN_COLLECT(FloatConstant, Expression)
    TOLEN_COLLECT(IntConstant, Expression)
    TOLEN_COLLECT(BoolConstant, Expression)
    TOLEN_COLLECT(Assignment, Expression)
#undef TOLEN_COLLECT

    std::set<const Syntax*> nodes;
};

std::set<const Syntax*> NodesOf(const Module* module) {
    Collector collector;
    EXPECT_TRUE(module->AcceptVisitor(&collector));
    for (const StructDefinition* structure : module->GetStructDefinitions()) {
        EXPECT_TRUE(structure->AcceptVisitor(&collector));
    }
    return collector.nodes;
}

TEST(SyntaxCloneTest, ModuleClone_EqualsItsSourceAndSharesNoNode) {
    TreeBuilder source;
    BuildEverything(source);
    TreeBuilder target;
    EXPECT_EQ(source->Clone(target.Get()), target.Get());

    const std::set<const Syntax*> sourceNodes = NodesOf(source.Get());
    const std::set<const Syntax*> targetNodes = NodesOf(target.Get());
    EXPECT_EQ(sourceNodes.size(), targetNodes.size());
    for (const Syntax* node : targetNodes) {
        EXPECT_EQ(sourceNodes.count(node), 0u);
    }
    EXPECT_TRUE(target->GetVariableDeclarations()[0]->Equals(source->GetVariableDeclarations()[0]));
    EXPECT_TRUE(target->GetFunctionDeclarations()[0]->Equals(source->GetFunctionDeclarations()[0]));
    EXPECT_TRUE(target->GetFunctionDefinitions()[0]->Equals(source->GetFunctionDefinitions()[0]));
    EXPECT_TRUE(target->GetStructDefinitions()[0]->Equals(source->GetStructDefinitions()[0]));
    EXPECT_TRUE(target->GetInterfaceDefinitions()[0]->Equals(source->GetInterfaceDefinitions()[0]));
    EXPECT_EQ(target->GetRange(), source->GetRange());
    EXPECT_EQ(target->GetCountStatements(), 0u);
    EXPECT_EQ(target->GetCountExpressions(), 0u);
    EXPECT_TRUE(target->ErrorMessages().empty());
    EXPECT_TRUE(target->WarningMessages().empty());
}

TEST(SyntaxCloneTest, ClassClone_HasAllItsParts) {
    TreeBuilder source;
    BuildEverything(source);
    TreeBuilder target;
    source->Clone(target.Get());
    source.Reset();
    const ClassDefinition* shader = target->GetClassDefinition("C");
    ASSERT_NE(shader, nullptr);
    EXPECT_EQ(shader->GetInterface()->GetString(), "I");
    EXPECT_EQ(shader->GetMemberVariables()[0]->GetType()->GetClass(), kClass_UserType);
    EXPECT_EQ(shader->GetMemberFunctions()[0]->GetModule(), target.Get());
    EXPECT_EQ(shader->GetCoords().at("P")->GetType()->GetTypeSpecifier(), kType_Vec3);
    EXPECT_EQ(shader->GetOutputs().begin()->first->GetString(), "o_color");
    EXPECT_EQ(shader->GetOutputs().begin()->second->GetTypeSpecifier(), kType_Vec4);
}

TEST(SyntaxCloneTest, Clones_MayDieBeforeTheirSourcesAndAfter) {
    auto first = std::make_unique<TreeBuilder>();
    BuildEverything(*first);
    auto second = std::make_unique<TreeBuilder>();
    first->Get()->Clone(second->Get());
    TreeBuilder third;
    second->Get()->Clone(third.Get());
    second.reset();
    EXPECT_TRUE(
        third->GetFunctionDefinitions()[0]->Equals(first->Get()->GetFunctionDefinitions()[0]));
    first.reset();
    EXPECT_EQ(third->GetFunctionDefinition("f")->GetFunctionPrototype()->GetCountParameters(), 1u);
}

TEST(SyntaxCloneTest, Ranges_AreCopiedButForCallsAndConditions) {
    TreeBuilder t;
    TreeBuilder target;
    const LocationRange range = Lines(&kFile, 3, 4);
    const auto rangeOfClone = [&](auto* node) {
        const std::unique_ptr<std::remove_pointer_t<decltype(node)>> owner(node);
        node->SetRange(range);
        const std::unique_ptr<Syntax> clone(node->Clone(target.Get()));
        EXPECT_EQ(clone->GetClass(), node->GetClass());
        return clone->GetRange();
    };
    EXPECT_EQ(rangeOfClone(t.Var("a")), range);
    EXPECT_EQ(rangeOfClone(t.Sum(2)), range);
    EXPECT_EQ(rangeOfClone(t.Block({t->CreateEmptyStatement()})), range);
    EXPECT_EQ(rangeOfClone(t.If(t.Var("a"), t->CreateEmptyStatement())), range);
    EXPECT_EQ(rangeOfClone(t->CreateUserType(t.Name("T"))), range);
    EXPECT_EQ(rangeOfClone(t.Parameter(kType_Int, "p")), range);
    EXPECT_EQ(rangeOfClone(t.Prototype(kType_Int, "f")), range);
    EXPECT_EQ(rangeOfClone(t.Call("f", {t.Var("a")})), LocationRange());
    EXPECT_EQ(target->GetRange(), LocationRange());
    EXPECT_EQ(rangeOfClone(t->CreateCondition(t.Var("a"))), LocationRange());
    EXPECT_EQ(target->GetRange(), LocationRange());
    EXPECT_EQ(rangeOfClone(t->CreateCondition(
                  static_cast<Declaration*>(t.Declare(kType_Int, "i", t.Int(1))))),
              LocationRange());
    EXPECT_EQ(target->GetRange(), range);
}

TEST(SyntaxCloneTest, Optimizations_AreNotCopied) {
    TreeBuilder t;
    const std::unique_ptr<FunctionCall> call(t.Call("f"));
    call->SetOptimization(OptimizationEmpty);
    const std::unique_ptr<FunctionDefinition> function(t.Function(t.Prototype(kType_Void, "f")));
    function->SetOptimization(OptimizationNeverCalled);
    function->GetFunctionPrototype()->SetOptimization(OptimizationEmpty);
    const std::unique_ptr<FunctionCall> callClone(call->Clone(t.Get()));
    const std::unique_ptr<FunctionDefinition> functionClone(function->Clone(t.Get()));
    EXPECT_EQ(callClone->GetOptimization(), OptimizationNone);
    EXPECT_EQ(functionClone->GetOptimization(), OptimizationNone);
    EXPECT_EQ(functionClone->GetFunctionPrototype()->GetOptimization(), OptimizationNone);
}

TEST(SyntaxCloneTest, Length_IsCopiedForArraysOnly) {
    TreeBuilder t;
    const std::unique_ptr<Type> type(t->CreateType(kType_Float));
    type->SetLength(t.Int(3));
    const std::unique_ptr<Type> plain(type->Clone(t.Get()));
    EXPECT_EQ(plain->GetLength(), nullptr);
    type->SetArray(true);
    const std::unique_ptr<Type> array(type->Clone(t.Get()));
    EXPECT_TRUE(array->IsArray());
    EXPECT_TRUE(array->GetLength()->Equals(type->GetLength()));
}

TEST(SyntaxCloneTest, FloatConstant_KeepsAValueThatItsSpellingDoesNotTell) {
    TreeBuilder t;
    const std::unique_ptr<FloatConstant> source(t->CreateFloatConstant(t.Name("1.0"), 2.0));
    const std::unique_ptr<FloatConstant> clone(source->Clone(t.Get()));
    EXPECT_EQ(clone->GetValue(), 2.0);
    EXPECT_EQ(clone->GetString()->GetString(), "1.0");
    EXPECT_NE(clone->GetString(), source->GetString());
}

TEST(SyntaxCloneTest, UnnamedParameter_StaysUnnamed) {
    TreeBuilder t;
    const std::unique_ptr<FunctionParameter> source(
        t->CreateFunctionParameter(t->CreateType(kType_Int)));
    const std::unique_ptr<FunctionParameter> clone(source->Clone(t.Get()));
    EXPECT_EQ(clone->GetName(), nullptr);
    EXPECT_TRUE(clone->Equals(source.get()));
}

TEST(SyntaxCloneTest, ModuleClone_IntoAModuleWithTheSameInterface_TakesOverTheLookup) {
    TreeBuilder source;
    source->AddInterfaceDefinition(source.Interface("I"));
    TreeBuilder target;
    target->AddInterfaceDefinition(target.Interface("I"));
    source->Clone(target.Get());
    ASSERT_EQ(target->GetCountInterfaceDefinitions(), 2u);
    EXPECT_EQ(target->GetInterfaceDefinition("I"), target->GetInterfaceDefinitions()[1]);
}

TEST(SyntaxCloneTest, ChainsOfAnyLength_AreCopiedAndComparedOnASmallStack) {
    OnSmallStack([] {
        constexpr int kLength = 200000;
        TreeBuilder t;
        const std::unique_ptr<Expression> sum(t.Sum(kLength));
        const std::unique_ptr<Expression> sumClone(sum->Clone(t.Get()));
        EXPECT_TRUE(sum->Equals(sumClone.get()));
        const std::unique_ptr<Statement> chain(t.ElseIfs(kLength / 4));
        const std::unique_ptr<Statement> chainClone(chain->Clone(t.Get()));
        EXPECT_TRUE(chain->Equals(chainClone.get()));
    });
}

} // namespace

} // namespace Tolen::Effects::Tests
