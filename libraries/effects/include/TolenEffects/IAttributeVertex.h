#pragma once

/// @file
/// Vertex attributes, as a surface effect reads them.

#include "TolenEffects/SyntaxTypes.h"

#include "TolenCore/Export.h"

#include <string>

namespace Tolen {
class IKLProgram;
} // namespace Tolen

namespace Tolen::Effects {

class CompoundStatement;
class Module;

/// What a vertex attribute means to the vertex stage.
enum AttributeSemantic {
    kAttributeSemantic_Position = 0, ///< where the vertex is; becomes `kl_Position`
    kAttributeSemantic_Normal = 1,   ///< a direction that stays at right angles to the surface
    kAttributeSemantic_Coord = 2,    ///< anything else, moved as its coord says
};

/// One attribute of the vertices of a surface: how it enters the vertex stage and how it is handed
/// on to rays.
class TOLEN_EXPORT IAttributeVertex {
public:
    virtual ~IAttributeVertex() = default;

    /// Declares the attribute and what it is handed on as in @p module, the vertex stage's.
    /// @return true
    virtual bool CollectDeclarationsVertex(Module* module) = 0;
    /// Adds the statements that move the attribute into the primitive's transformed space to
    /// @p body, a block of @p module. @return true
    virtual bool CollectTransformation(Module* module, CompoundStatement* body) = 0;
    /// Declares in @p module, a ray stage's, what rays read. @return true
    virtual bool CollectDeclarationsRay(Module* module) = 0;
    /// Keeps the location that @p program, linked, gave the attribute. @return true
    virtual bool CacheKLLocation(IKLProgram* program) = 0;
    /// What the attribute means.
    virtual AttributeSemantic GetSemantic() const = 0;
    /// The type of the attribute for one vertex.
    virtual TypeSpecifier GetType() const = 0;
    /// The name as shaders know it.
    virtual std::string GetName() const = 0;
    /// The name under which a primitive supplies the data, "a_" and the name.
    virtual std::string GetNameAttribute() const = 0;
    /// The name of the varying by which rays read it.
    virtual std::string GetNameVarying() const = 0;
    /// The location that CacheKLLocation has kept; negative when the program does not read the
    /// attribute.
    virtual int GetKLLocation() const = 0;
};

} // namespace Tolen::Effects
