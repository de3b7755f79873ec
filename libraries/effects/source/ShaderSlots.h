#pragma once

/// The operations of IShader that a view of a shader passes on as they are:
/// X(type of the answer, name, (parameters), (arguments)).
#define TOLEN_SHADER_SLOTS(X)                                                                      \
    X(bool, CollectShader, (Module * into), (into))                                                \
    X(bool, CollectDeclarationMethod, (Module * into, const std::string& method), (into, method))  \
    X(std::string, GetInterfaceName, (), ())                                                       \
    X(std::string, GetClassName, (), ())                                                           \
    X(std::string, GetKeyName, (), ())                                                             \
    X(bool, HasMethod, (const std::string& method), (method))                                      \
    X(std::string, GetMethodNameMangled, (const std::string& method), (method))                    \
    X(bool, HasConstructor, (), ())                                                                \
    X(std::string, GetConstructorName, (), ())                                                     \
    X(IPrototypeShader*, GetPrototype, (), ())                                                     \
    X(IMgrEffects*, GetMgrEffects, (), ())                                                         \
    X(IGraph*, CreateGraphKind0, (), ())                                                           \
    X(IGraph*, GetGraphKind0, (), ())                                                              \
    X(bool, DestroyGraphKind0, (), ())                                                             \
    X(IGraph*, CreateGraphKind2, (), ())                                                           \
    X(IGraph*, GetGraphKind2, (), ())                                                              \
    X(bool, DestroyGraphKind2, (), ())                                                             \
    X(IGraph*, CreateGraphKind3, (), ())                                                           \
    X(IGraph*, GetGraphKind3, (), ())                                                              \
    X(bool, DestroyGraphKind3, (), ())                                                             \
    X(IReferenceShader*, CreateReference, (IGraph * graph), (graph))                               \
    X(IReferenceShader*, GetReference, (IGraph * graph), (graph))                                  \
    X(bool, ReleaseReference, (IReferenceShader * reference), (reference))                         \
    X(IParameter*, GetParameter, (const std::string& name), (name))                                \
    X(bool, VisitParameters, (FastDelegate2<const std::string&, IParameter*, bool> & visit),       \
      (visit))                                                                                     \
    X(IMember*, GetMember, (const std::string& name), (name))                                      \
    X(bool, VisitMembers, (FastDelegate2<const std::string&, IMember*, bool> & visit), (visit))    \
    X(IParameter*, GetCoord, (const std::string& name), (name))                                    \
    X(bool, VisitCoords, (FastDelegate2<const std::string&, IParameter*, bool> & visit), (visit))  \
    X(bool, SetCoord, (Result * result, const std::string& name, const std::string& value),        \
      (result, name, value))                                                                       \
    X(bool, VisitMethods, (FastDelegate1<const FunctionDefinition*, bool> & visit), (visit))       \
    X(bool, IsComplete, (Result * result), (result))                                               \
    X(bool, SetName, (const std::string& name), (name))                                            \
    X(const std::string&, GetName, (), ())

/// The pairs of operations for listeners that hear of the real shader: X(what they hear of, types of
/// the arguments that they get). Delete listeners hear of the view as well and are not among them.
#define TOLEN_SHADER_LISTENERS(X)                                                                  \
    X(ChangeStructure, IShader*)                                                                   \
    X(CreateGraphKind0, IShader*, IGraph*)                                                         \
    X(CreateGraphKind2, IShader*, IGraph*)                                                         \
    X(CreateGraphKind3, IShader*, IGraph*)
