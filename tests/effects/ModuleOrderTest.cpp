#include "ModuleOrder.h"

#include "TreeBuilder.h"

#include <algorithm>

namespace Tolen::Effects::Tests {

namespace {

FunctionParameter* ArrayParameter(const TreeBuilder& t, int length) {
    FunctionParameter* parameter = t.Parameter(kType_Float, "a");
    parameter->GetType()->SetArray(true);
    parameter->GetType()->SetLength(t.Int(length));
    return parameter;
}

FunctionParameter* UserParameter(const TreeBuilder& t, const char* type) {
    FunctionParameter* parameter = t->CreateFunctionParameter(t->CreateUserType(t.Name(type)));
    parameter->SetName(t.Name("a"));
    return parameter;
}

TEST(ModuleOrderTest, Prototypes_ThatTheOperatorCannotTellApart_AreSortedAllTheSame) {
    TreeBuilder t;
    const auto last = [&](const char* name) { return t.Parameter(kType_Int, name); };
    std::vector<FunctionPrototype*> inOrder = {
        t.Prototype(kType_Void, "f", {t.Parameter(kType_Float, "a"), last("z")}),
        t.Prototype(kType_Void, "f", {ArrayParameter(t, 2), last("z")}),
        t.Prototype(kType_Void, "f", {ArrayParameter(t, 3), last("a")}),
        t.Prototype(kType_Void, "f", {ArrayParameter(t, 3), last("b")}),
        t.Prototype(kType_Void, "f", {UserParameter(t, "A"), last("z")}),
        t.Prototype(kType_Void, "f", {UserParameter(t, "B"), last("a")}),
        t.Prototype(kType_Void, "g"),
    };
    std::vector<std::size_t> indices(inOrder.size());
    for (std::size_t i = 0; i < indices.size(); ++i) {
        indices[i] = i;
    }
    auto& list = t->GetFunctionDeclarations();
    list = inOrder;
    do {
        for (std::size_t i = 0; i < indices.size(); ++i) {
            list[i] = inOrder[indices[i]];
        }
        SortModule(t.Get());
        ASSERT_EQ(list, inOrder);
    } while (std::next_permutation(indices.begin(), indices.end()));
}

TEST(ModuleOrderTest, Equals_KeepTheirPlaces) {
    TreeBuilder t;
    std::vector<FunctionDefinition*> functions;
    for (int i = 0; i < 40; ++i) {
        functions.push_back(t.Function(t.Prototype(kType_Void, "f")));
        t->AddFunctionDefinition(functions.back());
    }
    SortModule(t.Get());
    EXPECT_EQ(t->GetFunctionDefinitions(), functions);
}

TEST(ModuleOrderTest, Lists_AreSortedByTheirOperators) {
    TreeBuilder t;
    const auto add = [&](StorageQualifier qualifier, const char* name) {
        VariableDeclaration* declaration = t.Declare(kType_Int, name);
        declaration->SetStorageQualifier(qualifier);
        t->AddVariableDeclaration(t->CreateDeclarationStatement(declaration));
        StructDefinition* structure = t->CreateStructDefinition();
        structure->SetName(t.Name(name));
        t->AddStructDefinition(structure);
    };
    add(kStorageQualifier_RayAttribute, "a");
    add(kStorageQualifier_None, "c");
    add(kStorageQualifier_None, "b");
    add(kStorageQualifier_Varying, "A");
    SortModule(t.Get());
    std::string variables;
    for (const DeclarationStatement* statement : t->GetVariableDeclarations()) {
        variables += statement->GetDeclaration()->GetIdentifier()->GetString();
    }
    EXPECT_EQ(variables, "bcAa");
    std::string structures;
    for (const StructDefinition* structure : t->GetStructDefinitions()) {
        structures += structure->GetName()->GetString();
    }
    EXPECT_EQ(structures, "Aabc");
}

TEST(ModuleOrderTest, StaticFunctions_ComeLast) {
    TreeBuilder t;
    FunctionPrototype* isStatic = t.Prototype(kType_Void, "a");
    isStatic->SetQualifier(kFunctionQualifier_Static);
    FunctionDefinition* first = t.Function(isStatic);
    FunctionDefinition* second = t.Function(t.Prototype(kType_Void, "z"));
    t->AddFunctionDefinition(first);
    t->AddFunctionDefinition(second);
    SortModule(t.Get());
    EXPECT_EQ(t->GetFunctionDefinitions(), (std::vector<FunctionDefinition*>{second, first}));
}

} // namespace

} // namespace Tolen::Effects::Tests
