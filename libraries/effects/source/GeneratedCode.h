#pragma once

#include "TolenEffects/SyntaxTypes.h"

#include <string>

namespace Tolen::Effects {

class CompoundStatement;
class Expression;
class FunctionCall;
class FunctionPrototype;
class Module;

/// The few forms of code that the library writes itself. All nodes belong to @p module.

/// The parameter that tells a generated function which object it is called for.
inline constexpr const char* kNameParameterThis = "iThis";

/// Declares the global `qualifier type name;`.
void DeclareGlobal(Module* module, TypeSpecifier type, const std::string& name,
                   StorageQualifier qualifier);

/// A variable named @p name, for the caller to place.
Expression* CreateVariableNamed(Module* module, const std::string& name);

/// A call of @p function without arguments, for the caller to complete and place.
FunctionCall* CreateCall(Module* module, const std::string& function);

/// Adds `function();` to @p body.
void AddCallStatement(Module* module, CompoundStatement* body, const std::string& function);

/// Adds `target = value;` to @p body, which takes both.
void AddAssignmentStatement(Module* module, CompoundStatement* body, Expression* target,
                            Expression* value);

/// Puts `int iThis` before all parameters of @p prototype.
void PrependParameterThis(FunctionPrototype* prototype);

/// Declares `void name();`.
void DeclareFunctionVoid(Module* module, const std::string& name);

/// Defines `void name() body`.
void DefineFunctionVoid(Module* module, const std::string& name, CompoundStatement* body);

} // namespace Tolen::Effects
