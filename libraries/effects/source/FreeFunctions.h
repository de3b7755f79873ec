#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace Tolen::Effects {

class ClassDefinition;
class FunctionDefinition;
class Library;
class MgrEffectsImpl;
class Module;

/// The functions outside of classes that the code of one class calls, and those that they call in
/// turn, with all definitions of each name.
///
/// A name means the function of the library that calls it or, failing that, of the first library by
/// name that defines it. It is looked up when this object is made. In generated code a function
/// keeps its name unless two loaded libraries define that name: then "_l" and a hash of its
/// library's name, in hexadecimal, are put behind it.
class FreeFunctions {
public:
    /// Rewrites a module of copied functions, all of them from @p library.
    using Rewrite = std::function<bool(Library* library, Module* module)>;

    /// @param manager borrowed
    explicit FreeFunctions(MgrEffectsImpl* manager);
    ~FreeFunctions();
    FreeFunctions(const FreeFunctions&) = delete;
    FreeFunctions& operator=(const FreeFunctions&) = delete;

    /// Copies what the class calls. Calls of its own methods don't count.
    /// @param library    that of the class
    /// @param definition the class
    /// @return the answer of @p rewrite, which is called once for each library
    bool Init(Library* library, const ClassDefinition* definition, const Rewrite& rewrite);

    bool IsEmpty() const { return _functions.empty(); }

    /// Gives calls their names in a constructor that is made of the initial values of variables,
    /// where `f(x)` has been read as the construction of a value of the type f.
    void NameCalls(FunctionDefinition* constructor) const;

    /// Adds those functions to @p into that it doesn't have yet.
    void Collect(Module* into) const;

    /// Gives the calls of functions, in the definitions of the class's code in @p module from
    /// position @p first on, the names that the functions have in generated code.
    void RenameCalls(Module* module, std::size_t first) const;

private:
    /// A function by its library and its name.
    using Id = std::pair<std::string, std::string>;
    /// The functions that code calls, by the name that it calls them by.
    using Calls = std::map<std::string, Id>;

    struct Function {
        std::vector<FunctionDefinition*> definitions; ///< borrowed from the library's copies
        Calls calls;
    };
    /// Copies of functions of one library.
    struct Copies {
        Library* pLibrary = nullptr; ///< borrowed
        std::unique_ptr<Module> pModule;
    };

    Calls _Resolve(Library* caller, const std::set<std::string>& names, std::vector<Id>& open);
    Library* _FindLibrary(Library* caller, const std::string& name) const;
    std::string _GetNameGenerated(const Id& function) const;
    std::map<std::string, std::string> _GetRenames(const Calls& calls) const;

    MgrEffectsImpl* _pManager; ///< borrowed
    Calls _calls;              ///< those of the class itself
    std::map<Id, Function> _functions;
    std::map<std::string, Copies> _copies; ///< by the library's name
};

} // namespace Tolen::Effects
