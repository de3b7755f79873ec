#include "CodeTransformer.h"

#include "SyntaxPieces.h"
#include "VisitReplacing.h"
#include "effects/ParsedClass.h"

#include "TolenEffects/Visitor.h"

#include <gtest/gtest.h>

namespace Tolen::Effects::Tests {
namespace {

/// Renames the variables of one name, and counts those that it is shown.
class Renamer {
public:
    Renamer(std::string from, std::string to) : _from(std::move(from)), _to(std::move(to)) {}

    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) {
        return VisitReplacing<Variable>(visit, kClass_Variable, [this](auto* variable, auto* slot) {
            ++count;
            if (answer && IsVariable(variable, _from)) {
                ReplaceVisited(slot, MakeVariable(variable->GetModule(), _to));
            }
            return answer;
        });
    }

    int count = 0;
    bool answer = true;

private:
    std::string _from;
    std::string _to;
};

std::string Join(Module* module) {
    std::string text;
    for (const std::string& line : PrintLines(module)) {
        text += line + " ";
    }
    return text;
}

TEST(CodeTransformer, Apply_ReachesEveryUse) {
    const ParsedClass parsed("void F() { int a; a; if (a < b) { a + a; } }\n"
                             "void G(int a) { for (a; a < 1; ++a) a[a].x(a); { { a; } } }");
    const auto module = parsed.CloneMethods();
    CodeTransformer transformer(module->GetFunctionDefinitions());
    Renamer renamer("a", "z");
    EXPECT_TRUE(transformer.Apply("a", &renamer));
    const ParsedClass expected("void F() { int a; z; if (z < b) { z + z; } }\n"
                               "void G(int a) { for (z; z < 1; ++z) z[z].x(z); { { z; } } }");
    EXPECT_TRUE(module->GetFunctionDefinitions()[0]->Equals(
        expected.CloneMethods()->GetFunctionDefinitions()[0]));
    EXPECT_TRUE(module->GetFunctionDefinitions()[1]->Equals(
        expected.CloneMethods()->GetFunctionDefinitions()[1]));
}

TEST(CodeTransformer, Apply_PassesOverWhatIsNotNamed) {
    const ParsedClass parsed("void F() { a; b; b; a + c; } void G() { c; }");
    const auto module = parsed.CloneMethods();
    CodeTransformer transformer(module->GetFunctionDefinitions());
    Renamer none("d", "z");
    EXPECT_TRUE(transformer.Apply("d", &none));
    EXPECT_EQ(none.count, 0);
    Renamer renamer("a", "z");
    EXPECT_TRUE(transformer.Apply("a", &renamer));
    // "a", "a" and "c", and the two that have taken the place of "a".
    EXPECT_EQ(renamer.count, 5);
}

TEST(CodeTransformer, Apply_ToManyNames_CostsNoMoreThanTheirUses) {
    std::string members = "void F() {";
    for (int i = 0; i < 2000; ++i) {
        members += " v" + std::to_string(i) + " + x;";
    }
    const auto module = ParsedClass(members + " }").CloneMethods();
    CodeTransformer transformer(module->GetFunctionDefinitions());
    int count = 0;
    for (int i = 0; i < 2000; ++i) {
        Renamer renamer("v" + std::to_string(i), "w");
        EXPECT_TRUE(transformer.Apply("v" + std::to_string(i), &renamer));
        count += renamer.count;
    }
    EXPECT_EQ(count, 3 * 2000);
}

TEST(CodeTransformer, Apply_ThatIsRefused_StopsThere) {
    const auto module = ParsedClass("void F() { a; a; }").CloneMethods();
    CodeTransformer transformer(module->GetFunctionDefinitions());
    Renamer renamer("a", "z");
    renamer.answer = false;
    EXPECT_FALSE(transformer.Apply("a", &renamer));
    EXPECT_EQ(renamer.count, 1);
    EXPECT_NE(Join(module.get()).find("a; a;"), std::string::npos);
}

/// Puts an empty statement in the place of each loop.
class LoopRemover {
public:
    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) {
        return VisitReplacing<ForStatement>(visit, kClass_ForStatement, [](auto* loop, auto* slot) {
            ReplaceVisited(slot, loop->GetModule()->CreateEmptyStatement());
            return true;
        });
    }
};

TEST(CodeTransformer, Apply_MayReplaceStatementsOfAFunction) {
    const auto module =
        ParsedClass("void F() { b; for (;;) a; { for (;;) a; } for (;;) b; }").CloneMethods();
    CodeTransformer transformer(module->GetFunctionDefinitions());
    LoopRemover remover;
    EXPECT_TRUE(transformer.Apply("a", &remover));
    const auto& statements =
        module->GetFunctionDefinitions()[0]->GetCompoundStatement()->GetStatements();
    ASSERT_EQ(statements.size(), 4u);
    EXPECT_EQ(statements[0]->GetClass(), kClass_ExpressionStatement);
    EXPECT_EQ(statements[1]->GetClass(), kClass_EmptyStatement);
    EXPECT_EQ(static_cast<const CompoundStatement*>(statements[2])->GetStatements()[0]->GetClass(),
              kClass_EmptyStatement);
    EXPECT_EQ(statements[3]->GetClass(), kClass_ForStatement);
}

} // namespace
} // namespace Tolen::Effects::Tests
