#include "FreeFunctions.h"

#include "FunctionIndex.h"
#include "Library.h"
#include "MgrEffectsImpl.h"

#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorDelegate.h"

#include "TolenCore/Format.h"

#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace Tolen::Effects {

namespace {

/// The name that a call bears, null for a constructor of a built-in type. The initial value of a
/// member spells a call like a constructor of a user type.
String* _GetCalledName(const FunctionCall* call) {
    if (call->GetName() != nullptr) {
        return call->GetName();
    }
    const Type* type = call->GetType();
    return type != nullptr && type->GetClass() == kClass_UserType
               ? static_cast<const UserType*>(type)->GetName()
               : nullptr;
}

/// Whether @p call is the right side of a selection, whose name belongs to another object.
bool _IsSelected(const FunctionCall* call, const Syntax* parent) {
    return parent != nullptr && parent->GetClass() == kClass_FunctionSelection &&
           static_cast<const FunctionSelection*>(parent)->GetFunction() == call;
}

/// Gathers the names that code calls, but for calls of other objects' methods.
class CallCollector final : public Visitor {
public:
    CallCollector() : Visitor(kChainWalk_Iterated) {}

    using Visitor::Visit;
    bool Visit(const FunctionCall* call, TParentSyntaxConst<Expression>* slot) override {
        const String* name = _GetCalledName(call);
        if (name != nullptr && !_IsSelected(call, slot->GetParent())) {
            _names.insert(name->GetString());
        }
        return Visitor::Visit(call, slot);
    }

    std::set<std::string> Take() { return std::move(_names); }

private:
    std::set<std::string> _names;
};

std::set<std::string> _CollectCalls(const ClassDefinition* definition) {
    CallCollector collector;
    definition->AcceptVisitor(&collector);
    std::set<std::string> names = collector.Take();
    for (const FunctionDefinition* method : definition->GetMemberFunctions()) {
        names.erase(method->GetFunctionPrototype()->GetName()->GetString());
    }
    return names;
}

std::set<std::string> _CollectCalls(const std::vector<FunctionDefinition*>& definitions) {
    CallCollector collector;
    for (const FunctionDefinition* definition : definitions) {
        definition->AcceptVisitor(&collector);
    }
    return collector.Take();
}

/// Calls @p visit for every call in a function but those of other objects' methods.
template <class Visit>
void _VisitCalls(FunctionDefinition* definition, Visit visit) {
    auto callback = [&visit](FunctionCall* call, TIParentSyntax<Expression>* slot) {
        if (!_IsSelected(call, slot->GetParent())) {
            visit(call);
        }
        return true;
    };
    using VisitorCall = TVisitorSyntaxDelegate<FunctionCall, TIParentSyntax<Expression>>;
    VisitorCall visitor(VisitorCall::Delegate::Borrow(callback));
    definition->AcceptVisitor(&visitor);
}

void _RenameCalls(const std::map<std::string, std::string>& renames,
                  FunctionDefinition* definition) {
    _VisitCalls(definition, [&renames](FunctionCall* call) {
        if (call->GetName() == nullptr) {
            return;
        }
        const auto found = renames.find(call->GetName()->GetString());
        if (found != renames.end()) {
            call->GetName()->SetString(found->second);
        }
    });
}

std::uint32_t _HashFnv1a(std::string_view text) {
    std::uint32_t hash = 2166136261u;
    for (const char c : text) {
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    }
    return hash;
}

} // namespace

FreeFunctions::FreeFunctions(MgrEffectsImpl* manager) : _pManager(manager) {}

FreeFunctions::~FreeFunctions() = default;

bool FreeFunctions::Init(Library* library, const ClassDefinition* definition,
                         const Rewrite& rewrite) {
    std::vector<Id> open;
    _calls = _Resolve(library, _CollectCalls(definition), open);
    while (!open.empty()) {
        const Id id = std::move(open.back());
        open.pop_back();
        Copies& copies = _copies.find(id.first)->second;
        Function& function = _functions.find(id)->second;
        const auto& definitions = copies.pLibrary->GetFunctionIndex().Find(id.second);
        for (const FunctionDefinition* original : definitions) {
            FunctionDefinition* copy = original->Clone(copies.pModule.get());
            copies.pModule->AddFunctionDefinition(copy);
            function.definitions.push_back(copy);
        }
        function.calls = _Resolve(copies.pLibrary, _CollectCalls(definitions), open);
    }
    bool all = true;
    for (const auto& [name, copies] : _copies) {
        all = rewrite(copies.pLibrary, copies.pModule.get()) && all;
    }
    return all;
}

FreeFunctions::Calls FreeFunctions::_Resolve(Library* caller, const std::set<std::string>& names,
                                             std::vector<Id>& open) {
    Calls calls;
    for (const std::string& name : names) {
        Library* library = _FindLibrary(caller, name);
        if (library == nullptr) {
            continue; // a function of the language, or one that the API will miss
        }
        const Id id(library->GetName(), name);
        calls.emplace(name, id);
        if (!_functions.try_emplace(id).second) {
            continue;
        }
        open.push_back(id);
        Copies& copies = _copies[id.first];
        if (copies.pModule == nullptr) {
            copies.pLibrary = library;
            copies.pModule.reset(Module::Create(nullptr));
        }
    }
    return calls;
}

Library* FreeFunctions::_FindLibrary(Library* caller, const std::string& name) const {
    if (!caller->GetFunctionIndex().Find(name).empty()) {
        return caller;
    }
    Library* found = nullptr;
    auto find = [&](Library* library) {
        if (!library->GetFunctionIndex().Find(name).empty()) {
            found = library;
        }
        return found == nullptr;
    };
    _pManager->VisitLibraries(FastDelegate1<Library*, bool>::Borrow(find));
    return found;
}

std::string FreeFunctions::_GetNameGenerated(const Id& function) const {
    int count = 0;
    auto visit = [&](Library* library) {
        count += library->GetFunctionIndex().Find(function.second).empty() ? 0 : 1;
        return count < 2;
    };
    _pManager->VisitLibraries(FastDelegate1<Library*, bool>::Borrow(visit));
    return count < 2 ? function.second
                     : Format("%s_l%x", function.second.c_str(), _HashFnv1a(function.first));
}

std::map<std::string, std::string> FreeFunctions::_GetRenames(const Calls& calls) const {
    std::map<std::string, std::string> renames;
    for (const auto& [name, id] : calls) {
        if (std::string generated = _GetNameGenerated(id); generated != name) {
            renames.emplace(name, std::move(generated));
        }
    }
    return renames;
}

void FreeFunctions::Collect(Module* into) const {
    if (IsEmpty()) {
        return;
    }
    std::unordered_map<std::string, const Function*> missing;
    for (const auto& [id, function] : _functions) {
        missing.emplace(_GetNameGenerated(id), &function);
    }
    for (const FunctionDefinition* definition : into->GetFunctionDefinitions()) {
        missing.erase(definition->GetFunctionPrototype()->GetName()->GetString());
    }
    for (const auto& [id, function] : _functions) {
        const std::string generated = _GetNameGenerated(id);
        const auto found = missing.find(generated);
        if (found == missing.end()) {
            continue;
        }
        const std::map<std::string, std::string> renames = _GetRenames(function.calls);
        for (const FunctionDefinition* definition : function.definitions) {
            FunctionDefinition* copy = definition->Clone(into);
            copy->GetFunctionPrototype()->GetName()->SetString(generated);
            _RenameCalls(renames, copy);
            into->AddFunctionDefinition(copy);
        }
    }
}

void FreeFunctions::NameCalls(FunctionDefinition* constructor) const {
    _VisitCalls(constructor, [this](FunctionCall* call) {
        const String* name = _GetCalledName(call);
        if (call->GetName() == nullptr && name != nullptr && _calls.count(name->GetString()) != 0) {
            call->SetName(name->Clone(call->GetModule()));
            call->SetType(nullptr);
        }
    });
}

void FreeFunctions::RenameCalls(Module* module, std::size_t first) const {
    const std::map<std::string, std::string> renames = _GetRenames(_calls);
    if (renames.empty()) {
        return;
    }
    const std::vector<FunctionDefinition*>& definitions = module->GetFunctionDefinitions();
    for (std::size_t i = first; i < definitions.size(); ++i) {
        _RenameCalls(renames, definitions[i]);
    }
}

} // namespace Tolen::Effects
