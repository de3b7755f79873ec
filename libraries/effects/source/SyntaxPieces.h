#pragma once

#include "TolenEffects/ParentSyntax.h"
#include "TolenEffects/SyntaxTypes.h"

#include <string>

namespace Tolen::Effects {

class CompoundStatement;
class Expression;
class FunctionCall;
class FunctionSelection;
class Module;
class Variable;
class VariableDeclaration;

/// The pieces of generated code that parameters and members are made of.

/// A use of the variable @p name, owned by the caller.
Variable* MakeVariable(Module* module, const std::string& name);

/// Adds a global variable to @p module.
/// @param initializer owned; null for none
/// @return the declaration, owned by the module, for qualifiers and array lengths
VariableDeclaration* AddGlobalVariable(Module* module, TypeSpecifier specifier,
                                       const std::string& name, Expression* initializer);

/// Lets @p declaration declare an array of @p length elements.
void SetArrayLength(VariableDeclaration* declaration, int length);

/// Adds the statement `target = value;` to @p body. Both expressions are taken.
void AddAssignment(CompoundStatement* body, Expression* target, Expression* value);

/// Whether @p expression is a variable called @p name.
bool IsVariable(const Expression* expression, const std::string& name);

/// The name of the method that @p selection calls. What is called may also be spelled like the
/// constructor of a built-in type, whose keyword it is then.
std::string GetMethodName(const FunctionSelection* selection);

/// The call of @p function with copies of the arguments that @p selection gives its method, owned
/// by the caller.
FunctionCall* MakeCallOfMethod(const FunctionSelection* selection, const std::string& function);

/// Puts @p node, which is taken, in the place of the node that is visited through @p slot. It is
/// deleted where the slot takes no replacement.
/// @tparam Family Expression or Statement
template <class Family, class Node>
void ReplaceVisited(TIParentSyntax<Family>* slot, Node* node) {
    if (!slot->SetReplacement(node) || slot->GetReplacement() != node) {
        delete node;
    }
}

} // namespace Tolen::Effects
