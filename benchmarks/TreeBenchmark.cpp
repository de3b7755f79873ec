#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorDelegate.h"
#include "TolenEffects/VisitorPrintKsl.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

/// What a compile does with syntax trees: copy, walk, print and destroy them. The times should grow
/// with the number of nodes.

namespace Tolen::Effects {

namespace {

/// A module of @p count functions of about 40 nodes each, shaped like shader code.
std::unique_ptr<Module> MakeModule(int count) {
    std::unique_ptr<Module> module(Module::Create(nullptr));
    const auto name = [&](const std::string& text) { return module->CreateString(text.c_str()); };
    const auto variable = [&](const char* text) { return module->CreateVariable(name(text)); };
    for (int i = 0; i < count; ++i) {
        FunctionCall* constructor = module->CreateFunctionCall(module->CreateType(kType_Vec4));
        for (int k = 0; k < 4; ++k) {
            constructor->AddParameter(
                module->CreateBinaryOperator(kOperator_Multiply, variable("weight"),
                                             module->CreateFloatConstant(name("0.25f"))));
        }
        CompoundStatement* body = module->CreateCompoundStatement();
        body->AddStatement(module->CreateDeclarationStatement(module->CreateVariableDeclaration(
            module->CreateType(kType_Vec4), name("color"), constructor)));
        SelectionStatement* selection = module->CreateSelectionStatement();
        selection->SetCondition(module->CreateBinaryOperator(kOperator_Less, variable("depth"),
                                                             module->CreateIntConstant(4)));
        selection->SetThen(module->CreateCompoundStatement(
            module->CreateExpressionStatement(module->CreateAssignment(
                kOperator_Add, module->CreateFieldSelection(variable("color"), name("rgb")),
                module->CreateFieldSelection(variable("light"), name("xyz"))))));
        body->AddStatement(selection);
        body->AddStatement(module->CreateJumpStatement(kJumpType_Return, variable("color")));
        module->AddFunctionDefinition(module->CreateFunctionDefinition(
            module->CreateFunctionPrototype(kFunctionQualifier_None, module->CreateType(kType_Vec4),
                                            name("Shade_k" + std::to_string(i))),
            body));
    }
    return module;
}

/// `a + a + ...` with @p count operators.
std::unique_ptr<Module> MakeSum(int count) {
    std::unique_ptr<Module> module(Module::Create(nullptr));
    Expression* sum = module->CreateVariable(module->CreateString("a"));
    for (int i = 0; i < count; ++i) {
        sum = module->CreateBinaryOperator(kOperator_Add, sum,
                                           module->CreateVariable(module->CreateString("a")));
    }
    module->AddFunctionDefinition(module->CreateFunctionDefinition(
        module->CreateFunctionPrototype(kFunctionQualifier_None, module->CreateType(kType_Void),
                                        module->CreateString("f")),
        module->CreateCompoundStatement(module->CreateExpressionStatement(sum))));
    return module;
}

using MakeTree = std::unique_ptr<Module> (*)(int);

template <MakeTree make>
void CloneAndDestroy(benchmark::State& state) {
    const std::unique_ptr<Module> source = make(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        const std::unique_ptr<Module> target(Module::Create(nullptr));
        benchmark::DoNotOptimize(source->Clone(target.get()));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <MakeTree make>
void Print(benchmark::State& state) {
    const std::unique_ptr<Module> module = make(static_cast<int>(state.range(0)));
    std::size_t bytes = 0;
    for (auto _ : state) {
        VisitorPrintKsl printer(nullptr, nullptr, false);
        benchmark::DoNotOptimize(module->AcceptVisitor(&printer));
        bytes = printer.GetText().size();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.counters["textBytes"] = static_cast<double>(bytes);
}

struct Counter {
    bool OnVariable(Variable*, TIParentSyntax<Expression>*) {
        ++count;
        return true;
    }
    long count = 0;
};

template <MakeTree make>
void Walk(benchmark::State& state) {
    const std::unique_ptr<Module> module = make(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        Counter counter;
        TVisitorSyntaxDelegate<Variable, TIParentSyntax<Expression>> visitor(
            MakeDelegate(&counter, &Counter::OnVariable));
        benchmark::DoNotOptimize(module->AcceptVisitor(&visitor));
        benchmark::DoNotOptimize(counter.count);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(CloneAndDestroy<MakeModule>)->Range(64, 4096);
BENCHMARK(CloneAndDestroy<MakeSum>)->Range(1024, 1 << 20);
BENCHMARK(Walk<MakeModule>)->Range(64, 4096);
BENCHMARK(Walk<MakeSum>)->Range(1024, 1 << 20);
BENCHMARK(Print<MakeModule>)->Range(64, 4096);
BENCHMARK(Print<MakeSum>)->Range(1024, 1 << 20);

} // namespace

} // namespace Tolen::Effects
