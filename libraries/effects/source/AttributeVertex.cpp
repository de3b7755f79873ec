#include "AttributeVertex.h"

#include "GeneratedCode.h"
#include "TolenEffects/Module.h"

#include "TolenOpenKLWrapper/IKLProgram.h"

namespace Tolen::Effects {

namespace {

/// `mat3(matrix) * attribute`
Expression* _CreateTransformed(Module* module, const char* matrix, const std::string& attribute) {
    FunctionCall* const upper = module->CreateFunctionCall(module->CreateType(kType_Mat3));
    upper->AddParameter(CreateVariableNamed(module, matrix));
    return module->CreateBinaryOperator(kOperator_Multiply, upper,
                                        CreateVariableNamed(module, attribute));
}

} // namespace

bool AttributeVertex::Init(TypeSpecifier type, const std::string& name) {
    _type = type;
    _name = name;
    _nameVarying = name;
    _nameAttribute = "a_" + name;
    return true;
}

bool AttributeVertex::CacheKLLocation(IKLProgram* program) {
    _location = program->GetAttributeLocation(_nameAttribute);
    return true;
}

bool AttributeVertexPosition::CollectDeclarationsVertex(Module* module) {
    DeclareGlobal(module, _type, _nameAttribute, kStorageQualifier_Attribute);
    return true;
}

bool AttributeVertexPosition::CollectTransformation(Module* module, CompoundStatement* body) {
    FunctionCall* const position = module->CreateFunctionCall(module->CreateType(kType_Vec4));
    position->AddParameter(CreateVariableNamed(module, _nameAttribute));
    position->AddParameter(module->CreateFloatConstant(1.0));
    AddAssignmentStatement(module, body, CreateVariableNamed(module, "kl_Position"), position);
    return true;
}

bool AttributeVertexPosition::CollectDeclarationsRay(Module*) { return true; }

bool AttributeVertexNormal::CollectDeclarationsVertex(Module* module) {
    DeclareGlobal(module, _type, _nameAttribute, kStorageQualifier_Attribute);
    DeclareGlobal(module, _type, _nameVarying, kStorageQualifier_TransformedNormalizedVarying);
    return true;
}

bool AttributeVertexNormal::CollectTransformation(Module* module, CompoundStatement* body) {
    AddAssignmentStatement(module, body, CreateVariableNamed(module, _nameVarying),
                           CreateVariableNamed(module, _nameAttribute));
    return true;
}

bool AttributeVertexNormal::CollectDeclarationsRay(Module* module) {
    DeclareGlobal(module, _type, _nameVarying, kStorageQualifier_Varying);
    return true;
}

bool AttributeVertexCoord::Init(TypeSpecifier type, const std::string& name,
                                TransformationCoord transformation) {
    _transformation = transformation;
    return AttributeVertex::Init(type, name);
}

bool AttributeVertexCoord::CollectDeclarationsVertex(Module* module) {
    DeclareGlobal(module, _type, _nameAttribute, kStorageQualifier_Attribute);
    DeclareGlobal(module, _type, _nameVarying,
                  _transformation == kTransformationCoord_Tangent
                      ? kStorageQualifier_NormalizedVarying
                      : kStorageQualifier_Varying);
    return true;
}

bool AttributeVertexCoord::CollectTransformation(Module* module, CompoundStatement* body) {
    Expression* value = nullptr;
    switch (_transformation) {
    case kTransformationCoord_Normal:
        value = _CreateTransformed(module, "kl_PrimitiveTransformMatrixInverseTranspose",
                                   _nameAttribute);
        break;
    case kTransformationCoord_Tangent:
        value = _CreateTransformed(module, "kl_PrimitiveTransformMatrix", _nameAttribute);
        break;
    case kTransformationCoord_Coord:
        value = CreateVariableNamed(module, _nameAttribute);
        break;
    }
    AddAssignmentStatement(module, body, CreateVariableNamed(module, _nameVarying), value);
    return true;
}

bool AttributeVertexCoord::CollectDeclarationsRay(Module* module) {
    DeclareGlobal(module, _type, _nameVarying, kStorageQualifier_Varying);
    return true;
}

} // namespace Tolen::Effects
