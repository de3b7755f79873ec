#include "KslParser.h"
#include "SmallStack.h"
#include "TreeBuilder.h"

#include "TolenEffects/Limits.h"
#include "TolenEffects/Visitor.h"
#include "TolenEffects/VisitorPrintKsl.h"

#include <functional>
#include <random>

/// Properties that hold for all trees: what is printed is read as the same tree, and a copy is
/// equal and prints the same.

namespace Tolen::Effects::Tests {

namespace {

/// Makes random trees of what the parser can make.
class RandomTree {
public:
    RandomTree(TreeBuilder& builder, unsigned seed) : t(builder), _random(seed) {}

    Expression* MakeExpression(int depth) {
        if (depth == 0) {
            return MakeLeaf();
        }
        const auto next = [&] { return MakeExpression(depth - 1); };
        switch (Pick(10)) {
        case 0:
        case 1:
        case 2: {
            Expression* left = next();
            return t.Binary(left, PickOperator({0, 1,  2,  3,  4,  5,  5,  6,  6,  7,  8,
                                                9, 10, 11, 16, 17, 18, 19, 20, 21, 22, 23}),
                            next());
        }
        case 3:
            return t.Unary(PickOperator({5, 6, 6, 12, 13, 13, 14, 15}), next());
        case 4:
            return t->CreatePostOperator(PickOperator({12, 13}), next());
        case 5: {
            Expression* condition = next();
            Expression* ifTrue = next();
            return t.Choice(condition, ifTrue, next());
        }
        case 6: {
            Expression* left = next();
            return t.Assign(left, next(), PickOperator({0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
        }
        case 7: {
            Expression* array = next();
            return t->CreateSubscript(array, next());
        }
        case 8:
            return t.Field(next(), "xy");
        default: {
            FunctionCall* call =
                Pick(2) == 0 ? t.Call("f") : t.Construct(static_cast<TypeSpecifier>(1 + Pick(15)));
            for (unsigned count = Pick(3); count > 0; --count) {
                call->AddParameter(next());
            }
            return call;
        }
        }
    }

    Statement* MakeStatement(int depth) {
        if (depth == 0) {
            return t.Do(MakeExpression(2));
        }
        switch (Pick(9)) {
        case 0:
            return t->CreateEmptyStatement();
        case 1:
            return t->CreateDeclarationStatement(
                t.Declare(kType_Vec3, "v", Pick(2) == 0 ? nullptr : MakeExpression(2)));
        case 2: {
            Condition* condition = MakeCondition();
            return t->CreateWhileStatement(condition, MakeStatement(depth - 1));
        }
        case 3: {
            Statement* body = MakeStatement(depth - 1);
            return t->CreateDoWhileStatement(body, MakeExpression(2));
        }
        case 4: {
            Statement* initialization = Pick(2) == 0
                                            ? static_cast<Statement*>(t->CreateEmptyStatement())
                                            : t.Do(MakeExpression(1));
            Condition* condition = Pick(2) == 0 ? nullptr : MakeCondition();
            Expression* iteration = Pick(2) == 0 ? nullptr : MakeExpression(1);
            return t.For(initialization, condition, iteration, MakeStatement(depth - 1));
        }
        case 5:
            return t->CreateJumpStatement(kJumpType_Return,
                                          Pick(2) == 0 ? nullptr : MakeExpression(2));
        case 6:
            return t->CreateJumpStatement(Pick(2) == 0 ? kJumpType_Break : kJumpType_Continue,
                                          nullptr);
        case 7: {
            // In a block, so that no `if` of the branch can take the `else`.
            Expression* condition = MakeExpression(2);
            Statement* then = t.Block({MakeStatement(depth - 1)});
            return t.If(condition, then, Pick(2) == 0 ? nullptr : MakeStatement(depth - 1));
        }
        default: {
            Statement* first = MakeStatement(depth - 1);
            return t.Block({first, MakeStatement(depth - 1)});
        }
        }
    }

private:
    unsigned Pick(unsigned count) { return static_cast<unsigned>(_random() % count); }
    Operator PickOperator(const std::vector<int>& operators) {
        return static_cast<Operator>(operators[Pick(static_cast<unsigned>(operators.size()))]);
    }
    Expression* MakeLeaf() {
        switch (Pick(5)) {
        case 0:
            return t.Int(Pick(100));
        case 1:
            return t.Float(std::vector<const char*>{"1.5f", "2f", ".5", "1.", "1e3"}[Pick(5)]);
        case 2:
            return t->CreateBoolConstant(Pick(2) == 0);
        default:
            return t.Var(std::vector<const char*>{"a", "b", "f1"}[Pick(3)]);
        }
    }
    Condition* MakeCondition() {
        if (Pick(3) == 0) {
            return t->CreateCondition(
                static_cast<Declaration*>(t.Declare(kType_Bool, "c", MakeExpression(1))));
        }
        return t->CreateCondition(MakeExpression(2));
    }

    TreeBuilder& t;
    std::mt19937 _random;
};

std::string Print(Module* module) {
    VisitorPrintKsl printer(nullptr, nullptr, false);
    EXPECT_TRUE(module->AcceptVisitor(&printer));
    return printer.GetText();
}

/// Reads @p text as a file of its own.
std::unique_ptr<Module> Parse(const std::string& text) {
    static const std::string file = "printed.kl";
    std::unique_ptr<Module> module(Module::Create(nullptr));
    std::vector<std::string> errors;
    EXPECT_TRUE(KslParser::Parse(module.get(), errors, file, text, 0))
        << (errors.empty() ? "" : errors[0]) << text;
    return module;
}

void ExpectReadsBack(TreeBuilder& t, Statement* statement, unsigned seed) {
    t->AddFunctionDefinition(t.Function(t.Prototype(kType_Void, "main"), {statement}));
    const std::string text = Print(t.Get());
    const std::unique_ptr<Module> parsed = Parse(text);
    ASSERT_EQ(parsed->GetCountFunctionDefinitions(), 1u) << seed;
    EXPECT_TRUE(parsed->GetFunctionDefinitions()[0]->Equals(t->GetFunctionDefinitions()[0]))
        << seed << text;
    EXPECT_EQ(Print(parsed.get()), text) << seed;

    TreeBuilder copy;
    parsed->Clone(copy.Get());
    EXPECT_TRUE(copy->GetFunctionDefinitions()[0]->Equals(parsed->GetFunctionDefinitions()[0]));
    EXPECT_EQ(Print(copy.Get()), text) << seed;
}

TEST(SyntaxPropertyTest, PrintedExpressions_AreReadAsTheSameTree) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        TreeBuilder t;
        RandomTree random(t, seed);
        ExpectReadsBack(t, t.Do(random.MakeExpression(1 + static_cast<int>(seed % 5))), seed);
    }
}

TEST(SyntaxPropertyTest, PrintedStatements_AreReadAsTheSameTree) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        TreeBuilder t;
        RandomTree random(t, seed);
        ExpectReadsBack(t, random.MakeStatement(1 + static_cast<int>(seed % 5)), seed);
    }
}

/// @p before, then @p inner, then @p after, @p depth times around each other.
std::string Nested(const std::string& before, const std::string& inner, const std::string& after,
                   int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) {
        text += before;
    }
    text += inner;
    for (int i = 0; i < depth; ++i) {
        text += after;
    }
    return text;
}

TEST(SyntaxPropertyTest, TreesAsDeepAsTheParserAllows_AreHandledOnASmallStack) {
    // A few levels go to the function and the statement around the nest.
    constexpr int kDepth = kLimitNesting - 16;
    const std::pair<const char*, std::string> cases[] = {
        {"calls", Nested("f(", "a", ")", kDepth) + ";"},
        {"signs", Nested("-", "a", "", kDepth / 2) + ";"},
        {"choices", Nested("(a ? b : ", "c", ")", kDepth / 2) + ";"},
        {"assignments", Nested("(a = ", "c", ")", kDepth / 2) + ";"},
        {"subscripts", Nested("a[", "0", "]", kDepth) + ";"},
        {"right operands", Nested("(a + ", "b", ")", kDepth / 2) + ";"},
        {"methods", Nested("a.f(", "b", ")", kDepth) + ";"},
        {"blocks", Nested("{", ";", "}", kDepth)},
        {"branches", Nested("if (a) {", ";", "}", kDepth / 2)},
        {"loops", Nested("for (;a;) ", ";", "", kDepth / 2)},
    };
    for (const auto& [name, body] : cases) {
        OnSmallStack([&body = body, name = name] {
            const std::unique_ptr<Module> module = Parse("void main() { " + body + " }");
            ASSERT_EQ(module->GetCountFunctionDefinitions(), 1u) << name;
            TreeBuilder copy;
            module->Clone(copy.Get());
            EXPECT_TRUE(
                copy->GetFunctionDefinitions()[0]->Equals(module->GetFunctionDefinitions()[0]))
                << name;
            Visitor visitor;
            EXPECT_TRUE(copy->AcceptVisitor(&visitor)) << name;
            EXPECT_TRUE(static_cast<const Module*>(copy.Get())->AcceptVisitor(&visitor)) << name;
            VisitorPrintKsl printer(nullptr, nullptr, false);
            EXPECT_EQ(copy->AcceptVisitor(&printer), std::string(name) != "methods") << name;
        });
    }
}

TEST(SyntaxPropertyTest, LongSourceChains_AreReadCopiedAndPrinted) {
    OnSmallStack([] {
        constexpr int kLength = 50000;
        const std::unique_ptr<Module> module =
            Parse("void main() { a" + Nested("+a", "", "", kLength) + "; " +
                  Nested("if (a) b; else ", "c;", "", kLength) + " }");
        ASSERT_EQ(module->GetCountFunctionDefinitions(), 1u);
        TreeBuilder copy;
        module->Clone(copy.Get());
        EXPECT_TRUE(copy->GetFunctionDefinitions()[0]->Equals(module->GetFunctionDefinitions()[0]));
        EXPECT_EQ(Print(copy.Get()), Print(module.get()));
    });
}

} // namespace

} // namespace Tolen::Effects::Tests
