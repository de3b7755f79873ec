#pragma once

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
    kAttributeSemantic_Position = 0,
    kAttributeSemantic_Normal = 1,
    kAttributeSemantic_Coord = 2,
};

/// One attribute of the vertices of a surface: how it enters the vertex stage and how it is handed
/// on to rays.
class TOLEN_EXPORT IAttributeVertex {
public:
    virtual ~IAttributeVertex() = default;

    /// Declares the attribute and what it is handed on as, for the vertex stage.
    virtual bool CollectDeclarationsVertex(Module* module) = 0;
    /// Adds the statements that move the attribute into the primitive's transformed space.
    virtual bool CollectTransformation(Module* module, CompoundStatement* body) = 0;
    /// Declares what rays read.
    virtual bool CollectDeclarationsRay(Module* module) = 0;
    /// Keeps the location that a linked program gave the attribute.
    virtual bool CacheKLLocation(IKLProgram* program) = 0;
    virtual AttributeSemantic GetSemantic() const = 0;
    virtual TypeSpecifier GetType() const = 0;
    /// The name as shaders know it.
    virtual std::string GetName() const = 0;
    /// The name under which a primitive supplies the data, "a_" and the name.
    virtual std::string GetNameAttribute() const = 0;
    /// The name of the varying.
    virtual std::string GetNameVarying() const = 0;
    /// Negative when the program does not read the attribute.
    virtual int GetKLLocation() const = 0;
};

} // namespace Tolen::Effects
