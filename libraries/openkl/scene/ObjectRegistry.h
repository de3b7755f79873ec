#pragma once

#include "TolenOpenKLWrapper/kl.h"

#include <cstdint>

namespace Tolen::OpenKL {

class Buffer;
class Primitive;
class Program;

/// What the C functions of kl.h find things by: programs by their handles over the whole process,
/// bindings for each thread. Handles are numbers that are never given twice, so that one of an
/// object that is gone finds nothing.

KLprogram RegisterProgram(Program& program);
void UnregisterProgram(KLprogram handle);
/// The program of a handle, or null.
Program* FindProgram(KLprogram handle);

/// A number for a primitive or a texture, above 0.
std::uint32_t MakeHandle();

/// A number above all that were given before, by which changes are told.
std::uint64_t MakeStamp();

/// Binds a primitive on this thread; binds nest.
void PushBoundPrimitive(Primitive& primitive);
/// Ends the innermost bind of this thread if it is one of @p primitive.
void PopBoundPrimitive(const Primitive& primitive);
/// The primitive of the innermost bind, or null.
Primitive* GetBoundPrimitive();
/// Takes a dying primitive out of every bind of this thread.
void ForgetBoundPrimitive(const Primitive& primitive);

void SetBoundBuffer(int target, Buffer* buffer);
Buffer* GetBoundBuffer(int target);
/// Takes a dying buffer off every target of this thread.
void ForgetBoundBuffer(const Buffer& buffer);

} // namespace Tolen::OpenKL
