#pragma once

#include "TolenEffects/IReferenceParameter.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/LifeToken.h"
#include "TolenCore/ListenerSet.h"

#include <cstddef>
#include <unordered_map>
#include <vector>

namespace Tolen::Effects {

class IReferenceShader;
class ParameterInterface;
class ReferenceShader;
class Shader;

/// What references of inputs that take shaders have in common: one use of the reference of the
/// shader in each cell, taken and given back as the cells change.
///
/// A cell that changes is let go of and told before the new shader is taken into the graph. Until
/// that is done this object is out of step with its parameter, and incomplete.
class ReferenceParameterInterface : public IReferenceParameter, public CreationOrder {
public:
    ~ReferenceParameterInterface() override;

    /// @param graph, parameter borrowed
    /// @return false when a connected shader can't be taken into the graph
    bool Init(IGraph* graph, ParameterInterface* parameter);
    /// Gives the uses of all shaders back. Safe to repeat.
    void Shutdown();

    bool AddListenerChangeValue(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    bool RemoveListenerChangeValue(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    /// Listeners hear of changes of the cells, and of those that come up from below. The parameter
    /// is listened to only while there are any.
    bool AddListenerChangeStructure(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    bool RemoveListenerChangeStructure(FastDelegate1<IReferenceParameter*, bool>& listener) override;
    /// Whether every cell holds a shader that is complete in the graph.
    bool IsComplete(Result* result) const override;
    /// There are no values for single primitives.
    ILocalParameter* AcquireLocal(IKLPrimitive* primitive) override;
    void ReleaseLocal(ILocalParameter* parameter) override;
    IParameter* GetParameter() override;
    IGraph* GetGraph() override { return _pGraph; }

    /// Whether every cell of the parameter holds a shader and is held here.
    bool IsInStep() const;
    int GetCountReferences() const { return static_cast<int>(_cells.size()); }
    /// @return borrowed; null for a cell that is empty or whose shader couldn't be taken
    ReferenceShader* GetReference(int index) const;

protected:
    ReferenceParameterInterface() = default;

    /// Tells that a reference has said farewell which no cell holds.
    virtual void _ReportUnknownReference() const = 0;
    /// Checks that a cell is empty which is about to be filled.
    virtual bool _CheckEmpty(const Shader* shader, const IReferenceShader* reference) const = 0;

    IGraph* _pGraph = nullptr;                 ///< borrowed
    ParameterInterface* _pParameter = nullptr; ///< borrowed; null after Shutdown

private:
    struct Cell {
        Shader* pShader = nullptr;             ///< borrowed
        ReferenceShader* pReference = nullptr; ///< one use of it is ours
    };
    /// How many cells hold a reference, and the one that took it last.
    struct Use {
        int count = 0;
        std::size_t cell = 0;
    };

    bool _IsCurrent(std::size_t index) const;
    std::vector<int> _GetCellsToLookAt() const;
    bool _ReleaseStale(const std::vector<int>& cells);
    bool _AcquireMissing(const std::vector<int>& cells, bool& isAnyAcquired);
    bool _Acquire(std::size_t index, Shader* shader);
    void _Enter(std::size_t index, Shader* shader, ReferenceShader* reference);
    ReferenceShader* _Leave(std::size_t index);
    void _ListenTo(ReferenceShader* reference, bool listen);

    bool _OnChangeParameter(IParameter* parameter);
    bool _OnChangeBelow(IParameter* parameter);
    bool _OnDeleteReferenceShader(IReferenceShader* reference);
    bool _OnChangeValueReference(IReferenceShader* reference);

    std::vector<Cell> _cells;
    bool _mustLookAtAll = true; ///< a change of cells was not seen through to its end
    std::unordered_map<const IReferenceShader*, Use> _uses; ///< never iterated
    ListenerSet<FastDelegate1<IReferenceParameter*, bool>> _listenersChangeValue;
    ListenerSet<FastDelegate1<IReferenceParameter*, bool>> _listenersChangeStructure;
    LifeToken _life;
};

} // namespace Tolen::Effects
