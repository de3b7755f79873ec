#pragma once

namespace Tolen::Effects {

class UserType;
class VariableDeclaration;

/// The class that the initializer of an input names: the declaration's default has to be a
/// constructor call, such as `input IColor color = Checker();`.
/// @param source the unit that asks, for the failed check
/// @return null, after a failed check, for any other initializer
const UserType* GetConstructedType(const VariableDeclaration* _pDecl, const char* source);

} // namespace Tolen::Effects
