#include "Declarations.h"
#include "InstalledPackage.h"

#include "TolenEffects/Module.h"
#include "TolenOpenKL/IContext.h"

#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

/// What the installed libraries show, against what the installed headers declare.

namespace Tolen::Tests {
namespace {

constexpr std::array kLibraries = {"TolenCore", "TolenEffects", "TolenOpenKL"};

/// Classes that are shown although no installed header has them, and why.
struct ShownClass {
    std::string_view name;
    std::string_view reason;
};
constexpr std::array<ShownClass, 4> kShownClasses = {{
    {"Tolen::Effects::Graph", "the class of every IGraph, for renderers built along with it"},
    {"Tolen::Effects::Shader", "the class of every IShader, for renderers built along with it"},
    {"Tolen::Effects::Value", "values of their own for such renderers, one an element type"},
    {"Tolen::Effects::ValueBuffer", "the same for values in buffers"},
}};

bool IsOf(const SymbolOwner& owner, std::string_view name) {
    return owner.isClass ? owner.name == name : owner.name.starts_with(std::string(name) + "::");
}

bool IsShown(const SymbolOwner& owner) {
    return std::any_of(kShownClasses.begin(), kShownClasses.end(),
                       [&](const ShownClass& shown) { return IsOf(owner, shown.name); });
}

const Declarations& GetDeclarations() {
    static const Declarations declarations =
        ReadDeclarations(PreprocessHeaders(), GetIncludeFolder());
    return declarations;
}

bool IsDeclared(const SymbolOwner& owner) {
    const Declarations& declarations = GetDeclarations();
    return (owner.isClass ? declarations.classes : declarations.functions).contains(owner.name);
}

class ExportedSymbols : public testing::TestWithParam<const char*> {};

TEST_P(ExportedSymbols, AreDeclaredInAnInstalledHeader) {
    const std::vector<std::string> symbols = ListSymbols(GetParam());
    EXPECT_FALSE(symbols.empty());
    for (const std::string& symbol : symbols) {
        const SymbolOwner owner = FindSymbolOwner(symbol);
        EXPECT_TRUE(IsDeclared(owner) || IsShown(owner))
            << "lib" << GetParam() << ".so shows \"" << symbol << "\", but no installed header "
            << "declares " << (owner.isClass ? "the class " : "") << owner.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Package, ExportedSymbols, testing::ValuesIn(kLibraries),
                         [](const auto& information) { return std::string(information.param); });

class AllExportedSymbols : public testing::Test {
protected:
    AllExportedSymbols() {
        for (const char* library : kLibraries) {
            for (const std::string& symbol : ListSymbols(library)) {
                const SymbolOwner owner = FindSymbolOwner(symbol);
                _owners.push_back(owner);
                (owner.isClass ? _tables : _functions).insert(owner.name);
            }
        }
    }

    std::vector<SymbolOwner> _owners;
    std::set<std::string> _functions;
    std::set<std::string> _tables;
};

TEST_F(AllExportedSymbols, HaveEveryFunctionThatHeadersLeaveToALibrary) {
    const Declarations& declarations = GetDeclarations();
    EXPECT_GT(declarations.needed.size(), 100U);
    for (const std::string& name : declarations.needed) {
        EXPECT_TRUE(_functions.contains(name))
            << "an installed header declares " << name << ", but no library shows it";
    }
}

TEST_F(AllExportedSymbols, HaveTheTablesOfEveryClassWithVirtualFunctions) {
    const Declarations& declarations = GetDeclarations();
    EXPECT_GT(declarations.tables.size(), 20U);
    for (const std::string& name : declarations.tables) {
        EXPECT_TRUE(_tables.contains(name)) << "an installed header declares virtual functions of "
                                            << name << ", but no library shows its table";
    }
}

TEST_F(AllExportedSymbols, HaveOtherClassesOnlyWhereThatIsMeant) {
    for (const ShownClass& shown : kShownClasses) {
        EXPECT_TRUE(std::any_of(_owners.begin(), _owners.end(),
                                [&](const SymbolOwner& owner) { return IsOf(owner, shown.name); }))
            << "no library shows " << shown.name << " any more: " << shown.reason;
        EXPECT_FALSE(GetDeclarations().classes.contains(std::string(shown.name)))
            << "an installed header has " << shown.name << " now";
    }
}

TEST(SharedLibraries, KnowTheTypesOfEachOthersObjects) {
    IMgrConsole* const console = GetMgrConsole();
    ASSERT_NE(console, nullptr);
    EXPECT_NE(dynamic_cast<MgrConsole*>(console), nullptr);

    const std::unique_ptr<Effects::Module> module(Effects::Module::Create(nullptr));
    Effects::Syntax* const node = module->CreateIntConstant(1);
    EXPECT_NE(dynamic_cast<Effects::Expression*>(node), nullptr);
    EXPECT_EQ(dynamic_cast<Effects::Statement*>(node), nullptr);
    delete node;

    Result result;
    OpenKL::IContext* const context = OpenKL::CreateContext({}, &result);
    IOpenKLContext* const base = context;
    EXPECT_EQ(dynamic_cast<OpenKL::IContext*>(base), context);
    OpenKL::DestroyContext(context);
}

} // namespace
} // namespace Tolen::Tests
