#include "UnrollForStatementInterfaceArray.h"

#include "BakeForStatementIteration.h"
#include "ParameterInterfaceArray.h"
#include "SyntaxPieces.h"
#include "TolenEffects/Limits.h"

#include "TolenEffects/Module.h"
#include "TolenEffects/Visitor.h"

#include "TolenCore/Assert.h"

#include <memory>

namespace Tolen::Effects {

namespace {

constexpr const char* kSource = "Source/UnrollForStatementInterfaceArray";

/// Counts the pieces of code that all others are made of.
class PieceCounter final : public Visitor {
public:
    PieceCounter() : Visitor(kChainWalk_Iterated) {}

    std::size_t GetCount() const { return _count; }

    using Visitor::Visit;
#define TOLEN_COUNT(Node, Family)                                                                  \
    bool Visit(const Node* node, TParentSyntaxConst<Family>* slot) override {                      \
        ++_count;                                                                                  \
        return Visitor::Visit(node, slot);                                                         \
    }
    TOLEN_COUNT(CompoundStatement, Statement)
    TOLEN_COUNT(DeclarationStatement, Statement)
    TOLEN_COUNT(EmptyStatement, Statement)
    TOLEN_COUNT(JumpStatement, Statement)
    TOLEN_COUNT(ForStatement, Statement)
    TOLEN_COUNT(Variable, Expression)
    TOLEN_COUNT(FunctionCall, Expression)
    TOLEN_COUNT(UnaryOperator, Expression)
    TOLEN_COUNT(BoolConstant, Expression)
    TOLEN_COUNT(IntConstant, Expression)
    TOLEN_COUNT(FloatConstant, Expression)
#undef TOLEN_COUNT

private:
    std::size_t _count = 0;
};

/// One pass as a statement that can stand beside the others: a declaration gets a scope of its own.
Statement* _InOwnScope(Statement* pass) {
    return pass->GetClass() == kClass_DeclarationStatement
               ? pass->GetModule()->CreateCompoundStatement(pass)
               : pass;
}

Statement* _MakeIncrement(Module* module, const std::string& name) {
    return module->CreateExpressionStatement(
        module->CreateUnaryOperator(kOperator_Increment, MakeVariable(module, name)));
}

} // namespace

UnrollForStatementInterfaceArray::UnrollForStatementInterfaceArray(
    const ParameterInterfaceArray* parameter)
    : _pParameter(parameter) {}

bool UnrollForStatementInterfaceArray::IsWithinLimit(const ForStatement* loop) const {
    PieceCounter counter;
    TParentSyntaxConst<Statement> slot(loop);
    loop->GetStatement()->AcceptVisitor(&counter, &slot);
    const auto length = static_cast<std::size_t>(_pParameter->GetLength());
    return counter.GetCount() == 0 || length <= kLimitUnrolledLoop / counter.GetCount();
}

Statement* UnrollForStatementInterfaceArray::Unroll(const ForStatement* loop) const {
    const Statement* const pInit = loop->GetInitialization();
    if (!TOLEN_CHECK(pInit, kSource) ||
        !TOLEN_CHECK(kClass_DeclarationStatement == pInit->GetClass(), kSource)) {
        return nullptr;
    }
    Module* const module = loop->GetModule();
    const auto* const declaration = static_cast<const DeclarationStatement*>(pInit);
    const std::string& name = declaration->GetDeclaration()->GetIdentifier()->GetString();

    std::unique_ptr<CompoundStatement> unrolled(module->CreateCompoundStatement());
    unrolled->AddStatement(declaration->Clone(module));
    BakeForStatementIteration iteration(_pParameter, name);
    for (int i = 0; i < _pParameter->GetLength(); ++i) {
        std::unique_ptr<Statement> pass(loop->GetStatement()->Clone(module));
        if (!iteration.Bake(pass.get(), i)) {
            break;
        }
        unrolled->AddStatement(_InOwnScope(pass.release()));
        if (i + 1 < _pParameter->GetLength()) {
            unrolled->AddStatement(_MakeIncrement(module, name));
        }
    }
    unrolled->SetRange(loop);
    return unrolled.release();
}

} // namespace Tolen::Effects
