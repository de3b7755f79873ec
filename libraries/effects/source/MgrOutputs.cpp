#include "MgrOutputs.h"

#include "TolenCore/Console.h"

namespace Tolen::Effects {

bool MgrOutputs::Shutdown() {
    _listenersAddOutput.Clear();
    _listenersRemoveOutput.Clear();
    return true;
}

bool MgrOutputs::AddListenerAddOutput(ListenerAdd& listener) {
    return _listenersAddOutput.Add(listener);
}

bool MgrOutputs::RemoveListenerAddOutput(ListenerAdd& listener) {
    return _listenersAddOutput.Remove(listener);
}

bool MgrOutputs::AddListenerRemoveOutput(ListenerRemove& listener) {
    return _listenersRemoveOutput.Add(listener);
}

bool MgrOutputs::RemoveListenerRemoveOutput(ListenerRemove& listener) {
    return _listenersRemoveOutput.Remove(listener);
}

bool MgrOutputs::AcquireOutput(TypeSpecifier type, const std::string& name) {
    const auto [found, isNew] = _outputs.try_emplace(name, Output{type, 0});
    Output& output = found->second;
    if (output.type != type) {
        ConsolePrint("Graph::AcquireOutput Type Collision\n");
        return false;
    }
    ++output.count;
    if (isNew) {
        _listenersAddOutput.Fire(type, name);
    }
    return true;
}

bool MgrOutputs::ReleaseOutput(const std::string& name) {
    const auto found = _outputs.find(name);
    if (found == _outputs.end() || --found->second.count > 0) {
        return true;
    }
    // The caller's name may be the key of the entry that goes.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const std::string removed = name;
    _outputs.erase(found);
    return _listenersRemoveOutput.Fire(removed);
}

int MgrOutputs::GetCountOutputs() {
    return static_cast<int>(_outputs.size());
}

bool MgrOutputs::HasOutput(const std::string& name) {
    return _outputs.count(name) != 0;
}

bool MgrOutputs::VisitOutputs(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) {
    // A visitor may acquire and release outputs; each entry is found again by its name.
    bool all = true;
    for (auto it = _outputs.begin(); it != _outputs.end();) {
        const std::string name = it->first;
        all = visit(it->second.type, name) && all;
        it = _outputs.upper_bound(name);
    }
    return all;
}

bool MgrOutputs::SetOutputAttachmentIndex(const std::string& name, int index) {
    _attachmentIndices[name] = index;
    return true;
}

bool MgrOutputs::GetOutputAttachmentIndex(int& index, const std::string& name) {
    const auto found = _attachmentIndices.find(name);
    index = found == _attachmentIndices.end() ? kAttachmentIndexDefault : found->second;
    return true;
}

bool MgrOutputs::ClearOutputAttachmentIndex(const std::string& name) {
    return _attachmentIndices.erase(name) != 0;
}

} // namespace Tolen::Effects
