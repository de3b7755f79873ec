#include "ReferenceParameterInterface.h"

#include "Graph.h"
#include "ParameterInterface.h"
#include "ReferenceCompleteness.h"
#include "ReferenceShader.h"
#include "Shader.h"

#include <algorithm>
#include <numeric>

namespace Tolen::Effects {

ReferenceParameterInterface::~ReferenceParameterInterface() {
    Shutdown();
}

bool ReferenceParameterInterface::Init(IGraph* graph, ParameterInterface* parameter) {
    _pGraph = graph;
    _pParameter = parameter;
    auto onChange = MakeDelegate(this, &ReferenceParameterInterface::_OnChangeParameter);
    return _pParameter->AddListenerChangeConnection(onChange) && _OnChangeParameter(parameter);
}

void ReferenceParameterInterface::Shutdown() {
    if (_pParameter == nullptr) {
        return;
    }
    auto onChange = MakeDelegate(this, &ReferenceParameterInterface::_OnChangeParameter);
    _pParameter->RemoveListenerChangeConnection(onChange);
    if (!_listenersChangeStructure.IsEmpty()) {
        auto onBelow = MakeDelegate(this, &ReferenceParameterInterface::_OnChangeBelow);
        _pParameter->RemoveListenerChangeStructure(onBelow);
    }
    _listenersChangeValue.Clear();
    _listenersChangeStructure.Clear();
    _pParameter = nullptr;
    while (!_cells.empty()) {
        ReferenceShader* const reference = _Leave(_cells.size() - 1);
        _cells.pop_back();
        if (reference != nullptr) {
            reference->Release();
        }
    }
}

bool ReferenceParameterInterface::AddListenerChangeValue(
    FastDelegate1<IReferenceParameter*, bool>& listener) {
    return _listenersChangeValue.Add(listener);
}

bool ReferenceParameterInterface::RemoveListenerChangeValue(
    FastDelegate1<IReferenceParameter*, bool>& listener) {
    return _listenersChangeValue.Remove(listener);
}

bool ReferenceParameterInterface::AddListenerChangeStructure(
    FastDelegate1<IReferenceParameter*, bool>& listener) {
    if (_pParameter != nullptr && _listenersChangeStructure.IsEmpty()) {
        auto onBelow = MakeDelegate(this, &ReferenceParameterInterface::_OnChangeBelow);
        _pParameter->AddListenerChangeStructure(onBelow);
    }
    return _listenersChangeStructure.Add(listener);
}

bool ReferenceParameterInterface::RemoveListenerChangeStructure(
    FastDelegate1<IReferenceParameter*, bool>& listener) {
    _listenersChangeStructure.Remove(listener);
    if (_pParameter != nullptr && _listenersChangeStructure.IsEmpty()) {
        auto onBelow = MakeDelegate(this, &ReferenceParameterInterface::_OnChangeBelow);
        _pParameter->RemoveListenerChangeStructure(onBelow);
    }
    return true;
}

bool ReferenceParameterInterface::IsComplete(Result* result) const {
    return ReferenceCompleteness(_pGraph, result).IsComplete(this);
}

ILocalParameter* ReferenceParameterInterface::AcquireLocal(IKLPrimitive*) {
    return nullptr;
}

void ReferenceParameterInterface::ReleaseLocal(ILocalParameter*) {}

IParameter* ReferenceParameterInterface::GetParameter() {
    return _pParameter;
}

bool ReferenceParameterInterface::IsInStep() const {
    if (_pParameter == nullptr || GetCountReferences() != _pParameter->GetLength()) {
        return false;
    }
    for (std::size_t i = 0; i < _cells.size(); ++i) {
        if (_cells[i].pReference == nullptr || !_IsCurrent(i)) {
            return false;
        }
    }
    return true;
}

ReferenceShader* ReferenceParameterInterface::GetReference(int index) const {
    return _cells[static_cast<std::size_t>(index)].pReference;
}

bool ReferenceParameterInterface::_IsCurrent(std::size_t index) const {
    // Behind the end there is no shader, as in an empty cell.
    return _cells[index].pShader == _pParameter->GetShaderBase(static_cast<int>(index));
}

bool ReferenceParameterInterface::_OnChangeParameter(IParameter*) {
    const LifeToken::Watch alive = _life.GetWatch();
    const std::vector<int> cells = _GetCellsToLookAt();
    _mustLookAtAll = true;
    // Told before the new shaders are taken: taking one may clear the graph's compiled state in
    // silence, and a notice behind it would no longer reach the effect.
    const bool isAnyReleased = _ReleaseStale(cells);
    if (!alive || (isAnyReleased && (!_listenersChangeStructure.Fire(this) || !alive))) {
        return false;
    }
    bool isAnyAcquired = false;
    const bool good = _AcquireMissing(cells, isAnyAcquired);
    if (!alive || _pParameter == nullptr) {
        return false;
    }
    _mustLookAtAll = false;
    return good && (!isAnyAcquired || _listenersChangeStructure.Fire(this));
}

std::vector<int> ReferenceParameterInterface::_GetCellsToLookAt() const {
    if (!_mustLookAtAll) {
        return _pParameter->GetCellsChanged();
    }
    std::vector<int> cells(std::max(_cells.size(), static_cast<std::size_t>(_pParameter->GetLength())));
    std::iota(cells.begin(), cells.end(), 0);
    return cells;
}

/// @return whether there was one
bool ReferenceParameterInterface::_ReleaseStale(const std::vector<int>& cells) {
    const LifeToken::Watch alive = _life.GetWatch();
    bool isAnyReleased = false;
    // What is given back may end, and tell listeners who change the cells once more.
    for (const int cell : cells) {
        if (!alive || _pParameter == nullptr) {
            return isAnyReleased;
        }
        const auto index = static_cast<std::size_t>(cell);
        if (index >= _cells.size() || _IsCurrent(index)) {
            continue;
        }
        if (ReferenceShader* const reference = _Leave(index)) {
            isAnyReleased = true;
            reference->Release();
        }
    }
    if (alive && _pParameter != nullptr) {
        _cells.resize(static_cast<std::size_t>(_pParameter->GetLength()));
    }
    return isAnyReleased;
}

bool ReferenceParameterInterface::_AcquireMissing(const std::vector<int>& cells,
                                                  bool& isAnyAcquired) {
    const LifeToken::Watch alive = _life.GetWatch();
    bool good = true;
    for (const int cell : cells) {
        if (!alive || _pParameter == nullptr) {
            return false;
        }
        const auto index = static_cast<std::size_t>(cell);
        if (index < _cells.size() && !_IsCurrent(index)) {
            good = _Acquire(index, _pParameter->GetShaderBase(cell)) && good;
            isAnyAcquired = true;
        }
    }
    return good;
}

bool ReferenceParameterInterface::_Acquire(std::size_t index, Shader* shader) {
    const LifeToken::Watch alive = _life.GetWatch();
    const LifeToken::Watch isGraphAlive = static_cast<Graph*>(_pGraph)->GetWatch();
    auto* const reference = static_cast<ReferenceShader*>(shader->CreateReference(_pGraph));
    if (!alive || _pParameter == nullptr) {
        if (isGraphAlive && reference != nullptr) {
            reference->Release();
        }
        return false;
    }
    if (index >= _cells.size() || _cells[index].pShader != nullptr ||
        _pParameter->GetShaderBase(static_cast<int>(index)) != shader) {
        // A listener has changed the cell once more, and that is done already.
        return reference == nullptr || reference->Release();
    }
    _Enter(index, shader, reference);
    return reference != nullptr;
}

void ReferenceParameterInterface::_Enter(std::size_t index, Shader* shader,
                                         ReferenceShader* reference) {
    Cell& cell = _cells[index];
    if (!_CheckEmpty(cell.pShader, cell.pReference)) {
        return;
    }
    cell = {shader, reference};
    if (reference == nullptr) {
        return;
    }
    Use& use = _uses[reference];
    use.cell = index;
    if (++use.count == 1) {
        _ListenTo(reference, true);
    }
}

/// Empties a cell. @return what it held, with our use of it; may be null
ReferenceShader* ReferenceParameterInterface::_Leave(std::size_t index) {
    ReferenceShader* const reference = _cells[index].pReference;
    _cells[index] = {};
    const auto use = _uses.find(reference);
    if (use != _uses.end() && --use->second.count == 0) {
        _uses.erase(use);
        _ListenTo(reference, false);
    }
    return reference;
}

void ReferenceParameterInterface::_ListenTo(ReferenceShader* reference, bool listen) {
    auto onDelete = MakeDelegate(this, &ReferenceParameterInterface::_OnDeleteReferenceShader);
    auto onValue = MakeDelegate(this, &ReferenceParameterInterface::_OnChangeValueReference);
    if (listen) {
        reference->AddListenerDelete(onDelete);
        reference->AddListenerChangeValue(onValue);
    } else {
        reference->RemoveListenerDelete(onDelete);
        reference->RemoveListenerChangeValue(onValue);
    }
}

bool ReferenceParameterInterface::_OnChangeBelow(IParameter*) {
    return _listenersChangeStructure.Fire(this);
}

bool ReferenceParameterInterface::_OnDeleteReferenceShader(IReferenceShader* reference) {
    const auto found = _uses.find(reference);
    if (found == _uses.end()) {
        _ReportUnknownReference();
        return true;
    }
    const Use use = found->second;
    _uses.erase(found);
    if (use.count == 1 && _cells[use.cell].pReference == reference) {
        _cells[use.cell] = {};
    } else {
        for (Cell& cell : _cells) {
            if (cell.pReference == reference) {
                cell = {};
            }
        }
    }
    return _listenersChangeStructure.Fire(this);
}

bool ReferenceParameterInterface::_OnChangeValueReference(IReferenceShader*) {
    return _listenersChangeValue.Fire(this);
}

} // namespace Tolen::Effects
