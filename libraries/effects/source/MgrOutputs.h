#pragma once

#include "TolenEffects/SyntaxTypes.h"

#include "TolenCore/FastDelegate.h"
#include "TolenCore/ListenerSet.h"

#include <map>
#include <string>

namespace Tolen::Effects {

/// Counts who uses which named output, and remembers which attachment each output goes to. The
/// manager holds one for everything, each graph one for itself.
class MgrOutputs {
public:
    using ListenerAdd = FastDelegate2<TypeSpecifier, const std::string&, bool>;
    using ListenerRemove = FastDelegate1<const std::string&, bool>;

    /// The attachment of an output that nobody gave one.
    static constexpr int kAttachmentIndexDefault = 15;

    MgrOutputs() = default;
    virtual ~MgrOutputs() = default;
    MgrOutputs(const MgrOutputs&) = delete;
    MgrOutputs& operator=(const MgrOutputs&) = delete;

    bool Init() { return true; }
    /// Forgets all listeners. Outputs and attachments stay. Always true.
    bool Shutdown();

    /// Listeners that hear of the first use of an output and of the end of the last one. Adding and
    /// removing always answer true.
    virtual bool AddListenerAddOutput(ListenerAdd& listener);
    virtual bool RemoveListenerAddOutput(ListenerAdd& listener);
    virtual bool AddListenerRemoveOutput(ListenerRemove& listener);
    virtual bool RemoveListenerRemoveOutput(ListenerRemove& listener);

    /// Counts one more use of an output.
    /// @return false, with a line on the console and no change, when it has another type
    virtual bool AcquireOutput(TypeSpecifier type, const std::string& name);
    /// Counts one use less; an unknown name answers true.
    /// @return false when this was the last use and a listener answered so
    virtual bool ReleaseOutput(const std::string& name);
    /// Distinct names in use.
    virtual int GetCountOutputs();
    virtual bool HasOutput(const std::string& name);
    /// Calls @p visit for every output in use, by name. @return whether all calls answered true
    virtual bool VisitOutputs(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit);

    /// Attachments are kept for any name, in use or not. @return true
    virtual bool SetOutputAttachmentIndex(const std::string& name, int index);
    /// Writes the attachment, or kAttachmentIndexDefault, to @p index. @return true
    virtual bool GetOutputAttachmentIndex(int& index, const std::string& name);
    /// @return false when there was none
    virtual bool ClearOutputAttachmentIndex(const std::string& name);

private:
    struct Output {
        TypeSpecifier type;
        int count;
    };

    std::map<std::string, Output> _outputs;
    std::map<std::string, int> _attachmentIndices;
    ListenerSet<ListenerAdd> _listenersAddOutput;
    ListenerSet<ListenerRemove> _listenersRemoveOutput;
};

} // namespace Tolen::Effects
