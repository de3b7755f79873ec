#pragma once

#include <map>
#include <memory>
#include <string>
#include <unordered_map>

namespace Tolen {
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class ClassDefinition;
class FunctionIndex;
class IMgrEffects;
class InterfaceDefinition;
class IPrototypeInterface;
class IShader;
class Module;
class PrototypeInterface;
class PrototypeShader;

/// One parsed shader source: its syntax tree, and the prototypes of those of its classes and
/// interfaces that somebody asked for. Names that a prototype needs from other libraries are looked
/// up when it is made, so that those libraries may be added later than this one.
class Library {
public:
    Library();
    ~Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    /// Parses a source. No prototype is made yet.
    /// @param mgrEffects     borrowed
    /// @param lineAdjustment the lines to add to those of the source in messages
    /// @return false, with the errors in @p result, the last one first
    bool Init(IMgrEffects* mgrEffects, const std::string& name, const std::string& source,
              Result* result, int lineAdjustment);
    /// Destroys the prototypes, then the tree. Safe to repeat.
    void Shutdown();
    /// Destroys the shader prototypes alone, with their shaders; look-ups of classes and interfaces
    /// answer null from then on.
    void ShutdownPrototypeShaders();

    /// Look in this library alone and answer null, without a message, for a name that it does not
    /// declare. A prototype that can't be made is not remembered: each request tries again and
    /// reports again. A class that is just being made is answered as it stands.
    IPrototypeInterface* GetPrototypeInterface(const std::string& name);
    PrototypeShader* GetPrototypeShader(const std::string& name, Result* result);

    /// Makes a shader of the class @p name.
    /// @return owned by its prototype; null when the class isn't here, is just being made or can't
    ///         be used
    IShader* CreateShader(const std::string& name, Result* result);
    /// Destroys a shader of any library.
    void DestroyShader(IShader* shader);

    const std::string& GetName() const { return _name; }
    /// The tree; null before Init and after Shutdown.
    Module* GetModule() const { return _pModule.get(); }
    IMgrEffects* GetMgrEffects() const { return _pMgrEffects; }
    /// The functions outside of classes by name, indexed at the first call. The library must have
    /// a tree.
    const FunctionIndex& GetFunctionIndex();

protected:
    IPrototypeInterface* _CreatePrototypeInterface(InterfaceDefinition* definition);
    PrototypeShader* _CreatePrototypeShader(ClassDefinition* definition, Result* result);

private:
    /// Destroys the prototype of a class, if there is one.
    void _Forget(const std::string& name);

    IMgrEffects* _pMgrEffects = nullptr; ///< borrowed
    std::unique_ptr<Module> _pModule;
    std::unordered_map<std::string, ClassDefinition*> _classes; ///< the tree's, by name
    std::string _name;
    std::map<std::string, std::unique_ptr<PrototypeInterface>> _prototypeInterfaces;
    std::map<std::string, std::unique_ptr<PrototypeShader>> _prototypeShaders;
    std::unique_ptr<FunctionIndex> _pFunctionIndex; ///< null until it is needed
    bool _isClosing = false; ///< from ShutdownPrototypeShaders to the end of Shutdown
};

} // namespace Tolen::Effects
