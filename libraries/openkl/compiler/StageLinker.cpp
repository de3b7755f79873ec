#include "compiler/StageLinker.h"

#include "compiler/AccessChecker.h"
#include "compiler/Diagnostics.h"
#include "compiler/Limits.h"

#include <algorithm>
#include <cstring>

namespace Tolen::OpenKL {

namespace {

/// The name of a function and the types of its parameters, which tell it from others.
std::string MakeKey(const Function& function) {
    std::string key(function.name);
    for (const Variable* parameter : function.parameters) {
        key += "," + parameter->type.ToString();
    }
    return key;
}

bool HaveSameInterface(const Function& a, const Function& b) {
    return AreSameAcrossTexts(a.returnType, b.returnType) &&
           std::equal(a.parameters.begin(), a.parameters.end(), b.parameters.begin(),
                      b.parameters.end(), [](const Variable* x, const Variable* y) {
                          return x->direction == y->direction &&
                                 AreSameAcrossTexts(x->type, y->type);
                      });
}

/// Uniforms that the client may change later are uniforms all the same.
Storage GetLinkStorage(Storage storage) {
    return storage == kStorage_MutableUniform ? kStorage_Uniform : storage;
}

bool AreSameLiterals(const Expression* a, const Expression* b) {
    if (a->kind != kExpression_Literal || b->kind != kExpression_Literal) {
        return false;
    }
    return std::equal(
        a->As<LiteralExpression>().values.begin(), a->As<LiteralExpression>().values.end(),
        b->As<LiteralExpression>().values.begin(), b->As<LiteralExpression>().values.end(),
        [](ScalarValue x, ScalarValue y) { return x.i == y.i; });
}

} // namespace

LinkMessages::LinkMessages(std::string_view program)
    : _prefix("program " + Quote(program) + ": error: ") {}

void LinkMessages::Error(const std::string& text) {
    if (_count++ < kMaxMessages) {
        _text += (_text.empty() ? "" : "\n") + _prefix + text;
    }
}

std::string Locate(const LinkInput& text, int line) {
    return Quote(text.name) + " line " + std::to_string(line);
}

StageLinker::StageLinker(std::span<const LinkInput* const> texts, LinkedStage& stage,
                         LinkMessages& messages)
    : _texts(texts), _stage(stage), _messages(messages) {}

void StageLinker::Link() {
    _MergeGlobals();
    _CollectFunctions();
    _WalkCalls();
}

std::string StageLinker::LocateGlobal(std::size_t global) const {
    return Locate(*_origins[global].text, _origins[global].line);
}

void StageLinker::_MergeGlobals() {
    for (const LinkInput* text : _texts) {
        for (const Variable* variable : text->shader->globals) {
            _MergeGlobal(*text, *variable);
        }
    }
}

void StageLinker::_MergeGlobal(const LinkInput& text, const Variable& variable) {
    const auto [found, isNew] = _globals.emplace(variable.name, _stage.globals.size());
    _stage.globalOf[&variable] = found->second;
    if (isNew) {
        LinkedGlobal global;
        global.name = variable.name;
        global.type = variable.type;
        global.storage = variable.storage;
        _stage.globals.push_back(global);
        _origins.push_back({&text, variable.line});
    }
    LinkedGlobal& global = _stage.globals[found->second];
    const auto describe = [](Storage storage, const Type& type) {
        return std::string(StorageToString(storage)) + " of type " + type.ToString();
    };
    if (GetLinkStorage(global.storage) != GetLinkStorage(variable.storage) ||
        !AreSameAcrossTexts(global.type, variable.type)) {
        _messages.Error(Quote(variable.name) + " is " + describe(global.storage, global.type) +
                        " in " + LocateGlobal(found->second) + " and " +
                        describe(variable.storage, variable.type) + " in " +
                        Locate(text, variable.line));
        return;
    }
    if (global.varyingKind == kVarying_Plain) {
        global.varyingKind = variable.varyingKind;
    }
    global.isRead = global.isRead || variable.reads > 0;
    global.isWritten = global.isWritten || variable.isWritten;
    if (global.initializer == nullptr) {
        global.initializer = variable.initializer;
    } else if (variable.initializer != nullptr &&
               !AreSameLiterals(global.initializer, variable.initializer)) {
        _messages.Error(Quote(variable.name) + " has one initialiser in " +
                        LocateGlobal(found->second) + " and another in " +
                        Locate(text, variable.line));
    }
}

void StageLinker::_CollectFunctions() {
    for (const LinkInput* text : _texts) {
        for (const Function* function : text->shader->functions) {
            _CollectFunction(*text, *function);
        }
    }
}

void StageLinker::_CollectFunction(const LinkInput& text, const Function& function) {
    const auto [found, isNew] = _functions.try_emplace(MakeKey(function));
    Entry& entry = found->second;
    if (isNew) {
        entry.first = &function;
        entry.firstText = &text;
        _order.push_back(&entry);
    } else if (!HaveSameInterface(*entry.first, function)) {
        _messages.Error("function '" + entry.first->returnType.ToString() + " " +
                        entry.first->GetSignature() + "' of " +
                        Locate(*entry.firstText, entry.first->line) + " is '" +
                        function.returnType.ToString() + " " + function.GetSignature() + "' in " +
                        Locate(text, function.line));
        return;
    }
    if (function.body == nullptr) {
        return;
    }
    if (entry.definition != nullptr) {
        _messages.Error("function " + Quote(function.GetSignature()) + " is defined in " +
                        Locate(*entry.definitionText, entry.definition->line) + " and again in " +
                        Locate(text, function.line));
        return;
    }
    entry.definition = &function;
    entry.definitionText = &text;
}

StageLinker::Entry* StageLinker::_Find(const std::string& key) {
    const auto found = _functions.find(key);
    return found == _functions.end() ? nullptr : &found->second;
}

void StageLinker::_WalkCalls() {
    for (const LinkInput* text : _texts) {
        for (const Function* callee : text->shader->initializerCallees) {
            if (Entry* entry = _Resolve(*callee, *text, true)) {
                _Walk(*entry, true);
            }
        }
    }
    for (const char* name : {"setup", "main"}) {
        if (Entry* entry = _Find(name); entry != nullptr && entry->definition != nullptr) {
            _Walk(*entry, true);
            (name[0] == 's' ? _stage.setup : _stage.main) = entry->definition;
        }
    }
    // What nothing runs need not be complete, but it is held to the rule against cycles.
    for (Entry* entry : _order) {
        if (entry->definition != nullptr) {
            _Walk(*entry, false);
        }
    }
}

void StageLinker::_Walk(Entry& root, bool isReachable) {
    if (root.state != Entry::kUnseen) {
        return;
    }
    root.state = Entry::kOpen;
    _path.push_back({&root, 0});
    while (!_path.empty()) {
        Visit& visit = _path.back();
        const Function& function = *visit.entry->definition;
        if (visit.nextCallee == function.callees.size()) {
            visit.entry->state = Entry::kDone;
            if (isReachable) {
                _stage.functions.push_back(&function);
            }
            _path.pop_back();
            continue;
        }
        const Function& callee = *function.callees[visit.nextCallee++];
        Entry* entry = _Resolve(callee, *visit.entry->definitionText, isReachable);
        if (entry == nullptr) {
            continue;
        }
        if (entry->state == Entry::kOpen) {
            _ReportCycle(*entry);
        } else if (entry->state == Entry::kUnseen) {
            entry->state = Entry::kOpen;
            _path.push_back({entry, 0});
        }
    }
}

StageLinker::Entry* StageLinker::_Resolve(const Function& callee, const LinkInput& caller,
                                          bool isReachable) {
    Entry* entry = _Find(MakeKey(callee));
    if (entry->definition != nullptr) {
        if (isReachable) {
            _stage.definitionOf[&callee] = entry->definition;
        }
        return entry;
    }
    if (isReachable && !entry->wasReported) {
        entry->wasReported = true;
        _messages.Error("function " + Quote(callee.GetSignature()) + " is called in " +
                        Locate(caller, callee.firstCall) + " and defined nowhere");
    }
    return nullptr;
}

void StageLinker::_ReportCycle(const Entry& target) {
    auto first = std::find_if(_path.begin(), _path.end(),
                              [&](const Visit& visit) { return visit.entry == &target; });
    // The whole of a long cycle helps nobody.
    constexpr std::ptrdiff_t kMaxShown = 8;
    const std::ptrdiff_t length = _path.end() - first;
    std::string text = "functions call one another in a cycle: ";
    for (std::ptrdiff_t i = 0; i < std::min(length, kMaxShown); ++i) {
        text += Quote(first[i].entry->definition->GetSignature()) + " calls ";
    }
    text += length > kMaxShown ? "..., which calls " : "";
    text += Quote(target.definition->GetSignature()) + " (" +
            Locate(*target.definitionText, target.definition->line) + ")";
    _messages.Error(text);
}

} // namespace Tolen::OpenKL
