#include "FacadeParameterValueSingle.h"

#include "SyntaxPieces.h"

#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorDelegate.h"

#include "TolenCore/Assert.h"

namespace Tolen::Effects {

template <class Parameter>
bool FacadeParameterValueSingle<Parameter>::VisitTransformations(
    FastDelegate2<Class, Visitor*, bool>& visit) {
    TVisitorSyntaxDelegate<Variable, TIParentSyntax<Expression>> visitor(
        MakeDelegate(this, &FacadeParameterValueSingle::_ReplaceReference));
    return visit(kClass_Variable, &visitor);
}

template <class Parameter>
bool FacadeParameterValueSingle<Parameter>::Apply(IKLPrimitive* primitive, IKLProgram* program,
                                                  int location) {
    return _HasStorage() &&
           this->_pStorage->Apply(primitive, program, this->GetNameMangled(), location);
}

template <class Parameter>
template <class T>
bool FacadeParameterValueSingle<Parameter>::_Set(const T& value, int index) {
    return _HasStorage() && this->_pStorage->Set(value, index);
}

template <class Parameter>
template <class T>
bool FacadeParameterValueSingle<Parameter>::_Get(T& value, int index) {
    return _HasStorage() && this->_pStorage->Get(value, index);
}

template <class Parameter>
bool FacadeParameterValueSingle<Parameter>::_HasStorage() const {
    return TOLEN_CHECK_TEXT(this->_pStorage != nullptr, "_pStorage",
                            "Source/FacadeParameterValueSingle");
}

template <class Parameter>
bool FacadeParameterValueSingle<Parameter>::_ReplaceReference(Variable* variable,
                                                              TIParentSyntax<Expression>* slot) {
    if (variable->GetIdentifier()->GetString() == this->GetName()) {
        Variable* const renamed = variable->Clone(variable->GetModule());
        renamed->GetIdentifier()->SetString(this->GetNameMangled());
        ReplaceVisited(slot, renamed);
    }
    return true;
}

template class FacadeParameterValueSingle<ParameterValueSingleStorageSeparate>;

} // namespace Tolen::Effects
