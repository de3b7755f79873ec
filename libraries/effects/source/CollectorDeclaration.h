#pragma once

#include "TolenEffects/IGraph.h"
#include "TolenEffects/SyntaxTypes.h"

#include <string>

namespace Tolen::Effects {

class IAttributeVertex;
class Module;

/// Declares ray attributes in a module; the callee of a visit of the manager's ray attributes.
class CollectorDeclarationRayAttribute {
public:
    explicit CollectorDeclarationRayAttribute(Module* module) : _pModule(module) {}
    bool Collect(TypeSpecifier type, const std::string& name);

private:
    Module* _pModule;
};

/// Declares global variables in a module.
class CollectorDeclarationVariableGlobal {
public:
    explicit CollectorDeclarationVariableGlobal(Module* module) : _pModule(module) {}
    bool Collect(TypeSpecifier type, const std::string& name);

private:
    Module* _pModule;
};

/// Declares in a module what rays read of the vertex attributes.
class CollectorDeclarationAttributeRay {
public:
    explicit CollectorDeclarationAttributeRay(Module* module) : _pModule(module) {}
    /// For the attributes of a vertex stage, which declare themselves.
    bool Collect(const std::string& name, IAttributeVertex* attribute);
    /// For the attributes of a graph.
    bool CollectAttribute(IGraph::Attribute attribute);

private:
    Module* _pModule;
};

/// Declares every function of a module, so that the order of definitions does not matter: the free
/// functions but "main", and the member functions of all classes.
class CollectorDeclarationFunctions {
public:
    explicit CollectorDeclarationFunctions(Module* module) : _pModule(module) {}
    bool Collect();

private:
    Module* _pModule;
};

} // namespace Tolen::Effects
