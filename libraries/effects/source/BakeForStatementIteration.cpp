#include "BakeForStatementIteration.h"

#include "ParameterInterfaceArray.h"
#include "SyntaxPieces.h"
#include "SyntaxWalk.h"

#include "TolenEffects/IShader.h"
#include "TolenEffects/VisitorDelegate.h"

#include "TolenCore/Assert.h"

namespace Tolen::Effects {

BakeForStatementIteration::BakeForStatementIteration(const ParameterInterfaceArray* parameter,
                                                     const std::string& loopVariable)
    : _pParameter(parameter), _nameVariable(loopVariable) {}

bool BakeForStatementIteration::Bake(Statement* statement, int iIndex) {
    if (!TOLEN_CHECK(_pParameter->GetLength() > iIndex, "Source/BakeForStatementIteration")) {
        return false;
    }
    IShader* shader = nullptr;
    if (!_pParameter->GetShader(shader, iIndex) || shader == nullptr) {
        return false;
    }
    _index = iIndex;
    using VisitorSelection = TVisitorSyntaxDelegate<FunctionSelection, TIParentSyntax<Expression>>;
    VisitorSelection visitor(
        MakeDelegate(this, &BakeForStatementIteration::_VisitFunctionSelection));
    return statement->AcceptVisitor(&visitor, TParentSyntaxNull<Statement>::GetInstance());
}

bool BakeForStatementIteration::_VisitFunctionSelection(FunctionSelection* selection,
                                                        TIParentSyntax<Expression>* slot) {
    const auto* const element = AsExactly<Subscript>(selection->GetExpression());
    if (element == nullptr || !IsVariable(element->GetArray(), _pParameter->GetNameDeclared()) ||
        !IsVariable(element->GetIndex(), _nameVariable)) {
        return true;
    }
    IShader* shader = nullptr;
    const std::string method = GetMethodName(selection);
    if (_pParameter->GetShader(shader, _index) && shader != nullptr && shader->HasMethod(method)) {
        ReplaceVisited(slot, MakeCallOfMethod(selection, shader->GetMethodNameMangled(method)));
    }
    return true;
}

} // namespace Tolen::Effects
