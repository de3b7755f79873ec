#include "ParameterValueExpression.h"

#include "IValue.h"
#include "ParameterStorage.h"

#include "effects/ParsedClass.h"
#include "support/CapturedChecks.h"
#include "support/CapturedConsole.h"

#include "TolenCore/Result.h"

#include <gmock/gmock.h>

#include <climits>
#include <cmath>

namespace Tolen::Effects::Tests {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using Tolen::Tests::CapturedChecks;
using Tolen::Tests::CapturedConsole;

/// What the evaluation of a declaration's initializer left behind.
struct Evaluation {
    bool isGood = false;
    std::vector<std::string> elements;
    std::vector<std::string> messages;
    std::string console;
    std::vector<std::string> checks;
};

/// Evaluates a declaration such as "float x = 1;" as a parameter would; an array of no length can
/// be resized. A single value is read as a local variable, for which any expression may stand; an
/// array is read as an input, for which array constructors may.
Evaluation Evaluate(const std::string& text) {
    const CapturedConsole console;
    const CapturedChecks checks;
    const bool isArray = text.find('[') != std::string::npos;
    const ParsedClass parsed(isArray ? "input " + text : "void f() { " + text + " }");
    const VariableDeclaration* declaration = isArray ? parsed.GetVariable("x") : parsed.GetLocal();
    const Type* type = declaration->GetType();
    const TypeSpecifier specifier = type->GetTypeSpecifier();
    int length = 1;
    if (type->IsArray()) {
        const auto* declared = static_cast<const IntConstant*>(type->GetLength());
        length = declared == nullptr ? GetArrayConstructorLength(declaration->GetInitializer())
                                     : declared->GetValue();
    }
    const bool isResizable = type->IsArray() && type->GetLength() == nullptr;
    const auto storage =
        CreateParameterStorage(nullptr, GetStorageSpecifier(specifier), length, isResizable);

    Evaluation evaluation;
    Result result;
    const Expression* initializer = declaration->GetInitializer();
    evaluation.isGood = type->IsArray()
                            ? _InitializeValueArray(&result, storage.get(), specifier, initializer)
                            : _InitializeValue(&result, storage.get(), 0, specifier, initializer);
    for (int i = 0; i < storage->GetLength(); ++i) {
        std::string element;
        storage->GetValue()->GetValueAsString(element, i);
        evaluation.elements.push_back(element);
    }
    evaluation.messages = result.GetMessages();
    EXPECT_EQ(console.GetGeneral(), console.GetAll());
    evaluation.console = console.GetGeneral();
    for (const CapturedChecks::Check& check : checks.Get()) {
        EXPECT_EQ(check.source, "Source/ParameterValueExpression");
        evaluation.checks.push_back(check.expression);
    }
    return evaluation;
}

TEST(ParameterValueExpressionTest, Constants_AreRead) {
    struct Case {
        const char* declaration;
        const char* expected;
    };
    for (const Case& c : {
             Case{"float x = 1;", "1"},
             Case{"float x = 1.5;", "1.5"},
             Case{"float x = -2.5;", "-2.5"},
             Case{"float x = - - 3;", "3"},
             Case{"float x = 1e300;", "inf"},
             Case{"float x = -1e300;", "-inf"},
             Case{"int x = 7;", "7"},
             Case{"int x = 2.9;", "2"},
             Case{"int x = -2.9;", "-2"},
             Case{"int x = -3;", "-3"},
             Case{"int x = 1e20;", "2147483647"},
             Case{"int x = -1e20;", "-2147483647"},
             Case{"bool x = true;", "1"},
             Case{"bool x = false;", "0"},
             Case{"vec2 x = vec2(1);", "(1,1)"},
             Case{"vec2 x = vec2(1, 2.5);", "(1,2.5)"},
             Case{"vec3 x = vec3(-1);", "(-1,-1,-1)"},
             Case{"vec3 x = vec3(1, 2, 3);", "(1,2,3)"},
             Case{"vec4 x = vec4(0.5);", "(0.5,0.5,0.5,0.5)"},
             Case{"vec4 x = vec4(1, 2, 3, 4);", "(1,2,3,4)"},
             Case{"ivec2 x = ivec2(1.9);", "(1,1)"},
             Case{"ivec2 x = ivec2(1, -2.5);", "(1,-2)"},
             Case{"ivec3 x = ivec3(4);", "(4,4,4)"},
             Case{"ivec3 x = ivec3(1, 2, 3);", "(1,2,3)"},
             Case{"ivec4 x = ivec4(4);", "(4,4,4,4)"},
             Case{"ivec4 x = ivec4(1, 2, 3, 4);", "(1,2,3,4)"},
         }) {
        const Evaluation evaluation = Evaluate(c.declaration);
        EXPECT_TRUE(evaluation.isGood) << c.declaration;
        EXPECT_THAT(evaluation.elements, ElementsAre(c.expected)) << c.declaration;
        EXPECT_THAT(evaluation.messages, IsEmpty()) << c.declaration;
        EXPECT_EQ(evaluation.console, "") << c.declaration;
    }
}

TEST(ParameterValueExpressionTest, Matrices_TakeADiagonalOrAllElementsInTheOrderOfTheirMemory) {
    const ParsedClass parsed("input mat3 a = mat3(2);"
                             "input mat3 b = mat3(1, 2, 3, 4, 5, 6, 7, 8, 9);"
                             "input mat4 c = mat4(2);"
                             "input mat4 d = mat4(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, "
                             "15, 16);");
    const auto evaluate = [&]<class T>(const char* name, T matrix) {
        const auto storage = CreateParameterStorage(nullptr, ElementType<T>::kSpecifier, 1, false);
        EXPECT_TRUE(_InitializeValue(nullptr, storage.get(), 0, ElementType<T>::kSpecifier,
                                     parsed.GetVariable(name)->GetInitializer()));
        EXPECT_TRUE(storage->Get(matrix, 0));
        return matrix;
    };

    EXPECT_EQ(evaluate("a", Matrix33f()), Matrix33f(2.0f));
    EXPECT_THAT(evaluate("b", Matrix33f()).m, ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9));
    EXPECT_EQ(evaluate("c", Matrix44f()), Matrix44f(2.0f));
    EXPECT_THAT(evaluate("d", Matrix44f()).m,
                ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16));
}

TEST(ParameterValueExpressionTest, ScalarConstructors_AreReadAfterAFirstTryThatReports) {
    const Evaluation number = Evaluate("int x = int(2.5);");
    EXPECT_TRUE(number.isGood);
    EXPECT_THAT(number.elements, ElementsAre("2"));
    EXPECT_THAT(number.messages, ElementsAre("Function Call", "Unsupported Expression"));
    EXPECT_EQ(number.console, "_GetExpressionValue Unsupported Expression\n");

    const Evaluation truth = Evaluate("bool x = bool(true);");
    EXPECT_TRUE(truth.isGood);
    EXPECT_THAT(truth.elements, ElementsAre("1"));
    EXPECT_THAT(truth.messages, ElementsAre("Function Call", "Unsupported boolean expression"));
    EXPECT_EQ(truth.console, "_GetExpressionValue Unsupported Expression Bool\n");
}

TEST(ParameterValueExpressionTest, Refusals_TellWhatTheyCantRead) {
    struct Case {
        const char* declaration;
        std::vector<std::string> messages;
        const char* console;
    };
    const char* const kUnsupported = "_GetExpressionValue Unsupported Expression\n";
    const char* const kTwice = "_GetExpressionValue Unsupported Expression\n"
                               "_GetExpressionValue Unsupported Expression\n";
    const char* const kCount = "_InitInitializerTypeTuple Parameter Count\n";
    const char* const kSupportAndCount = "_GetExpressionValue Unsupported Expression\n"
                                         "_InitInitializerTypeTuple Parameter Count\n";
    const char* const kPlace = "a.ksl:3: Unsupported Initializer";
    for (const Case& c : {
             Case{"bool x = 1;",
                  {"Int Constant", "Unsupported boolean expression", kPlace},
                  "_GetExpressionValue Unsupported Expression Bool\n"},
             Case{"bool x = !true;",
                  {"Unary Operator", "Unsupported boolean expression", kPlace},
                  "_GetExpressionValue Unsupported Expression Bool\n"},
             Case{"float x = true;",
                  {"Bool Constant", "Unsupported Expression", kPlace},
                  kUnsupported},
             Case{"float x = 1 + 2;",
                  {"Binary Operator", "Unsupported Expression", kPlace},
                  kUnsupported},
             Case{"float x = y;", {"Variable", "Unsupported Expression", kPlace}, kUnsupported},
             Case{"float x = -y;", {"Variable", "Unsupported Expression", kPlace}, kUnsupported},
             Case{"float x = ~1;",
                  {"~", "Unsupported unary operator", kPlace},
                  "_GetExpressionValueUnaryOperator Unsupported Operator\n"},
             Case{"float x = sin(1);",
                  {"Function Call", "Unsupported Expression", kPlace},
                  kUnsupported},
             Case{"float x = float(1, 2);",
                  {"Function Call", "Unsupported Expression", kPlace},
                  kUnsupported},
             Case{"float x = float(y);",
                  {"Function Call", "Unsupported Expression", "Variable", "Unsupported Expression",
                   kPlace},
                  kTwice},
             Case{"vec3 x = vec3(1, 2);", {"Parameter Count"}, kCount},
             Case{"vec3 x = vec3();", {"Parameter Count"}, kCount},
             Case{"vec3 x = vec3(vec2(0), 1);",
                  {"Function Call", "Unsupported Expression", "Parameter Count"},
                  kSupportAndCount},
             Case{"vec3 x = vec3(1, y, 3);",
                  {"Variable", "Unsupported Expression", "Index 1"},
                  kUnsupported},
             Case{"vec3 x = vec3(y);", {"Variable", "Unsupported Expression"}, kUnsupported},
             Case{"vec3 x = sin(1);", {kPlace}, ""},
             Case{"mat3 x = mat3(1, 2);", {"Parameter Count"}, kCount},
             Case{"sampler2D x = 0;",
                  {"sampler2D", "Unsupported initializer"},
                  "_InitializeValue Type\n"},
             Case{"samplerCube x = 0;",
                  {"samplerCube", "Unsupported initializer"},
                  "_InitializeValue Type\n"},
             Case{"primitive x = 0;",
                  {"primitive", "Unsupported initializer"},
                  "_InitializeValue Type\n"},
         }) {
        const Evaluation evaluation = Evaluate(c.declaration);
        EXPECT_FALSE(evaluation.isGood) << c.declaration;
        EXPECT_THAT(evaluation.messages, ElementsAreArray(c.messages)) << c.declaration;
        EXPECT_EQ(evaluation.console, c.console) << c.declaration;
        EXPECT_THAT(evaluation.checks, IsEmpty()) << c.declaration;
    }
}

TEST(ParameterValueExpressionTest, ATupleWithoutAConstructor_FailsACheck) {
    const Evaluation constant = Evaluate("vec3 x = 1;");
    EXPECT_FALSE(constant.isGood);
    EXPECT_THAT(constant.checks, ElementsAre("pExpression->GetClass() == kClass_FunctionCall"));
    EXPECT_THAT(constant.messages, ElementsAre("a.ksl:3: Unsupported Initializer"));
}

TEST(ParameterValueExpressionTest, ARefusedSet_IsTold) {
    const ParsedClass parsed(
        "input float a = 1; input vec2 b = vec2(1); input vec2 c = vec2(1, 2);");
    const auto messages = [&](const char* name, TypeSpecifier specifier) {
        const CapturedConsole console;
        const auto storage = CreateParameterStorage(nullptr, specifier, 1, false);
        Result result;
        EXPECT_FALSE(_InitializeValue(&result, storage.get(), 1, specifier,
                                      parsed.GetVariable(name)->GetInitializer()));
        return result.GetMessages();
    };

    EXPECT_THAT(messages("a", kType_Float), ElementsAre("Value Set failed"));
    EXPECT_THAT(messages("b", kType_Vec2), ElementsAre("Value Set failed"));
    EXPECT_THAT(messages("c", kType_Vec2), ElementsAre("Value Set Failed", "Index 2"));
}

TEST(ParameterValueExpressionTest, Arrays_TakeAConstructorOrOneValueForAll) {
    struct Case {
        const char* declaration;
        std::vector<std::string> expected;
    };
    for (const Case& c : {
             Case{"float x[3] = 5.0;", {"5", "5", "5"}},
             Case{"float x[2] = float[](1, 2);", {"1", "2"}},
             Case{"float x[] = float[](1, 2);", {"1", "2"}},
             Case{"float x[] = 5.0;", {}},
             Case{"float x[0] = 5.0;", {}},
             Case{"vec2 x[2] = vec2(1, 2);", {"(1,2)", "(1,2)"}},
             Case{"vec2 x[] = vec2[](vec2(1), vec2(2, 3));", {"(1,1)", "(2,3)"}},
             Case{"bool x[2] = bool[](true, false);", {"1", "0"}},
         }) {
        const Evaluation evaluation = Evaluate(c.declaration);
        EXPECT_TRUE(evaluation.isGood) << c.declaration;
        EXPECT_THAT(evaluation.elements, ElementsAreArray(c.expected)) << c.declaration;
        EXPECT_THAT(evaluation.messages, IsEmpty()) << c.declaration;
    }
}

TEST(ParameterValueExpressionTest, AnArrayConstructorOfAnotherLength_IsAMismatch) {
    const Evaluation evaluation = Evaluate("float x[3] = float[](1, 2);");

    EXPECT_FALSE(evaluation.isGood);
    EXPECT_THAT(evaluation.messages, ElementsAre("Length Mismatch", "Initializer"));
    EXPECT_EQ(evaluation.console, "_InitializeValueArray Length\n");
    EXPECT_THAT(evaluation.elements, ElementsAre("0", "0", "0"));
}

TEST(ParameterValueExpressionTest, AnArray_StopsAtTheFirstElementItCantRead) {
    const Evaluation evaluation = Evaluate("float x[] = float[](1, y, 3);");

    EXPECT_FALSE(evaluation.isGood);
    EXPECT_THAT(evaluation.elements, ElementsAre("1", "0", "0"));
}

TEST(ParameterValueExpressionTest, WithoutAnExpression_NothingIsWritten) {
    const auto storage = CreateParameterStorage(nullptr, kType_Int, 1, false);

    EXPECT_FALSE(_InitializeValue(nullptr, storage.get(), 0, kType_Int, nullptr));
    EXPECT_FALSE(_InitializeValueArray(nullptr, storage.get(), kType_Int, nullptr));
    EXPECT_EQ(GetArrayConstructorLength(nullptr), 0);
}

TEST(ParameterValueExpressionTest, WithoutAResult_TheConsoleStillTells) {
    const CapturedConsole console;
    const ParsedClass parsed("void f() { float x = y; }");
    const auto storage = CreateParameterStorage(nullptr, kType_Float, 1, false);

    EXPECT_FALSE(_InitializeValue(nullptr, storage.get(), 0, kType_Float,
                                  parsed.GetLocal()->GetInitializer()));

    EXPECT_EQ(console.GetGeneral(), "_GetExpressionValue Unsupported Expression\n");
}

TEST(ParameterValueExpressionTest, GeneratedExpressions_OfExtremeNumbersAndDepths_AreRead) {
    const CapturedConsole console;
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    const auto evaluate = [&](Expression* owned, int& value) {
        const std::unique_ptr<Expression> expression(owned);
        const auto storage = CreateParameterStorage(nullptr, kType_Int, 1, false);
        return _InitializeValue(nullptr, storage.get(), 0, kType_Int, expression.get()) &&
               storage->Get(value, 0);
    };
    int value = 0;

    EXPECT_TRUE(evaluate(
        module->CreateUnaryOperator(kOperator_Subtract, module->CreateIntConstant(INT_MIN)),
        value));
    EXPECT_EQ(value, INT_MIN);
    EXPECT_TRUE(
        evaluate(module->CreateFloatConstant(module->CreateString("nan"), std::nan("")), value));
    EXPECT_EQ(value, 0);

    Expression* deep = module->CreateIntConstant(5);
    for (int i = 0; i < 100001; ++i) {
        deep = module->CreateUnaryOperator(kOperator_Subtract, deep);
    }
    EXPECT_TRUE(evaluate(deep, value));
    EXPECT_EQ(value, -5);
}

} // namespace Tolen::Effects::Tests
