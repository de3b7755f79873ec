#pragma once

#include "TolenCore/FastDelegate.h"
#include "TolenCore/ListenerSet.h"

namespace Tolen::Effects {

class IShader;

/// The notice with which a shader or a view of one tells those inside the library who hold it that
/// it ends. It comes behind the delete listeners, while the shader is still whole, and reaches
/// everybody whatever the others answer.
class EndingShader {
public:
    bool AddListenerEnd(FastDelegate1<IShader*, bool>& listener) {
        return _listenersEnd.Add(listener);
    }
    bool RemoveListenerEnd(FastDelegate1<IShader*, bool>& listener) {
        return _listenersEnd.Remove(listener);
    }

protected:
    EndingShader() = default;
    ~EndingShader() = default;

    /// Tells everybody, once.
    void _FireEnd(IShader* shader);

private:
    ListenerSet<FastDelegate1<IShader*, bool>> _listenersEnd;
};

/// The same for any shader: one that does not come from this library only has delete listeners.
bool AddListenerEnd(IShader* shader, FastDelegate1<IShader*, bool>& listener);
bool RemoveListenerEnd(IShader* shader, FastDelegate1<IShader*, bool>& listener);

} // namespace Tolen::Effects
