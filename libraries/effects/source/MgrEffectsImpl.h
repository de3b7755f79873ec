#pragma once

#include "MgrKeys.h"
#include "MgrOutputs.h"
#include "PendingEnds.h"

#include "TolenEffects/IMgrEffects.h"

#include "TolenCore/ListenerSet.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Tolen::Effects {

class Graph;
class IFactoryEffect;
class Library;
class PrototypeRequests;
struct PreprocessorState;

/// What stands behind MgrEffects. The library's own code reaches it by GetImplementation where the
/// client's interface isn't enough.
class MgrEffectsImpl : public IMgrEffects {
public:
    MgrEffectsImpl();
    ~MgrEffectsImpl() override;
    MgrEffectsImpl(const MgrEffectsImpl&) = delete;
    MgrEffectsImpl& operator=(const MgrEffectsImpl&) = delete;

    /// @param mgrEffects the manager that shaders and effects are to know; borrowed like the rest
    /// @return false when running already, and, shut down again, when a factory can't be made
    bool Init(IMgrEffects* mgrEffects, IMgrConsole* console, IOpenKLContext* context,
              Result* result);

    /// Makes @p result, borrowed, the one that code without a result of its own reports into; null
    /// ends that.
    void SetResult(Result* result) { _pResult = result; }
    Result* GetResult() const { return _pResult; }
    /// Appends all messages of @p result to the current result, if there is one.
    void AddResult(Result& result);
    /// Formats a message, adds it to the current result and prints it on the general channel.
    /// Without a current result nothing happens.
    void AddResultMessage(const char* format, ...) TOLEN_PRINTF(2, 3);

    void Shutdown() override;
    MgrEffectsImpl* GetImplementation() override;
    bool AddLibrary(const std::string& name, const std::string& source, Result* result) override;
    bool AddLibrary(const std::string& file, Result* result) override;
    bool AddRayAttribute(TypeSpecifier type, const std::string& name) override;
    bool AddVariableGlobal(TypeSpecifier type, const std::string& name) override;
    IPrototypeShader* GetPrototypeShader(const std::string& name, Result* result) override;
    IPrototypeInterface* GetPrototypeInterface(const std::string& name) override;
    bool VisitRayAttributes(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) override;
    bool
    VisitVariablesGlobal(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) override;
    bool VisitEffectsSurface(FastDelegate1<IEffect*, bool>& visit) override;
    bool VisitEffectsRenderer(FastDelegate1<IEffect*, bool>& visit) override;
    bool VisitEffectsPrefix(FastDelegate1<IEffect*, bool>& visit) override;
    IShader* CreateShader(const std::string& name, Result* result) override;
    IShader* CreateShader(const std::string& name) override;
    void DestroyShader(IShader* shader) override;
    IEffect* CreateEffectSurface() override;
    void DestroyEffectSurface(IEffect* effect) override;
    IEffect* CreateEffectRenderer() override;
    void DestroyEffectRenderer(IEffect* effect) override;
    IEffect* CreateEffectPrefix() override;
    void DestroyEffectPrefix(IEffect* effect) override;
    bool
    AddListenerAddOutput(FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) override;
    bool RemoveListenerAddOutput(
        FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) override;
    bool AddListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) override;
    bool RemoveListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) override;
    bool AcquireOutput(TypeSpecifier type, const std::string& name) override;
    bool ReleaseOutput(const std::string& name) override;
    int GetCountOutputs() override;
    bool HasOutput(const std::string& name) override;
    bool VisitOutputs(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) override;
    bool SetOutputAttachmentIndex(const std::string& name, int index) override;
    bool GetOutputAttachmentIndex(int& index, const std::string& name) override;
    bool ClearOutputAttachmentIndex(const std::string& name) override;
    bool AddListenerChangeOutputIndices(FastDelegate0<bool>& listener) override;
    bool RemoveListenerChangeOutputIndices(FastDelegate0<bool>& listener) override;
    bool Update() override;
    bool Update(Result* result) override;
    Key CreateKey() override;
    void DestroyKey(Key& key) override;
    IMgrConsole* GetConsole() const override;
    IOpenKLContext* GetOpenKLContext() const override;
    Profiler* GetProfiler() const override;

    /// What is added to the line numbers of the text that is parsed next: 1 for each #include of
    /// the file that is being read, less the lines that it brought.
    long long GetLineAdjustment() const { return _lineAdjustment; }

    /// Calls @p visit for every library by name, up to the first that answers false.
    /// @return false when one did
    bool VisitLibraries(const FastDelegate1<Library*, bool>& visit) const;

    /// Whether a class ever had inputs of its own, so that ways down may lead through classes.
    bool HasInputsOfClasses() const { return _hasInputsOfClasses; }
    void NoteInputOfClass() { _hasInputsOfClasses = true; }

    /// The making of a shader as the default of an input; they nest.
    class DefaultScope {
    public:
        explicit DefaultScope(MgrEffectsImpl* implementation) : _pImplementation(implementation) {
            ++_pImplementation->_depthDefaults;
        }
        ~DefaultScope() { --_pImplementation->_depthDefaults; }
        DefaultScope(const DefaultScope&) = delete;
        DefaultScope& operator=(const DefaultScope&) = delete;

        /// 1 for the outermost.
        int GetDepth() const { return _pImplementation->_depthDefaults; }

    private:
        MgrEffectsImpl* _pImplementation; ///< borrowed
    };

    /// Destroys a graph that its owner has given up; as soon as nothing that is being done needs it.
    void DestroyGraph(std::unique_ptr<Graph> graph);

    /// What is put off while the library's own code uses it.
    PendingEnds* GetPendingEnds() { return &_pendingEnds; }

    /// The classes that are just being loaded, in any library.
    PrototypeRequests* GetPrototypeRequests() { return _requests.get(); }

protected:
    /// Reads a file through the assets of the process.
    /// @param path the full path of what was read
    /// @return false, told on the console, when it can't be read; false also for an empty file
    bool _ReadFile(const std::string& file, std::string& path, std::string& text);
    /// Adds the library of a file, with the definitions in force that @p state brings, and leaves
    /// there those in force at its end.
    bool _AddLibrary(const std::string& file, PreprocessorState& state, Result* result);
    /// Runs the directives of one file's text and appends what it stands for to @p output.
    bool _StreamAndProcessFile(const std::string& path, const std::string& text,
                               std::string& output, PreprocessorState& state, Result* result);

    bool _OnAddOutput(TypeSpecifier type, const std::string& name);
    bool _OnRemoveOutput(const std::string& name);

private:
    struct Variable {
        TypeSpecifier type;
        std::string name;
    };
    using Visit = FastDelegate2<TypeSpecifier, const std::string&, bool>;

    /// For whom the files of a library are read.
    class SourceClient;

    static bool _VisitVariables(const std::vector<Variable>& variables, Visit& visit);
    static bool _VisitEffects(IFactoryEffect* factory, FastDelegate1<IEffect*, bool>& visit);
    static void _DestroyEffect(IFactoryEffect* factory, IEffect* effect);
    bool _UpdateEffects(IFactoryEffect* factory, Result* result);
    bool _EndShader(IShader* shader);
    bool _ShutdownNow();
    /// The console of Init, or one that says nothing.
    IMgrConsole& _Console() const;

    IMgrEffects* _pMgrEffects = nullptr;       ///< what shaders and effects are given; borrowed
    IMgrConsole* _pConsole = nullptr;          ///< borrowed
    IOpenKLContext* _pOpenKLContext = nullptr; ///< borrowed
    std::unique_ptr<Profiler> _pProfiler;
    bool _dumpTimings = false; ///< whether shutdown writes the timings to the debugger output
    std::vector<Variable> _rayAttributes;
    std::vector<Variable> _variablesGlobal;
    std::unique_ptr<IFactoryEffect> _factorySurface;
    std::unique_ptr<IFactoryEffect> _factoryRenderer;
    std::unique_ptr<IFactoryEffect> _factoryPrefix;
    std::map<std::string, std::unique_ptr<Library>> _libraries;
    std::unique_ptr<PrototypeRequests> _requests;
    MgrOutputs _outputs;
    ListenerSet<FastDelegate2<TypeSpecifier, const std::string&, bool>> _listenersAddOutput;
    ListenerSet<FastDelegate1<const std::string&, bool>> _listenersRemoveOutput;
    ListenerSet<FastDelegate0<bool>> _listenersChangeOutputIndices;
    MgrKeys<int> _keys;
    Result* _pResult = nullptr; ///< borrowed
    long long _lineAdjustment = 0;
    int _depthDefaults = 0; ///< defaults of inputs that are just being made, one inside the other
    bool _isShuttingDown = false;
    bool _hasInputsOfClasses = false;
    PendingEnds _pendingEnds;
};

} // namespace Tolen::Effects
