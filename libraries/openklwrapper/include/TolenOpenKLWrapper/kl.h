#pragma once

/// @file
/// The C side of OpenKL that its users call by name. An implementation of OpenKL defines these
/// functions; the wrapper only declares them.

/// The handle of a primitive; a type of its own, so that overloads tell it from an integer.
enum KLprimitive : int {
    KL_NO_PRIMITIVE = 0, ///< none
};

/// The handle of a texture; null is none.
typedef struct KLtextureRecord* KLtexture;

/// The handle of a program; 0 is none.
typedef unsigned int KLprogram;

/// The target at which buffers are bound for uniform blocks.
#define KL_UNIFORM_BUFFER 0x10122
/// The target at which buffers of vertex attributes are bound.
#define KL_ARRAY_BUFFER 0x8892

/// The wrap mode that repeats an image in both directions.
#define KL_REPEAT 0x2901
/// The wrap mode that lets the outermost texels go on.
#define KL_CLAMP_TO_EDGE 0x812F
/// The wrap mode that repeats an image, every second time reversed.
#define KL_MIRRORED_REPEAT 0x8370
/// The filter that reads the nearest texel.
#define KL_NEAREST 0x2600
/// The filter that mixes the four nearest texels.
#define KL_LINEAR 0x2601

extern "C" {

/// Makes the program current. While a primitive is bound, that primitive is shaded by the program
/// from then on. 0 takes the program away.
void klUseProgram(KLprogram program);

/// Writes @p bytes bytes of @p data at @p offset into the buffer bound at @p target. Writes outside
/// the buffer are dropped whole.
void klBufferSubData(int target, long offset, long bytes, const void* data);
}
