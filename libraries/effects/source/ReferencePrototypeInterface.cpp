#include "ReferencePrototypeInterface.h"

#include "TolenEffects/IPrototypeInterface.h"

#include "TolenCore/Console.h"

#include <algorithm>

namespace Tolen::Effects {

ReferencePrototypeInterface::~ReferencePrototypeInterface() { Shutdown(); }

bool ReferencePrototypeInterface::Init(IPrototypeInterface* prototype, IGraph* graph) {
    _pPrototypeInterface = prototype;
    _pGraph = graph;
    return true;
}

void ReferencePrototypeInterface::Shutdown() {
    _pPrototypeInterface = nullptr;
    _pGraph = nullptr;
    _referencePrototypeShaders.clear();
}

bool ReferencePrototypeInterface::AddReferencePrototypeShader(ReferencePrototypeShader* reference) {
    _referencePrototypeShaders.push_back(reference);
    return true;
}

bool ReferencePrototypeInterface::RemoveReferencePrototypeShader(
    ReferencePrototypeShader* reference) {
    const auto found = std::find(_referencePrototypeShaders.begin(),
                                 _referencePrototypeShaders.end(), reference);
    if (found == _referencePrototypeShaders.end()) {
        ConsolePrint(
            "ReferencePrototypeInterface::RemoveReferencePrototypeShader Reference Not Found\n");
        return false;
    }
    _referencePrototypeShaders.erase(found);
    return true;
}

std::string ReferencePrototypeInterface::GetMethodNameMangled(const std::string& method) const {
    return _pPrototypeInterface == nullptr ? std::string()
                                           : _pPrototypeInterface->GetMethodNameMangled(method);
}

} // namespace Tolen::Effects
