#pragma once

#include "Value.h"

#include "TolenEffects/IParameter.h"
#include "TolenEffects/Key.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/LifeToken.h"
#include "TolenCore/ListenerSet.h"

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Tolen::Effects {

class IMgrEffects;
class Shader;
class StructureNode;
class VariableDeclaration;

/// What inputs that take shaders have in common: cells that hold shaders, whose code is called
/// directly by the code of the input's owner.
///
/// Shaders are borrowed from the client, except for those that the input has made itself from the
/// declared default, which it destroys when they are replaced. A shader fits when its class or its
/// interface has the declared name, and when it doesn't depend on the owner. Each change of a cell
/// is a change of structure. A shader that is destroyed empties the cells that hold it.
///
/// A cell may hold a view of a shader: then all that concerns code goes by the shader behind it, and
/// the cell is emptied by the end of either.
class ParameterInterface : public IParameter, public CreationOrder {
public:
    ~ParameterInterface() override;

    /// Lets the shaders go, destroys those made here, and gives the key back. Safe to repeat.
    void Shutdown();

    bool AddListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener) override;
    bool RemoveListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener) override;
    /// Listeners that hear of changes of this input's own cells alone, after the structure
    /// listeners everywhere have heard, and not of changes that come up from below.
    bool AddListenerChangeConnection(FastDelegate1<IParameter*, bool>& listener);
    bool RemoveListenerChangeConnection(FastDelegate1<IParameter*, bool>& listener);

    /// Adds a call of the constructor of each connected shader.
    bool CollectConstructor(CompoundStatement* body) override;

    /// Whether every cell holds a complete shader.
    bool IsComplete(Result* result) const override;
    ParameterClass GetClass() override { return kClass_Interface; }
    TypeSpecifier GetTypeSpecifier() override { return kType_UserDefined; }
    /// The declared interface or class.
    std::string GetType() override;
    std::string GetName() override;
    int GetLength() const override;
    bool IsDefault(int index) const override;
    bool IsDefault() const override;
    bool GetAsString(std::string& out, int index) const override;
    bool GetAsString(std::string& out) const override;

    using IParameter::Get;
    using IParameter::Set;
    bool Get(IShader*& value, int index) override;
    bool Get(IShader*& value) override;

    /// The name behind which the key makes it unique; "Shutdown" after the end.
    const std::string& GetNameMangled() const { return _nameMangled; }
    /// The shader whose code stands behind the cell @p index: the one that was set or, for a view
    /// of another shader, that one. @return borrowed; null for an empty cell or no such index
    Shader* GetShaderBase(int index) const;
    /// The cells that may have changed since the listeners of connections were last called; the same
    /// one may come several times, and one that is no longer there.
    const std::vector<int>& GetCellsChanged() const { return _cellsChanged; }
    /// Remembers the classes of the shaders that it holds: the owner's code could be built with them.
    void ProveCells();
    /// Whether the cells that have changed hold shaders of such classes.
    bool AreChangesProven() const;
    /// The shader of the first cell that is not complete, null when that is empty or there is none.
    Shader* GetShaderIncomplete() const;
    /// The shader or class that has this input.
    StructureNode* GetOwner() const { return _pOwner; }
    /// Tells whether the input is still there.
    LifeToken::Watch GetWatch() const { return _life.GetWatch(); }
    /// Whether somebody hears the changes of this input.
    bool HasListeners() const { return !_listenersChangeStructure.IsEmpty(); }

    /// Called by a shader that goes: empties @p cells, those that hold it.
    void OnDeleteShader(Shader* base, const std::set<int>& cells);
    /// Called by a shader in @p countCells cells that has become complete, or incomplete.
    void OnChangeCompleteness(int countCells, bool isComplete);
    /// Called for a change below a connected shader: tells the structure listeners.
    bool RelayChangeStructure();

protected:
    ParameterInterface() = default;

    /// @param manager     borrowed; gives the key
    /// @param declaration borrowed, in the library's tree
    /// @param owner       borrowed, has this input
    /// @param stem        of the mangled name, before the key's text
    void _Init(IMgrEffects* manager, const VariableDeclaration* declaration, StructureNode* owner,
               const std::string& stem, int length, bool isResizable);

    /// Whether the declared type is the class or the interface of @p shader; null always fits.
    /// @param format of the message otherwise, in the manager's current result: declared type,
    ///               interface, class
    bool _Fits(IShader* shader, const char* format) const;
    /// Whether connecting @p shader, which fits, is possible: it is made by this manager and does
    /// not depend on the owner. Tells otherwise why not in the manager's current result.
    bool _CanConnect(IShader* shader) const;
    /// Puts @p shader into a cell and tells nobody.
    /// @return the shader before if it was made here, for the caller to destroy; otherwise null
    IShader* _Store(int index, IShader* shader, bool isDefault);
    void _DestroyDefault(IShader* shader);
    /// Takes the length, with new cells empty. Cells that go must be empty.
    bool _Resize(int length);
    /// Makes a shader of the class @p name by the default of the declaration.
    /// @return owned by this input as soon as it is stored; null when there is none
    IShader* _CreateDefault(const std::string& name, Result* result);
    /// Carries a change of the cells to everybody who hears of it.
    /// @return false when code can't be made or a listener answered false
    bool _ChangeStructure();

    IMgrEffects* _pMgrEffects = nullptr;         ///< borrowed
    const VariableDeclaration* _pDecl = nullptr; ///< borrowed
    Key _key;
    std::string _nameMangled;
    std::string _nameIndex;
    std::unique_ptr<Value<IShader*>> _pValue;
    std::vector<bool> _defaults; ///< for each cell, whether its shader was made here
    ListenerSet<FastDelegate1<IParameter*, bool>> _listenersChangeStructure;
    LifeToken _life;

private:
    void _Connect(int index);
    void _Disconnect(int index);
    void _ListenToView(IShader* view, int index);
    void _ForgetView(IShader* view, int index);
    bool _OnEndView(IShader* view);

    StructureNode* _pOwner = nullptr; ///< borrowed
    std::vector<Shader*> _bases;      ///< for each cell, borrowed
    /// The cells that hold views, by view; never walked.
    std::map<IShader*, std::set<int>> _views;
    int _countIncomplete = 0; ///< cells that are empty or hold an incomplete shader
    std::vector<int> _cellsChanged;
    std::set<std::uint64_t> _classesProven; ///< their creation numbers
    ListenerSet<FastDelegate1<IParameter*, bool>> _listenersChangeConnection;
};

} // namespace Tolen::Effects
