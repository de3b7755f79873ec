#pragma once

#include "TolenOpenKLWrapper/IKLPrimitive.h"

#include "TolenCore/Matrix.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace Tolen {
class IKLProgram;
}

namespace Tolen::OpenKL {

/// A primitive with what a renderer gives it: triangles, vertex attributes, a place in the world.
///
/// A primitive without triangles is never hit. Such primitives carry frame and prefix programs and
/// the programs of rays that miss. Changes show in the next Render.
class IPrimitive : public IKLPrimitive {
public:
    /// Names the primitive for messages.
    virtual void SetName(const std::string& name) = 0;
    /// The name; empty for a new primitive.
    virtual const std::string& GetName() const = 0;

    /// Sets the triangles, counter-clockwise as seen from the front.
    /// @param indices three vertices for each triangle; copied. Triangles with a vertex that no
    ///                attribute has are left out of the scene and reported
    /// @param triangles their number; 0 takes the geometry away
    /// @return false, and no change, for null indices or more than 2^31 / 3 triangles
    virtual bool SetTriangles(const std::uint32_t* indices, std::size_t triangles) = 0;

    /// Sets a vertex attribute, which the program's vertex shader reads by this name.
    ///
    /// Components that the shader declares and the data lacks are 0, the fourth 1; surplus ones are
    /// not read. Attributes that the shader declares and nobody sets are 0. While the primitive's
    /// program has no vertex shader, and without a program, "a_Position" is the position.
    /// @param name       as the vertex shader declares it, such as "a_Normal"
    /// @param components floats for each vertex, 1 to 4
    /// @param values     components * vertices floats; copied
    /// @param vertices   0 takes the attribute away
    /// @return false, and no change, for an empty name, another number of components or null values
    virtual bool SetAttribute(const std::string& name, int components, const float* values,
                              std::size_t vertices) = 0;

    /// The vertices of the longest attribute; 0 without any.
    virtual std::size_t GetVertexCount() const = 0;
    /// The triangles that were set, those that are left out of the scene included.
    virtual std::size_t GetTriangleCount() const = 0;

    /// Places the primitive: world = matrix * kl_Position.
    /// @return false, and no change, when a component is not finite or the upper 3x3 has no inverse
    virtual bool SetTransform(const Matrix44f& matrix) = 0;
    /// The matrix that places the primitive; the identity for a new one.
    virtual const Matrix44f& GetTransform() const = 0;

    /// Sets whether rays can reach the primitive; they can reach a new one.
    virtual void SetVisible(bool visible) = 0;
    /// Whether rays can reach the primitive.
    virtual bool IsVisible() const = 0;

    /// The program that shades the primitive, or null. klUseProgram sets it.
    virtual IKLProgram* GetProgram() const = 0;

protected:
    ~IPrimitive() override = default;
};

} // namespace Tolen::OpenKL
