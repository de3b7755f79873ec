#pragma once

#include "Access.h"

namespace Tolen::Effects {

class Subscript;
template <class T>
class TIParentSyntax;

/// An array in a texture. The code declares a sampler of the mangled name and the width of the
/// texture as a uniform, and reads one texel for each element.
class AccessTexture : public Access {
public:
    bool Init(TypeSpecifier specifier, const std::string& name, const std::string& nameMangled,
              int length);

    bool CollectDeclaration(Module* module) override;
    /// With W for the uniform of the width, `x[i]` becomes `texture2D(x_k1,
    /// vec2((float(i % W) + 0.5) / float(W), (float(i / W) + 0.5) / float(W)))` and a selection of
    /// as many channels as an element has. The row is divided by the width as well: texels are
    /// addressed as if the texture were square.
    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) override;

    int GetLength() const { return _length; }
    /// Follows the length of the storage. Always true.
    bool SetLength(int length);

private:
    std::string _GetNameWidth() const;
    bool _ReplaceReference(Subscript* subscript, TIParentSyntax<Expression>* slot);

    int _length = 0;
};

} // namespace Tolen::Effects
