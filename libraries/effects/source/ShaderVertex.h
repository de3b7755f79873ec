#pragma once

#include "TolenEffects/IAttributeVertex.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/FastDelegate.h"

#include <map>
#include <memory>
#include <string>

namespace Tolen {
class IKLProgram;
class IKLShader;
} // namespace Tolen

namespace Tolen::Effects {

class AttributeVertex;
class IMgrEffects;

/// The generated vertex shader of a surface effect, and the attributes that it reads. "Position"
/// and "Normal" are always there.
class ShaderVertex : public CreationOrder {
public:
    ShaderVertex();
    ~ShaderVertex();
    ShaderVertex(const ShaderVertex&) = delete;
    ShaderVertex& operator=(const ShaderVertex&) = delete;

    /// @param manager borrowed
    bool Init(IMgrEffects* manager, IKLProgram* program);
    void Shutdown();

    void SetName(const std::string& name);

    /// Counts one more use of an attribute. The first use leaves the count at 0, so that one
    /// release takes the attribute out.
    /// @return false, with a line on the console, for an empty name or another type or
    ///         transformation than before
    bool AcquireAttribute(TypeSpecifier type, const std::string& name,
                          TransformationCoord transformation);
    /// Unknown names, and the two attributes that are always there, answer true.
    bool ReleaseAttribute(const std::string& name);
    bool VisitAttributes(FastDelegate2<const std::string&, IAttributeVertex*, bool>& visit);

    /// Keeps the locations of all attributes; runs whenever the program links.
    bool OnProgramChange(IKLProgram* program);

    /// Prints the vertex shader and has the API compile it.
    bool Compile();

    IKLShader* GetKLShader() const { return _pKLShader; }

private:
    struct AttributeUse {
        std::unique_ptr<AttributeVertex> attribute;
        int count = 0;
    };

    IMgrEffects* _pMgrEffects = nullptr; ///< borrowed
    IKLShader* _pKLShader = nullptr;     ///< owned through the context
    bool _isCompiled = false;
    std::map<std::string, AttributeUse> _attributes;
};

} // namespace Tolen::Effects
