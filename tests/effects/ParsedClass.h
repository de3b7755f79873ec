#pragma once

#include "KslParser.h"

#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorPrintKsl.h"

#include "TolenCore/FastDelegate.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace Tolen::Effects::Tests {

/// The class A, read from the text of its members.
class ParsedClass {
public:
    explicit ParsedClass(const std::string& members) : _module(Module::Create(nullptr)) {
        std::vector<std::string> errors;
        const bool isParsed =
            KslParser::Parse(_module.get(), errors, _file, "class A\n{\n" + members + "\n}\n", 0);
        EXPECT_TRUE(isParsed) << members << (errors.empty() ? "" : errors.front());
    }

    /// The member @p name, which must be there.
    VariableDeclaration* GetVariable(const std::string& name) const {
        for (VariableDeclaration* variable : _GetClass()->GetMemberVariables()) {
            if (variable->GetIdentifier()->GetString() == name) {
                return variable;
            }
        }
        ADD_FAILURE() << "no member " << name;
        return nullptr;
    }

    /// The variable that the first method's first statement declares.
    VariableDeclaration* GetLocal() const {
        const FunctionDefinition* method = _GetClass()->GetMemberFunctions().at(0);
        const Statement* statement = method->GetCompoundStatement()->GetStatements().at(0);
        return static_cast<const DeclarationStatement*>(statement)->GetDeclaration();
    }

    /// A new module with the methods as functions.
    std::unique_ptr<Module> CloneMethods() const {
        std::unique_ptr<Module> module(Module::Create(nullptr));
        for (const FunctionDefinition* method : _GetClass()->GetMemberFunctions()) {
            module->AddFunctionDefinition(method->Clone(module.get()));
        }
        return module;
    }

private:
    ClassDefinition* _GetClass() const { return _module->GetClassDefinition("A"); }

    const std::string _file = "folder/a.ksl";
    std::unique_ptr<Module> _module;
};

/// The lines of a module's text that aren't empty, without their indentation.
inline std::vector<std::string> PrintLines(Module* module) {
    VisitorPrintKsl printer(nullptr, nullptr, false);
    EXPECT_TRUE(module->AcceptVisitor(&printer));
    std::vector<std::string> lines(1);
    for (const char c : printer.GetText()) {
        if (c == '\n') {
            lines.emplace_back();
        } else if (c != '\t' || !lines.back().empty()) {
            lines.back() += c;
        }
    }
    std::erase(lines, std::string());
    return lines;
}

/// Runs visitors that something offers over a module.
class Transformer {
public:
    explicit Transformer(Module* module) : _pModule(module) {}

    /// @return what the visit of @p transformed answers
    template <class T>
    bool Run(T& transformed) {
        FastDelegate2<Class, Visitor*, bool> visit = MakeDelegate(this, &Transformer::_Visit);
        return transformed.VisitTransformations(visit);
    }

    /// The classes of nodes that were offered.
    const std::vector<Class>& GetClasses() const { return _classes; }

private:
    bool _Visit(Class nodes, Visitor* visitor) {
        _classes.push_back(nodes);
        return _pModule->AcceptVisitor(visitor);
    }

    Module* _pModule;
    std::vector<Class> _classes;
};

} // namespace Tolen::Effects::Tests
