#include "ReferencePrototypeParameterValueSingle.h"

#include "PrototypeParameterValueSingle.h"
#include "TolenEffects/IGraph.h"

#include "TolenCore/Console.h"

namespace Tolen::Effects {

namespace {

bool _IsTypeSupported(TypeSpecifier type) {
    const int value = static_cast<int>(type);
    return (value >= 1 && value <= 6) || (value >= 10 && value <= 12) ||
           (value >= 14 && value <= 16) || value == 19;
}

} // namespace

ReferencePrototypeParameterValueSingle::~ReferencePrototypeParameterValueSingle() { Shutdown(); }

bool ReferencePrototypeParameterValueSingle::Init(PrototypeParameterValueSingle* owner,
                                                  ReferencePrototypeShader* parent) {
    if (!_IsTypeSupported(owner->GetType())) {
        ConsolePrint("ReferencePrototypeParameterValueSingle::Init Type Unsupported\n");
        return false;
    }
    if (!ReferencePrototypePart::Init(owner, parent)) {
        return false;
    }
    auto apply = MakeDelegate(this, &ReferencePrototypeParameterValueSingle::Apply);
    return _pGraph->AddDelegateApply(apply);
}

void ReferencePrototypeParameterValueSingle::Shutdown() {
    if (_pParent != nullptr) {
        auto apply = MakeDelegate(this, &ReferencePrototypeParameterValueSingle::Apply);
        _pGraph->RemoveDelegateApply(apply);
    }
    ReferencePrototypePart::Shutdown();
}

bool ReferencePrototypeParameterValueSingle::Apply(IKLPrimitive*, IKLProgram*) { return true; }

} // namespace Tolen::Effects
