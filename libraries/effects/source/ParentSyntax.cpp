#include "TolenEffects/ParentSyntax.h"

#include "TolenCore/Console.h"

namespace Tolen::Effects {

template <class T>
bool TParentSyntaxStored<T>::SetReplacement(T* node) {
    if (HasReplacement()) {
        ConsolePrint("TParentSyntaxDelegate::SetReplacement Not Replaced\n");
        return false;
    }
    _pReplacement = node;
    _replaced = false;
    return true;
}

template <class T>
bool TParentSyntaxVectorElement<T>::ApplyReplacement() {
    T*& element = **_pPosition;
    T* old = element;
    element = this->_pReplacement;
    this->_pReplacement = nullptr;
    delete old;
    return true;
}

template <class T>
TParentSyntaxNull<T>* TParentSyntaxNull<T>::GetInstance() {
    static TParentSyntaxNull instance;
    return &instance;
}

template <class Node>
bool ReplaceFunction<Node>::Replace(Node* parent, Expression* function) {
    return parent->SetFunction(static_cast<FunctionCall*>(function));
}

template <class Node>
bool ReplaceConditionTyped<Node>::Replace(Node* parent, Expression* condition) {
    return parent->SetCondition(static_cast<Condition*>(condition));
}

template class TParentSyntaxStored<Expression>;
template class TParentSyntaxStored<Statement>;
template class TParentSyntaxVectorElement<Expression>;
template class TParentSyntaxVectorElement<Statement>;
template class TParentSyntaxNull<Expression>;
template class TParentSyntaxNull<Statement>;
template struct ReplaceFunction<FunctionSelection>;
template struct ReplaceConditionTyped<WhileStatement>;
template struct ReplaceConditionTyped<ForStatement>;

} // namespace Tolen::Effects
