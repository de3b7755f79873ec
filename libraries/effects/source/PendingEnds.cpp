#include "PendingEnds.h"

#include "Graph.h"

#include <utility>

namespace Tolen::Effects {

PendingEnds::PendingEnds(const FastDelegate1<IShader*, bool>& endShader,
                         const FastDelegate0<bool>& shutdown)
    : _endShader(endShader), _shutdown(shutdown) {}

PendingEnds::~PendingEnds() = default;

void PendingEnds::LetGo() {
    // The last hold stays while ends take place: what their listeners end comes behind them.
    while (_countHolds == 1 && _EndNext()) {
    }
    if (--_countHolds == 0 && std::exchange(_isShutdownNoted, false)) {
        _shutdown();
    }
}

void PendingEnds::AddShader(IShader* shader) {
    if (_shadersNoted.insert(shader).second) {
        _shaders.push_back(shader);
    }
}

void PendingEnds::AddGraph(std::unique_ptr<Graph> graph) { _graphs.push_back(std::move(graph)); }

bool PendingEnds::_EndNext() {
    if (_nextGraph < _graphs.size()) {
        const std::unique_ptr<Graph> graph = std::move(_graphs[_nextGraph++]);
        return true;
    }
    _graphs.clear();
    _nextGraph = 0;
    if (_nextShader < _shaders.size()) {
        IShader* const shader = _shaders[_nextShader++];
        _endShader(shader);
        _shadersNoted.erase(shader);
        return true;
    }
    _shaders.clear();
    _nextShader = 0;
    return false;
}

} // namespace Tolen::Effects
