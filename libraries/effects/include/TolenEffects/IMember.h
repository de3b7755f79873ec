#pragma once

#include "TolenEffects/SyntaxTypes.h"

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

#include <string>

namespace Tolen::Effects {

class CompoundStatement;
class IGraph;
class IReferenceMember;
class Module;
class Visitor;

/// One member variable of a shader: private to the instance, alive only in the generated code, and
/// never set from outside but for its length.
class TOLEN_EXPORT IMember {
public:
    IMember() = default;
    virtual ~IMember() = default;
    IMember(const IMember&) = delete;
    IMember& operator=(const IMember&) = delete;

    /// Adds a listener that is called after a change of the length, for which the shader's code has
    /// to be made again.
    /// @return true
    virtual bool AddListenerChangeLength(FastDelegate1<IMember*, bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeLength() off. @return true
    virtual bool RemoveListenerChangeLength(FastDelegate1<IMember*, bool>& listener) = 0;

    /// Makes what stands for this member in @p graph.
    /// @return owned by the member until DestroyReference; null on failure
    virtual IReferenceMember* CreateReference(IGraph* graph) = 0;
    /// Destroys what CreateReference() has made. @return true
    virtual bool DestroyReference(IReferenceMember* reference) = 0;

    /// Adds to @p body the assignments that give the member its initial value.
    /// @return false when they can't be made
    virtual bool CollectConstructor(CompoundStatement* body) = 0;
    /// Adds the declaration of the member to @p module.
    /// @return false when it can't be made
    virtual bool CollectShader(Module* module) = 0;
    /// Calls @p visit with each visitor that rewrites references to this member, and with the class
    /// of node that it works on. @return false when @p visit answered false
    virtual bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) = 0;

    /// The name of the type of one element in the shading language.
    virtual std::string GetType() = 0;
    /// The name as declared.
    virtual std::string GetName() = 0;
    /// Whether the member is an array.
    virtual bool IsArray() const = 0;
    /// Elements; 1 where there is no array.
    virtual int GetLength() const = 0;
    /// Changes the number of elements.
    /// @return false when the length is fixed, or a listener says so
    virtual bool SetLength(int length) = 0;
    /// Whether the length can be set: of arrays that are declared without one.
    virtual bool IsResizable() const = 0;
};

} // namespace Tolen::Effects
