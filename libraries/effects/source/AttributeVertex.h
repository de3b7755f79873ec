#pragma once

#include "TolenEffects/IAttributeVertex.h"

namespace Tolen::Effects {

/// What the three kinds of vertex attributes have in common.
class AttributeVertex : public IAttributeVertex {
public:
    /// @return true
    bool Init(TypeSpecifier type, const std::string& name);

    bool CacheKLLocation(IKLProgram* program) override;
    TypeSpecifier GetType() const override { return _type; }
    std::string GetName() const override { return _name; }
    std::string GetNameAttribute() const override { return _nameAttribute; }
    std::string GetNameVarying() const override { return _nameVarying; }
    int GetKLLocation() const override { return _location; }

protected:
    TypeSpecifier _type = kType_Void;
    std::string _name;
    std::string _nameVarying;
    std::string _nameAttribute;
    int _location = -1;
};

/// The position: it becomes `kl_Position`, and rays don't read it.
class AttributeVertexPosition : public AttributeVertex {
public:
    bool CollectDeclarationsVertex(Module* module) override;
    bool CollectTransformation(Module* module, CompoundStatement* body) override;
    bool CollectDeclarationsRay(Module* module) override;
    AttributeSemantic GetSemantic() const override { return kAttributeSemantic_Position; }
};

/// The normal: the API transforms and normalises what is handed on.
class AttributeVertexNormal : public AttributeVertex {
public:
    bool CollectDeclarationsVertex(Module* module) override;
    bool CollectTransformation(Module* module, CompoundStatement* body) override;
    bool CollectDeclarationsRay(Module* module) override;
    AttributeSemantic GetSemantic() const override { return kAttributeSemantic_Normal; }
};

/// Any other attribute, handed on as it is or transformed as a normal or a tangent.
class AttributeVertexCoord : public AttributeVertex {
public:
    bool Init(TypeSpecifier type, const std::string& name, TransformationCoord transformation);

    bool CollectDeclarationsVertex(Module* module) override;
    bool CollectTransformation(Module* module, CompoundStatement* body) override;
    bool CollectDeclarationsRay(Module* module) override;
    AttributeSemantic GetSemantic() const override { return kAttributeSemantic_Coord; }
    TransformationCoord GetTransformation() const { return _transformation; }

private:
    TransformationCoord _transformation = kTransformationCoord_Coord;
};

} // namespace Tolen::Effects
