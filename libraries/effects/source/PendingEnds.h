#pragma once

#include "TolenCore/FastDelegate.h"

#include <cstddef>
#include <memory>
#include <set>
#include <vector>

namespace Tolen::Effects {

class Graph;
class IShader;

/// What listeners have ended while the library's own code was still using it.
///
/// References join shaders and graphs, and making one or giving one back tells listeners on the way.
/// These may ask for the end of anything: of a shader or a graph whose reference is just being made,
/// even of the manager. While such code runs it holds the ends (ScopedHold): they are noted here and
/// take place when the outermost hold is let go, graphs first, then shaders, each in the order in
/// which they were asked for, the manager last.
class PendingEnds {
public:
    /// @param endShader, shutdown what destroys a shader, and shuts the manager down, on the spot
    PendingEnds(const FastDelegate1<IShader*, bool>& endShader, const FastDelegate0<bool>& shutdown);
    ~PendingEnds();
    PendingEnds(const PendingEnds&) = delete;
    PendingEnds& operator=(const PendingEnds&) = delete;

    void Hold() { ++_countHolds; }
    /// Carries out what has been noted, at the end of the outermost hold.
    void LetGo();
    bool IsHeld() const { return _countHolds > 0; }

    /// Only while held. A shader that is noted already is not noted again.
    void AddShader(IShader* shader);
    void AddGraph(std::unique_ptr<Graph> graph);
    void AddShutdown() { _isShutdownNoted = true; }

private:
    bool _EndNext();

    FastDelegate1<IShader*, bool> _endShader;
    FastDelegate0<bool> _shutdown;
    int _countHolds = 0;
    std::vector<std::unique_ptr<Graph>> _graphs;
    std::size_t _nextGraph = 0;
    std::vector<IShader*> _shaders; ///< borrowed
    std::size_t _nextShader = 0;
    std::set<IShader*> _shadersNoted;
    bool _isShutdownNoted = false;
};

} // namespace Tolen::Effects
