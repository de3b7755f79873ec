#include "language/BuiltinTexts.h"

#include <algorithm>
#include <iterator>

namespace Tolen::Language {

namespace {

// clang-format off
constexpr BuiltinText kTexts[] = {
    // Angles.
    {"radians", "degrees", "An angle in radians, given in degrees."},
    {"degrees", "radians", "An angle in degrees, given in radians."},
    {"sin", "angle", "The sine of an angle in radians."},
    {"cos", "angle", "The cosine of an angle in radians."},
    {"tan", "angle", "The tangent of an angle in radians."},
    {"asin", "sine", "The angle in radians, from -pi/2 to pi/2, that has a sine."},
    {"acos", "cosine", "The angle in radians, from 0 to pi, that has a cosine."},
    {"atan", "tangent|y x", "The angle in radians that has a tangent, from -pi/2 to pi/2; of y and x the angle of the direction (x, y), from -pi to pi."},
    {"sinh", "x", "The hyperbolic sine."},
    {"cosh", "x", "The hyperbolic cosine."},
    {"tanh", "x", "The hyperbolic tangent."},
    {"asinh", "x", "The inverse of the hyperbolic sine."},
    {"acosh", "x", "The inverse of the hyperbolic cosine, for x from 1 on."},
    {"atanh", "x", "The inverse of the hyperbolic tangent, for x between -1 and 1."},

    // Powers.
    {"pow", "base exponent", "The base to the power of the exponent. The base is not below 0."},
    {"exp", "x", "e to the power of x."},
    {"log", "x", "The natural logarithm, for x above 0."},
    {"exp2", "x", "2 to the power of x."},
    {"log2", "x", "The logarithm to the base 2, for x above 0."},
    {"sqrt", "x", "The square root, for x not below 0."},
    {"inversesqrt", "x", "1 divided by the square root, for x above 0."},

    // Parts of numbers.
    {"abs", "x", "The number without its sign."},
    {"sign", "x", "-1, 0 or 1: whether the number is below, at or above 0."},
    {"floor", "x", "The nearest whole number that is not above x."},
    {"trunc", "x", "The nearest whole number towards 0."},
    {"round", "x", "The nearest whole number."},
    {"roundEven", "x", "The nearest whole number; halfway between two the even one."},
    {"ceil", "x", "The nearest whole number that is not below x."},
    {"fract", "x", "x minus floor(x), from 0 to below 1."},
    {"mod", "x y", "x minus y times floor(x / y): what is left of x, with the sign of y."},
    {"modf", "x whole", "The part of x behind the point; the part before it goes to whole. Both have the sign of x."},
    {"min", "x y", "The smaller of two numbers, component by component."},
    {"max", "x y", "The larger of two numbers, component by component."},
    {"clamp", "x low high", "x, held to the range from low to high."},
    {"mix", "x y weight", "x where the weight is 0, y where it is 1, and a blend between; with bools y where true."},
    {"step", "edge x", "0 where x is below the edge, otherwise 1."},
    {"smoothstep", "low high x", "0 up to low, 1 from high on, with a smooth way between."},
    {"isnan", "x", "Whether the number is none, as 0.0 / 0.0 is."},
    {"isinf", "x", "Whether the number is infinite."},
    {"floatBitsToInt", "x", "The bits of a float as those of an int."},
    {"intBitsToFloat", "x", "The bits of an int as those of a float."},
    {"fma", "x y z", "x times y plus z, rounded once."},

    // Geometry.
    {"length", "x", "The length of a vector."},
    {"distance", "a b", "The distance between two points."},
    {"dot", "a b", "The sum of the products of components; of unit vectors the cosine of the angle between them."},
    {"cross", "a b", "A vector at right angles to both, as long as the area that they span."},
    {"normalize", "x", "The vector of length 1 in the same direction."},
    {"faceforward", "n incident reference", "n, or -n where incident and reference point to the same side: a normal that faces the viewer."},
    {"reflect", "incident normal", "The direction in which a mirror sends what arrives along incident. The normal has length 1."},
    {"refract", "incident normal eta", "The direction in which incident goes on behind a boundary; zero where all is reflected. eta is the index of refraction before the boundary over the one behind it; both vectors have length 1."},

    // Matrices.
    {"matrixCompMult", "a b", "The product of two matrices component by component; a * b is that of algebra."},
    {"outerProduct", "column row", "The matrix whose components are the products of those of a column and a row."},
    {"transpose", "m", "The matrix with columns and rows exchanged."},
    {"determinant", "m", "The determinant of a matrix."},
    {"inverse", "m", "The inverse of a matrix, whose determinant is not 0."},

    // Comparisons.
    {"lessThan", "a b", "For each component whether a is below b."},
    {"lessThanEqual", "a b", "For each component whether a is not above b."},
    {"greaterThan", "a b", "For each component whether a is above b."},
    {"greaterThanEqual", "a b", "For each component whether a is not below b."},
    {"equal", "a b", "For each component whether both are equal; a == b is one bool."},
    {"notEqual", "a b", "For each component whether both differ; a != b is one bool."},
    {"any", "x", "Whether one of the components is true."},
    {"all", "x", "Whether all components are true."},
    {"not", "x", "Each component the other way round."},

    // Textures.
    {"texture2D", "image place bias", "The texel of an image at a place, 0 to 1 from the lower left corner to the upper right one; the bias is added to the mip level."},
    {"textureSize", "image level", "Width and height of an image in pixels, or of one of its mip levels."},

    // Rays and the picture.
    {"spawnRay", "origin direction maxDistance rayClass miss", "Sends a ray on its way, with the ray attributes as they are now. What it hits, or the miss primitive, runs for it later; nothing comes back."},
    {"accumulate", "output value", "Adds to an output of the picture, which is given by its name or by the number of its attachment."},
    {"occluded", "origin direction maxDistance", "Whether anything is in the way."},
    {"traceDistance", "origin direction maxDistance", "The distance of the nearest thing, or -1 where there is none."},
    {"random", "", "A number from 0 to below 1, another one at each call, well spread over the samples of a pixel."},
    {"random2", "", "Two numbers from 0 to below 1, well spread over a square."},
    {"discardRay", "", "Ends the ray: the program of what it has reached doesn't run."},

    // Variables.
    {"kl_OutputRayCount", "", "The most rays that one run spawns, as GetRayCount answers it; in ray and prefix programs an int[8], by class."},
    {"kl_Position", "", "The place of the vertex, in the space of its primitive; to be assigned."},
    {"kl_PrimitiveTransformMatrix", "", "From the space of the primitive to the world."},
    {"kl_PrimitiveTransformMatrixInverseTranspose", "", "The same for normals."},
    {"kl_PixelCoord", "", "The place of the sample on the picture in pixels, from the lower left corner."},
    {"kl_Resolution", "", "Width and height of the picture in pixels."},
    {"kl_SampleIndex", "", "The number of the pixel's sample, from 0."},
    {"kl_SampleCount", "", "The number of samples of each pixel."},
    {"kl_Time", "", "The time that the render was asked for."},
    {"kl_RayOrigin", "", "Where the ray starts, in the world."},
    {"kl_RayDirection", "", "Where the ray goes, in the world, with length 1."},
    {"kl_RayDepth", "", "How many rays led to this one; 0 for those of the renderer."},
    {"kl_RayClass", "", "The class that the ray was spawned with, 0 to 7."},
    {"kl_HitDistance", "", "How far the ray went; on a miss its maximum distance."},
    {"kl_HitPosition", "", "The point that was hit, in the world; on a miss the origin of the ray."},
    {"kl_HitNormal", "", "The normal of the triangle that was hit, in the world, with length 1; on a miss the reverse of the ray's direction."},
    {"kl_HitFront", "", "Whether the ray came from the side that the triangle's normal is on."},
    {"kl_HitBarycentric", "", "The place in the triangle, by the weights of its second and third vertex."},
    {"kl_HitPrimitive", "", "The primitive that was hit; none on a miss."},
    {"kl_Missed", "", "Whether the ray has hit nothing and this is the program of the miss primitive."},
    {"Normal", "", "The shading normal at the hit point, in the world: the vertex attribute a_Normal, interpolated. Surfaces have it, prefixes and renderers don't."},
    {"o_color", "", "The output that is always there; accumulate adds to it."},

    // Keywords of declarations.
    {"class", "", "Begins a class, of which shaders are made."},
    {"interface", "", "Begins a list of methods that classes implement and inputs ask for."},
    {"input", "", "A value, or a connected shader, that the client sets in each shader."},
    {"static", "", "Belongs to the class and is shared by all of its shaders."},
    {"const", "", "Is not changed by code."},
    {"coord", "", "A vertex attribute, which the client names."},
    {"normal", "", "A coord that turns with the primitive as normals do."},
    {"tangent", "", "A coord that turns with the primitive as directions on the surface do."},
    {"output", "", "An output of the picture, besides o_color."},
    {"out", "", "A parameter that the method sets; in a class the same as output."},
    {"in", "", "A parameter that the method reads, as without any word."},
    {"inout", "", "A parameter that the method reads and sets."},
    {"struct", "", "A keyword without a use."},

    // Keywords of statements.
    {"if", "", "Runs a statement if a condition is true."},
    {"else", "", "Runs a statement if the condition of the nearest `if` is not true."},
    {"for", "", "Repeats a statement. From 0 to the length of an array of shaders by ++i it is unrolled."},
    {"while", "", "Repeats a statement as long as a condition is true."},
    {"do", "", "Runs a statement, and again as long as a condition is true."},
    {"break", "", "Leaves the innermost loop."},
    {"continue", "", "Goes on with the next pass of the innermost loop."},
    {"return", "", "Leaves the function, with its result."},
    {"true", "", "The truth value."},
    {"false", "", "The other truth value."},

    // Types.
    {"void", "", "No result."},
    {"float", "", "A number of IEEE single precision."},
    {"int", "", "A whole number of 32 bits. It becomes a float by itself where one is wanted."},
    {"bool", "", "true or false."},
    {"vec2", "", "Two floats: xy, rg or st."},
    {"vec3", "", "Three floats: xyz, rgb or stp."},
    {"vec4", "", "Four floats: xyzw, rgba or stpq."},
    {"ivec2", "", "Two ints."},
    {"ivec3", "", "Three ints."},
    {"ivec4", "", "Four ints."},
    {"bvec2", "", "Two bools; no input."},
    {"bvec3", "", "Three bools; no input."},
    {"bvec4", "", "Four bools; no input."},
    {"mat2", "", "A matrix of 2 x 2 floats, column by column; no input."},
    {"mat3", "", "A matrix of 3 x 3 floats, column by column."},
    {"mat4", "", "A matrix of 4 x 4 floats, column by column."},
    {"sampler2D", "", "An image, which texture2D reads."},
    {"sampler3D", "", "An image of three dimensions; can only be handed on."},
    {"samplerCube", "", "An image of all directions; can only be handed on."},
    {"primitive", "", "A thing that rays can hit or miss, such as the one that spawnRay takes."},
};
// clang-format on

} // namespace

std::span<const BuiltinText> GetBuiltinTexts() {
    return kTexts;
}

const BuiltinText* FindBuiltinText(std::string_view name) {
    const auto found = std::find_if(std::begin(kTexts), std::end(kTexts),
                                    [&](const BuiltinText& text) { return text.name == name; });
    return found == std::end(kTexts) ? nullptr : found;
}

} // namespace Tolen::Language
