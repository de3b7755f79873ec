#pragma once

#include "TolenEffects/ElementTypes.h"

/// The operations of IParameter as lists, for parameters that stand in front of others:
/// X(type of the answer, name, (parameters), (arguments), qualifier).

/// Listeners, references and code.
#define TOLEN_PARAMETER_CODE_SLOTS(X)                                                              \
    X(bool, AddListenerChangeValue, (FastDelegate1<IParameter*, bool> & listener), (listener), )   \
    X(bool, RemoveListenerChangeValue, (FastDelegate1<IParameter*, bool> & listener),              \
      (listener), )                                                                                \
    X(bool, AddListenerChangeStructure, (FastDelegate1<IParameter*, bool> & listener),             \
      (listener), )                                                                                \
    X(bool, RemoveListenerChangeStructure, (FastDelegate1<IParameter*, bool> & listener),          \
      (listener), )                                                                                \
    X(IReferenceParameter*, CreateReference, (IGraph * graph), (graph), )                          \
    X(bool, DestroyReference, (IReferenceParameter * reference), (reference), )                    \
    X(bool, CollectConstructor, (CompoundStatement * body), (body), )                              \
    X(bool, CollectShader, (Module * module), (module), )                                          \
    X(bool, VisitTransformations, (FastDelegate2<Class, Visitor*, bool> & visit), (visit), )

/// What kind of parameter it is, its length, and its value as text.
#define TOLEN_PARAMETER_STATE_SLOTS(X)                                                             \
    X(bool, IsComplete, (Result * result), (result), const)                                        \
    X(IParameter::ParameterClass, GetClass, (), (), )                                              \
    X(TypeSpecifier, GetTypeSpecifier, (), (), )                                                   \
    X(std::string, GetType, (), (), )                                                              \
    X(std::string, GetName, (), (), )                                                              \
    X(bool, IsArray, (), (), const)                                                                \
    X(int, GetLength, (), (), const)                                                               \
    X(bool, SetLength, (int length), (length), )                                                   \
    X(bool, IsResizable, (), (), const)                                                            \
    X(bool, IsDefault, (int index), (index), const)                                                \
    X(bool, IsDefault, (), (), const)                                                              \
    X(bool, GetAsString, (std::string & out, int index), (out, index), const)                      \
    X(bool, GetAsString, (std::string & out), (out), const)                                        \
    X(bool, Set, (const std::string& value), (value), )                                            \
    X(bool, Get, (std::string & value), (value), )

/// The forms of Set and Get for one type T of elements that deal with an array.
/// @param Argument, Elements how Set takes one element, and a pointer to the first of several
#define TOLEN_PARAMETER_ARRAY_FORMS(X, T, Argument, Elements)                                      \
    X(bool, Set, (Elements values, int count), (values, count), )                                  \
    X(bool, Set, (Argument value, int index), (value, index), )                                    \
    X(bool, Get, (T & value, int index), (value, index), )

/// Those that deal with a single value.
#define TOLEN_PARAMETER_SINGLE_FORMS(X, T, Argument)                                               \
    X(bool, Set, (Argument value), (value), )                                                      \
    X(bool, Get, (T & value), (value), )
