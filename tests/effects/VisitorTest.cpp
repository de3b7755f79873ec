#include "SmallStack.h"
#include "TreeBuilder.h"

#include "TolenEffects/Visitor.h"
#include "TolenEffects/VisitorDelegate.h"

#include "support/CapturedConsole.h"

#include <functional>
#include <vector>

namespace Tolen::Effects::Tests {

namespace {

using ExpressionSlot = TIParentSyntax<Expression>;
using StatementSlot = TIParentSyntax<Statement>;

/// Tells the names of variables, types and functions in the order in which both walks meet them,
/// and does what a test asks at a variable.
class NameVisitor : public Visitor {
public:
    explicit NameVisitor(ChainWalk chainWalk = kChainWalk_EachNode) : Visitor(chainWalk) {}

    using Visitor::Visit;
    bool Visit(const Variable* node, TParentSyntaxConst<Expression>* slot) override {
        parents.push_back(slot->GetParent());
        return Note(node->GetIdentifier());
    }
    bool Visit(Variable* node, ExpressionSlot* slot) override {
        if (!Note(node->GetIdentifier())) {
            return false;
        }
        return !atVariable || atVariable(node, slot);
    }
    bool Visit(const Type* node) override {
        names += TypeSpecifierToString(node->GetTypeSpecifier()) + std::string(" ");
        return true;
    }
    bool Visit(Type* node) override { return Visit(static_cast<const Type*>(node)); }
    bool Visit(const FunctionPrototype* node) override {
        return Note(node->GetName()) && Visitor::Visit(node);
    }
    bool Visit(FunctionPrototype* node) override {
        return Note(node->GetName()) && Visitor::Visit(node);
    }

    std::string names;
    std::string stopAt;
    std::vector<const Syntax*> parents;
    std::function<bool(Variable*, ExpressionSlot*)> atVariable;

private:
    bool Note(const String* name) {
        names += name->GetString() + " ";
        return name->GetString() != stopAt;
    }
};

/// The names that the mutating and the const walk meet below @p node, which must be the same.
template <class Node, class Slot>
std::string NamesBelow(Node* node, Slot* slot) {
    NameVisitor mutating;
    EXPECT_TRUE(node->AcceptVisitor(&mutating, slot));
    NameVisitor reading;
    TParentSyntaxConst<
        std::conditional_t<std::is_base_of_v<Expression, Node>, Expression, Statement>>
        constSlot(nullptr);
    EXPECT_TRUE(static_cast<const Node*>(node)->AcceptVisitor(&reading, &constSlot));
    EXPECT_EQ(reading.names, mutating.names);
    return mutating.names;
}

std::string NamesOf(Expression* node) {
    const std::unique_ptr<Expression> owner(node);
    return NamesBelow(node, static_cast<ExpressionSlot*>(nullptr));
}

std::string NamesOf(Statement* node) {
    const std::unique_ptr<Statement> owner(node);
    return NamesBelow(node, static_cast<StatementSlot*>(nullptr));
}

TEST(VisitorTest, DefaultWalk_OfExpressions_VisitsTheChildrenInOrder) {
    TreeBuilder t;
    EXPECT_EQ(NamesOf(t.Assign(t.Var("a"), t.Var("b"))), "a b ");
    EXPECT_EQ(NamesOf(t.Binary(t.Var("a"), kOperator_Add, t.Var("b"))), "a b ");
    EXPECT_EQ(NamesOf(t.Unary(kOperator_Subtract, t.Var("a"))), "a ");
    EXPECT_EQ(NamesOf(t->CreatePostOperator(kOperator_Increment, t.Var("a"))), "a ");
    EXPECT_EQ(NamesOf(t.Choice(t.Var("a"), t.Var("b"), t.Var("c"))), "a b c ");
    EXPECT_EQ(NamesOf(t.Field(t.Var("a"), "x")), "a ");
    EXPECT_EQ(NamesOf(t->CreateSubscript(t.Var("a"), t.Var("b"))), "a b ");
    EXPECT_EQ(NamesOf(t->CreateFunctionSelection(t.Var("a"), t.Call("f", {t.Var("b")}))), "a b ");
    EXPECT_EQ(NamesOf(t.Call("f", {t.Var("a"), t.Var("b")})), "a b ");
    EXPECT_EQ(NamesOf(t.Construct(kType_Vec2, {t.Var("a")})), "a ");
    EXPECT_EQ(NamesOf(t->CreateCondition(t.Var("a"))), "a ");
    EXPECT_EQ(NamesOf(t->CreateCondition(
                  static_cast<Declaration*>(t.Declare(kType_Int, "i", t.Var("a"))))),
              "int a ");
    EXPECT_EQ(NamesOf(static_cast<Expression*>(t.Int(1))), "");
}

TEST(VisitorTest, DefaultWalk_OfStatements_VisitsTheChildrenInOrder) {
    TreeBuilder t;
    const auto condition = [&](const char* name) { return t->CreateCondition(t.Var(name)); };
    EXPECT_EQ(NamesOf(t->CreateJumpStatement(kJumpType_Return, t.Var("a"))), "a ");
    EXPECT_EQ(NamesOf(t->CreateJumpStatement(kJumpType_Return, nullptr)), "");
    EXPECT_EQ(NamesOf(t->CreateJumpStatement(kJumpType_Break, t.Var("a"))), "");
    EXPECT_EQ(NamesOf(t.For(t.Do(t.Var("a")), condition("b"), t.Var("c"), t.Do(t.Var("d")))),
              "a b c d ");
    EXPECT_EQ(NamesOf(t.For(t->CreateEmptyStatement(), nullptr, nullptr, t.Do(t.Var("d")))), "d ");
    EXPECT_EQ(NamesOf(t->CreateWhileStatement(condition("a"), t.Do(t.Var("b")))), "a b ");
    EXPECT_EQ(NamesOf(t->CreateDoWhileStatement(t.Do(t.Var("a")), t.Var("b"))), "a b ");
    EXPECT_EQ(NamesOf(t.If(t.Var("a"), t.Do(t.Var("b")), t.Do(t.Var("c")))), "a b c ");
    EXPECT_EQ(NamesOf(t.If(t.Var("a"), t.Do(t.Var("b")))), "a b ");
    EXPECT_EQ(NamesOf(t.Block({t.Do(t.Var("a")), t.Do(t.Var("b"))})), "a b ");
    EXPECT_EQ(NamesOf(t->CreateDeclarationStatement(t.Declare(kType_Bool, "x", t.Var("a")))),
              "bool a ");
    EXPECT_EQ(NamesOf(static_cast<Statement*>(t->CreateEmptyStatement())), "");
}

std::string NamesOf(Module* module) {
    NameVisitor mutating;
    EXPECT_TRUE(module->AcceptVisitor(&mutating));
    NameVisitor reading;
    EXPECT_TRUE(static_cast<const Module*>(module)->AcceptVisitor(&reading));
    EXPECT_EQ(reading.names, mutating.names);
    return mutating.names;
}

TEST(VisitorTest, DefaultWalk_OfAModule_GoesThroughItsListsAndInterfacesByName) {
    TreeBuilder t;
    for (const char* name : {"b", "a"}) {
        InterfaceDefinition* definition = t.Interface(name);
        definition->AddMemberFunction(t.Prototype(kType_Void, std::string("i") + name));
        t->AddInterfaceDefinition(definition);
    }
    ClassDefinition* shader = t.MakeClass("C");
    shader->AddMemberVariable(t.Declare(kType_Int, "m", t.Var("member")));
    shader->AddMemberFunction(t.Function(t.Prototype(kType_Float, "method")));
    t->AddClassDefinition(shader);
    StructDefinition* structure = t->CreateStructDefinition();
    structure->AddMemberVariable(t.Declare(kType_Mat4, "s"));
    t->AddStructDefinition(structure);
    t->AddFunctionDefinition(t.Function(
        t.Prototype(kType_Vec2, "function", {t.Parameter(kType_Vec3, "p")}), {t.Do(t.Var("x"))}));
    t->AddFunctionDeclaration(t.Prototype(kType_Vec4, "prototype"));
    t->AddVariableDeclaration(t->CreateDeclarationStatement(t.Declare(kType_Bool, "v")));
    t->AddStatement(t.Do(t.Var("statement")));
    t->AddExpression(t.Var("expression"));
    EXPECT_EQ(NamesOf(t.Get()), "bool prototype vec4 function vec2 vec3 x method float int member "
                                "ia void ib void ");
    NameVisitor visitor;
    EXPECT_TRUE(structure->AcceptVisitor(&visitor));
    EXPECT_EQ(visitor.names, "mat4 ");
}

TEST(VisitorTest, DefaultWalk_OfAClassWithCoordsAndOutputsOnly_VisitsNothing) {
    TreeBuilder t;
    ClassDefinition* shader = t.MakeClass("C");
    EXPECT_TRUE(shader->AddCoord(t.Declare(kType_Vec3, "P")));
    EXPECT_TRUE(shader->AddOutput(t->CreateType(kType_Vec4), t.Name("o")));
    t->AddClassDefinition(shader);
    EXPECT_EQ(NamesOf(t.Get()), "");
}

TEST(VisitorTest, DefaultWalk_StopsAtTheFirstFalse) {
    TreeBuilder t;
    const std::unique_ptr<Statement> statement(
        t.Block({t.Do(t.Call("f", {t.Var("a"), t.Var("b")})), t.Do(t.Var("c"))}));
    NameVisitor visitor;
    visitor.stopAt = "a";
    EXPECT_FALSE(statement->AcceptVisitor(&visitor, static_cast<StatementSlot*>(nullptr)));
    EXPECT_EQ(visitor.names, "a ");
}

TEST(VisitorTest, ConstWalk_TellsTheParent) {
    TreeBuilder t;
    const std::unique_ptr<const BinaryOperator> sum(
        t.Binary(t.Var("a"), kOperator_Add, t.Unary(kOperator_Add, t.Var("b"))));
    NameVisitor visitor;
    TParentSyntaxConst<Expression> slot(nullptr);
    EXPECT_TRUE(sum->AcceptVisitor(&visitor, &slot));
    EXPECT_EQ(visitor.parents, (std::vector<const Syntax*>{sum.get(), sum->GetRight()}));
}

TEST(VisitorTest, MutatingWalk_LinksTheSlotsUpwards) {
    TreeBuilder t;
    ExpressionStatement* inner =
        t.Do(t.Assign(t.Var("x"), t->CreateSubscript(t.Var("y"), t.Var("a"))));
    const std::unique_ptr<SelectionStatement> top(t.If(t.Var("c"), inner));
    std::vector<Class> parents;
    std::vector<Class> kinds;
    NameVisitor visitor;
    visitor.atVariable = [&](Variable* node, ExpressionSlot* slot) {
        if (node->GetIdentifier()->GetString() == "a") {
            for (IParentSyntax* up = slot; up != nullptr; up = up->GetParentSlot()) {
                parents.push_back(up->GetParent()->GetClass());
                kinds.push_back(up->GetClass());
            }
        }
        return true;
    };
    EXPECT_TRUE(top->AcceptVisitor(&visitor, static_cast<StatementSlot*>(nullptr)));
    EXPECT_EQ(parents, (std::vector<Class>{kClass_Subscript, kClass_Assignment,
                                           kClass_ExpressionStatement, kClass_SelectionStatement}));
    EXPECT_EQ(kinds, (std::vector<Class>{kClass_Expression, kClass_Expression, kClass_Expression,
                                         kClass_Statement}));
}

TEST(VisitorTest, ReplacedChild_StandsInPlaceAndIsVisitedOnce) {
    TreeBuilder t;
    const std::unique_ptr<Assignment> top(
        t.Assign(t.Var("x"), t.Binary(t.Var("a"), kOperator_Add, t.Var("b"))));
    class Replacer : public Visitor {
    public:
        using Visitor::Visit;
        bool Visit(BinaryOperator* node, ExpressionSlot* slot) override {
            _slot = slot;
            return slot->SetReplacement(
                node->GetModule()->CreateVariable(node->GetModule()->CreateString("new")));
        }
        bool Visit(Variable* node, ExpressionSlot* slot) override {
            if (node->GetIdentifier()->GetString() == "new") {
                EXPECT_EQ(slot, _slot);
                EXPECT_FALSE(slot->HasReplacement());
                EXPECT_EQ(slot->GetReplacement(), node);
                ++count;
            }
            return true;
        }
        int count = 0;

    private:
        ExpressionSlot* _slot = nullptr;
    } replacer;
    EXPECT_TRUE(top->AcceptVisitor(&replacer, static_cast<ExpressionSlot*>(nullptr)));
    EXPECT_EQ(replacer.count, 1);
    ASSERT_EQ(top->GetRight()->GetClass(), kClass_Variable);
}

TEST(VisitorTest, Replacements_MayFollowEachOther) {
    TreeBuilder t;
    const std::unique_ptr<UnaryOperator> top(t.Unary(kOperator_Subtract, t.Var("a")));
    NameVisitor visitor;
    visitor.atVariable = [&](Variable* node, ExpressionSlot* slot) {
        const std::string& name = node->GetIdentifier()->GetString();
        return name.size() > 3 || slot->SetReplacement(t.Var(name + "a"));
    };
    EXPECT_TRUE(top->AcceptVisitor(&visitor, static_cast<ExpressionSlot*>(nullptr)));
    EXPECT_EQ(visitor.names, "a aa aaa aaaa ");
    EXPECT_EQ(static_cast<Variable*>(top->GetExpression())->GetIdentifier()->GetString(), "aaaa");
}

TEST(VisitorTest, SetReplacement_WhileOneIsPending_FailsAndKeepsTheFirst) {
    TreeBuilder t;
    Tolen::Tests::CapturedConsole console;
    const std::unique_ptr<UnaryOperator> top(t.Unary(kOperator_Subtract, t.Var("a")));
    NameVisitor visitor;
    visitor.atVariable = [&](Variable* node, ExpressionSlot* slot) {
        if (node->GetIdentifier()->GetString() != "a") {
            return true;
        }
        EXPECT_TRUE(slot->SetReplacement(t.Var("first")));
        const std::unique_ptr<Variable> second(t.Var("second"));
        EXPECT_FALSE(slot->SetReplacement(second.get()));
        return true;
    };
    EXPECT_TRUE(top->AcceptVisitor(&visitor, static_cast<ExpressionSlot*>(nullptr)));
    EXPECT_EQ(visitor.names, "a first ");
    EXPECT_EQ(console.GetGeneral(), "TParentSyntaxDelegate::SetReplacement Not Replaced\n");
}

TEST(VisitorTest, ClearReplacement_LeavesTheNodeToItsMaker) {
    TreeBuilder t;
    const std::unique_ptr<UnaryOperator> top(t.Unary(kOperator_Subtract, t.Var("a")));
    NameVisitor visitor;
    visitor.atVariable = [&](Variable*, ExpressionSlot* slot) {
        const std::unique_ptr<Variable> node(t.Var("b"));
        EXPECT_TRUE(slot->SetReplacement(node.get()));
        EXPECT_TRUE(slot->ClearReplacement());
        EXPECT_FALSE(slot->HasReplacement());
        EXPECT_TRUE(slot->ApplyReplacement());
        return true;
    };
    EXPECT_TRUE(top->AcceptVisitor(&visitor, static_cast<ExpressionSlot*>(nullptr)));
    EXPECT_EQ(visitor.names, "a ");
}

TEST(VisitorTest, ReplacedElements_KeepTheirIndex) {
    TreeBuilder t;
    class Replacer : public NameVisitor {
    public:
        using NameVisitor::Visit;
        bool Visit(JumpStatement* node, StatementSlot* slot) override {
            EXPECT_EQ(slot->GetParent(), nullptr);
            EXPECT_EQ(slot->GetParentSlot(), nullptr);
            return slot->SetReplacement(node->GetModule()->CreateEmptyStatement());
        }
    } replacer;
    const std::unique_ptr<CompoundStatement> block(
        t.Block({t.Do(t.Var("a")), t->CreateJumpStatement(kJumpType_Break, nullptr),
                 t.Do(t.Call("f", {t.Var("b"), t.Var("c")}))}));
    replacer.atVariable = [&](Variable* node, ExpressionSlot* slot) {
        return node->GetIdentifier()->GetString() != "b" || slot->SetReplacement(t.Int(7));
    };
    EXPECT_TRUE(block->AcceptVisitor(&replacer, static_cast<StatementSlot*>(nullptr)));
    EXPECT_EQ(block->GetStatements()[1]->GetClass(), kClass_EmptyStatement);
    EXPECT_EQ(replacer.names, "a b c ");
    const auto* call = static_cast<FunctionCall*>(
        static_cast<ExpressionStatement*>(block->GetStatements()[2])->GetExpression());
    EXPECT_EQ(call->GetParameters()[0]->GetClass(), kClass_IntConstant);
    EXPECT_EQ(call->GetParameters()[1]->GetClass(), kClass_Variable);
}

TEST(VisitorTest, NarrowerChildren_AreReplacedByTheirKind) {
    TreeBuilder t;
    class Replacer : public Visitor {
    public:
        using Visitor::Visit;
        bool Visit(Condition* node, ExpressionSlot* slot) override {
            Module* module = node->GetModule();
            return node->GetExpression()->GetClass() == kClass_BoolConstant ||
                   slot->SetReplacement(module->CreateCondition(module->CreateBoolConstant(true)));
        }
        bool Visit(FunctionCall* node, ExpressionSlot* slot) override {
            Module* module = node->GetModule();
            return node->GetName()->GetString() == "g" ||
                   slot->SetReplacement(module->CreateFunctionCall(module->CreateString("g")));
        }
    } replacer;
    const auto condition = [&] { return t->CreateCondition(t.Var("a")); };
    WhileStatement* loop = t->CreateWhileStatement(condition(), t->CreateEmptyStatement());
    ForStatement* counted =
        t.For(t->CreateEmptyStatement(), condition(), nullptr, t->CreateEmptyStatement());
    FunctionSelection* call = t->CreateFunctionSelection(t.Var("o"), t.Call("f"));
    const std::unique_ptr<CompoundStatement> block(t.Block({loop, counted, t.Do(call)}));
    EXPECT_TRUE(block->AcceptVisitor(&replacer, static_cast<StatementSlot*>(nullptr)));
    EXPECT_EQ(loop->GetCondition()->GetExpression()->GetClass(), kClass_BoolConstant);
    EXPECT_EQ(counted->GetCondition()->GetExpression()->GetClass(), kClass_BoolConstant);
    EXPECT_EQ(call->GetFunction()->GetName()->GetString(), "g");
}

TEST(VisitorTest, NullSlot_IsOneForAllAndTakesNoNotice) {
    TreeBuilder t;
    auto* slot = TParentSyntaxNull<Statement>::GetInstance();
    EXPECT_EQ(slot, TParentSyntaxNull<Statement>::GetInstance());
    const std::unique_ptr<Statement> node(t->CreateEmptyStatement());
    EXPECT_TRUE(slot->SetReplacement(node.get()));
    EXPECT_FALSE(slot->HasReplacement());
    EXPECT_EQ(slot->GetReplacement(), nullptr);
    EXPECT_TRUE(slot->ClearReplacement());
    EXPECT_TRUE(slot->ApplyReplacement());
    EXPECT_EQ(slot->GetParent(), nullptr);
    EXPECT_EQ(slot->GetParentSlot(), nullptr);
    EXPECT_EQ(slot->GetClass(), kClass_Statement);
    EXPECT_EQ(TParentSyntaxNull<Expression>::GetInstance()->GetClass(), kClass_Expression);
}

/// Counts calls and answers false for one of them.
struct CallLog {
    bool OnCall(FunctionCall* node, ExpressionSlot*) { return Note(node); }
    bool OnCallWith(FunctionCall* node, ExpressionSlot*, const char* extra) {
        names += extra;
        return Note(node);
    }
    bool OnVariable(const Variable* node, TParentSyntaxConst<Expression>*) {
        names += node->GetIdentifier()->GetString() + " ";
        return true;
    }
    bool Note(FunctionCall* node) {
        names += node->GetName()->GetString() + " ";
        return node->GetName()->GetString() != failAt;
    }

    std::string names;
    std::string failAt;
};

TEST(VisitorTest, DelegateVisitors_CallChildrenFirstAndLoseAnInnerFalse) {
    TreeBuilder t;
    CallLog log;
    log.failAt = "inner";
    TVisitorSyntaxDelegate<FunctionCall, ExpressionSlot> visitor(
        MakeDelegate(&log, &CallLog::OnCall));
    const std::unique_ptr<CompoundStatement> block(t.Block(
        {t.Do(t.Call("outer", {t.Call("inner"), t.Call("unseen")})), t.Do(t.Call("last"))}));
    EXPECT_TRUE(block->AcceptVisitor(&visitor, static_cast<StatementSlot*>(nullptr)));
    EXPECT_EQ(log.names, "inner outer last ");
    log = CallLog{"", "outer"};
    EXPECT_FALSE(block->AcceptVisitor(&visitor, static_cast<StatementSlot*>(nullptr)));
    EXPECT_EQ(log.names, "inner unseen outer ");
}

TEST(VisitorTest, DelegateVisitors_PassTheirExtraValue) {
    TreeBuilder t;
    CallLog log;
    TVisitorSyntaxDelegate1<FunctionCall, ExpressionSlot, const char*> visitor(
        MakeDelegate(&log, &CallLog::OnCallWith), "!");
    const std::unique_ptr<Statement> statement(t.Do(t.Call("f")));
    EXPECT_TRUE(statement->AcceptVisitor(&visitor, static_cast<StatementSlot*>(nullptr)));
    EXPECT_EQ(log.names, "!f ");
}

TEST(VisitorTest, ConstDelegateVisitors_Read) {
    TreeBuilder t;
    CallLog log;
    TVisitorSyntaxConstDelegate<Variable, TParentSyntaxConst<Expression>> visitor(
        MakeDelegate(&log, &CallLog::OnVariable));
    const std::unique_ptr<const Expression> sum(t.Sum(2));
    TParentSyntaxConst<Expression> slot(nullptr);
    EXPECT_TRUE(sum->AcceptVisitor(&visitor, &slot));
    EXPECT_EQ(log.names, "a a a ");
}

TEST(VisitorTest, LongChains_AreWalkedAsShortOnesAre) {
    TreeBuilder t;
    for (const int length : {1, 31, 32, 33, 34, 100}) {
        const std::unique_ptr<Statement> statement(
            t.Block({t.Do(t.Sum(length)), t.ElseIfs(length)}));
        NameVisitor each;
        EXPECT_TRUE(statement->AcceptVisitor(&each, static_cast<StatementSlot*>(nullptr)));
        NameVisitor iterated(Visitor::kChainWalk_Iterated);
        std::vector<std::size_t> depths;
        iterated.atVariable = [&](Variable*, ExpressionSlot* slot) {
            std::size_t depth = 0;
            for (IParentSyntax* up = slot; up != nullptr; up = up->GetParentSlot()) {
                ++depth;
            }
            depths.push_back(depth);
            return true;
        };
        EXPECT_TRUE(statement->AcceptVisitor(&iterated, static_cast<StatementSlot*>(nullptr)));
        EXPECT_EQ(iterated.names, each.names) << length;
        // The last left operand hangs below all operators, the last right one below the first.
        const auto chainLength = static_cast<std::size_t>(length);
        EXPECT_EQ(depths.front(), chainLength + 2) << length;
        EXPECT_EQ(depths[chainLength], 3u) << length;
        NameVisitor reading(Visitor::kChainWalk_Iterated);
        TParentSyntaxConst<Statement> slot(nullptr);
        EXPECT_TRUE(static_cast<const Statement*>(statement.get())->AcceptVisitor(&reading, &slot));
        EXPECT_EQ(reading.names, each.names) << length;
    }
}

TEST(VisitorTest, Replacements_WorkInLongChains) {
    TreeBuilder t;
    const std::unique_ptr<ExpressionStatement> statement(t.Do(t.Sum(100)));
    int visits = 0;
    NameVisitor visitor(Visitor::kChainWalk_Iterated);
    visitor.atVariable = [&](Variable*, ExpressionSlot* slot) {
        if (++visits == 3) {
            // Ask for the operator above to go: its two operands are a and a so far.
            auto* above = static_cast<ExpressionSlot*>(slot->GetParentSlot());
            EXPECT_EQ(above->GetClass(), kClass_Expression);
            return above->SetReplacement(t.Int(5));
        }
        return true;
    };
    EXPECT_TRUE(statement->AcceptVisitor(&visitor, static_cast<StatementSlot*>(nullptr)));
    EXPECT_EQ(visits, 101);
    Expression* left = statement->GetExpression();
    int operators = 0;
    while (left->GetClass() == kClass_BinaryOperator) {
        left = static_cast<BinaryOperator*>(left)->GetLeft();
        ++operators;
    }
    EXPECT_EQ(left->GetClass(), kClass_IntConstant);
    EXPECT_EQ(operators, 98);
}

TEST(VisitorTest, FalseInALongChain_StopsTheWalk) {
    TreeBuilder t;
    const std::unique_ptr<Statement> statement(t.Block({t.Do(t.Sum(100)), t.ElseIfs(100)}));
    for (const int stop : {1, 2, 50, 101, 102, 150, 301}) {
        int visits = 0;
        NameVisitor visitor(Visitor::kChainWalk_Iterated);
        visitor.atVariable = [&](Variable*, ExpressionSlot*) { return ++visits < stop; };
        EXPECT_FALSE(statement->AcceptVisitor(&visitor, static_cast<StatementSlot*>(nullptr)));
        EXPECT_EQ(visits, stop);
    }
}

TEST(VisitorTest, ChainsOfAnyLength_AreWalkedOnASmallStack) {
    OnSmallStack([] {
        constexpr int kLength = 200000;
        TreeBuilder t;
        t->AddFunctionDefinition(t.Function(t.Prototype(kType_Void, "f"),
                                            {t.Do(t.Sum(kLength)), t.ElseIfs(kLength / 10)}));
        CallLog log;
        TVisitorSyntaxDelegate<FunctionCall, ExpressionSlot> visitor(
            MakeDelegate(&log, &CallLog::OnCall));
        EXPECT_TRUE(t->AcceptVisitor(&visitor));
        EXPECT_TRUE(static_cast<const Module*>(t.Get())->AcceptVisitor(&visitor));
    });
}

} // namespace

} // namespace Tolen::Effects::Tests
