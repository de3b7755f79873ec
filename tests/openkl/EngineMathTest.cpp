#include "EngineRig.h"

#include "engine/FloatingPointScope.h"
#include "engine/executor/Instruction.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <random>

namespace Tolen::OpenKL::Testing {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

float Evaluate(Operation operation, float a, float b = 0.0f) {
    FloatingPointScope scope;
    return ToFloat(EvaluateBaseline(operation, ToWord(a), ToWord(b), 0));
}

/// The distance in units in the last place of the exact result.
double GetUlps(float value, double exact) {
    if (std::isnan(exact)) {
        return std::isnan(value) ? 0.0 : kInfinity;
    }
    auto rounded = static_cast<float>(exact);
    if (value == rounded) {
        return 0.0;
    }
    if (std::isinf(rounded) || std::isinf(value)) {
        return kInfinity;
    }
    if (std::fabs(exact) < std::numeric_limits<float>::min()) {
        // Denormals are 0.
        return value == 0.0f || std::fabs(value) == std::numeric_limits<float>::min() ? 0.0
                                                                                      : kInfinity;
    }
    int exponent = std::ilogb(exact);
    return std::fabs(static_cast<double>(value) - exact) / std::ldexp(1.0, exponent - 23);
}

struct Function {
    const char* name;
    Operation operation;
    std::function<double(double)> exact;
    float low;
    float high;
    double ulps;     ///< bound of the error relative to the result
    double absolute; ///< bound that holds besides
};

const Function kFunctions[] = {
    {"exp", Operation::FExp, [](double x) { return std::exp(x); }, -110.0f, 95.0f, 2.0, 0.0},
    {"exp2", Operation::FExp2, [](double x) { return std::exp2(x); }, -160.0f, 135.0f, 2.0, 0.0},
    {"log", Operation::FLog, [](double x) { return std::log(x); }, 1e-37f, 1e38f, 2.0, 0.0},
    {"logNear1", Operation::FLog, [](double x) { return std::log(x); }, 0.5f, 2.0f, 2.0, 0.0},
    {"log2", Operation::FLog2, [](double x) { return std::log2(x); }, 1e-37f, 1e38f, 2.0, 0.0},
    {"log2Near1", Operation::FLog2, [](double x) { return std::log2(x); }, 0.5f, 2.0f, 2.0, 0.0},
    {"sin", Operation::FSin, [](double x) { return std::sin(x); }, -100.0f, 100.0f, 0.0, 1.2e-7},
    {"sinLarge", Operation::FSin, [](double x) { return std::sin(x); }, -3e38f, 3e38f, 0.0, 1.2e-7},
    {"sinMiddle", Operation::FSin, [](double x) { return std::sin(x); }, 8000.0f, 1e6f, 0.0,
     1.2e-7},
    {"sinSmall", Operation::FSin, [](double x) { return std::sin(x); }, -1.5f, 1.5f, 2.0, 0.0},
    {"cos", Operation::FCos, [](double x) { return std::cos(x); }, -100.0f, 100.0f, 0.0, 1.2e-7},
    {"cosLarge", Operation::FCos, [](double x) { return std::cos(x); }, -3e38f, 3e38f, 0.0, 1.2e-7},
    {"tan", Operation::FTan, [](double x) { return std::tan(x); }, -1.5f, 1.5f, 4.0, 0.0},
    {"asin", Operation::FAsin, [](double x) { return std::asin(x); }, -1.0f, 1.0f, 2.5, 0.0},
    {"acos", Operation::FAcos, [](double x) { return std::acos(x); }, -1.0f, 1.0f, 2.5, 0.0},
    {"atan", Operation::FAtan, [](double x) { return std::atan(x); }, -10.0f, 10.0f, 2.5, 0.0},
    {"atanLarge", Operation::FAtan, [](double x) { return std::atan(x); }, -1e30f, 1e30f, 2.5, 0.0},
    {"sinh", Operation::FSinh, [](double x) { return std::sinh(x); }, -92.0f, 92.0f, 4.0, 0.0},
    {"sinhSmall", Operation::FSinh, [](double x) { return std::sinh(x); }, -1.5f, 1.5f, 4.0, 0.0},
    {"cosh", Operation::FCosh, [](double x) { return std::cosh(x); }, -92.0f, 92.0f, 4.0, 0.0},
    {"tanh", Operation::FTanh, [](double x) { return std::tanh(x); }, -20.0f, 20.0f, 4.0, 0.0},
    {"tanhSmall", Operation::FTanh, [](double x) { return std::tanh(x); }, -0.8f, 0.8f, 4.0, 0.0},
    {"asinh", Operation::FAsinh, [](double x) { return std::asinh(x); }, -2.0f, 2.0f, 4.0, 0.0},
    {"asinhLarge", Operation::FAsinh, [](double x) { return std::asinh(x); }, -1e38f, 1e38f, 4.0,
     0.0},
    {"acosh", Operation::FAcosh, [](double x) { return std::acosh(x); }, 1.0f, 3.0f, 4.0, 0.0},
    {"acoshLarge", Operation::FAcosh, [](double x) { return std::acosh(x); }, 1.0f, 1e38f, 4.0,
     0.0},
    {"atanh", Operation::FAtanh, [](double x) { return std::atanh(x); }, -0.9999f, 0.9999f, 4.0,
     0.0},
    {"inversesqrt", Operation::FInverseSqrt, [](double x) { return 1.0 / std::sqrt(x); }, 1e-30f,
     1e30f, 2.0, 0.0},
    {"sqrt", Operation::FSqrt, [](double x) { return std::sqrt(x); }, 0.0f, 1e38f, 0.5001, 0.0},
};

TEST(EngineMath, Functions_KeepTheirErrorBounds) {
    for (const Function& function : kFunctions) {
        std::mt19937 random(7);
        double worst = 0.0;
        float worstAt = 0.0f;
        auto check = [&](float x) {
            float value = Evaluate(function.operation, x);
            double exact = function.exact(x);
            double distance = std::fabs(static_cast<double>(value) - exact);
            double ulps = distance <= function.absolute ? 0.0 : GetUlps(value, exact);
            if (ulps > worst) {
                worst = ulps;
                worstAt = x;
            }
        };
        std::uniform_real_distribution<float> even(0.0f, 1.0f);
        for (int i = 0; i < 20000; ++i) {
            float t = even(random);
            check(function.low + (function.high - function.low) * t);
            // As many in every power of two, towards 0 too.
            float small = std::ldexp(1.0f + t, static_cast<int>(random() % 250u) - 124);
            for (float x : {small, -small}) {
                if (x >= function.low && x <= function.high) {
                    check(x);
                }
            }
        }
        check(function.low);
        check(function.high);
        EXPECT_LE(worst, function.ulps)
            << function.name << " at " << worstAt << ": " << Evaluate(function.operation, worstAt)
            << ", not " << function.exact(worstAt);
    }
}

TEST(EngineMath, PowAndAtan2_KeepTheirErrorBounds) {
    std::mt19937 random(11);
    std::uniform_real_distribution<float> even(0.0f, 1.0f);
    double worstPower = 0.0;
    double worstAngle = 0.0;
    for (int i = 0; i < 50000; ++i) {
        float x = std::ldexp(1.0f + even(random), static_cast<int>(random() % 40u) - 20);
        float y = (even(random) - 0.5f) * 20.0f;
        worstPower = std::max(worstPower, GetUlps(Evaluate(Operation::FPow, x, y),
                                                  std::pow(static_cast<double>(x), y)));
        float u = (even(random) - 0.5f) * x;
        worstAngle = std::max(worstAngle, GetUlps(Evaluate(Operation::FAtan2, u, y),
                                                  std::atan2(static_cast<double>(u), y)));
    }
    EXPECT_LE(worstPower, 1.0);
    EXPECT_LE(worstAngle, 4.0);
}

struct Special {
    Operation operation;
    float a;
    float b;
    float expected;
};

TEST(EngineMath, SpecialArguments_GiveWhatIeeeSays) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const Special specials[] = {
        {Operation::FExp, kInfinity, 0, kInfinity},
        {Operation::FExp, -kInfinity, 0, 0},
        {Operation::FExp, nan, 0, nan},
        {Operation::FExp2, kInfinity, 0, kInfinity},
        {Operation::FExp2, -kInfinity, 0, 0},
        {Operation::FExp2, 10, 0, 1024},
        {Operation::FLog, 0, 0, -kInfinity},
        {Operation::FLog, -1, 0, nan},
        {Operation::FLog, kInfinity, 0, kInfinity},
        {Operation::FLog, nan, 0, nan},
        {Operation::FLog2, 0, 0, -kInfinity},
        {Operation::FLog2, 1024, 0, 10},
        {Operation::FLog2, -kInfinity, 0, nan},
        {Operation::FSin, kInfinity, 0, nan},
        {Operation::FSin, nan, 0, nan},
        {Operation::FSin, -0.0f, 0, -0.0f},
        {Operation::FCos, -kInfinity, 0, nan},
        {Operation::FCos, 0, 0, 1},
        {Operation::FTan, kInfinity, 0, nan},
        {Operation::FAsin, 1.5f, 0, nan},
        {Operation::FAsin, nan, 0, nan},
        {Operation::FAcos, -1.5f, 0, nan},
        {Operation::FAcos, 1, 0, 0},
        {Operation::FAtan, kInfinity, 0, 1.57079633f},
        {Operation::FAtan, nan, 0, nan},
        {Operation::FSinh, -kInfinity, 0, -kInfinity},
        {Operation::FCosh, -kInfinity, 0, kInfinity},
        {Operation::FTanh, -kInfinity, 0, -1},
        {Operation::FTanh, nan, 0, nan},
        {Operation::FAsinh, -kInfinity, 0, -kInfinity},
        {Operation::FAcosh, 0.5f, 0, nan},
        {Operation::FAcosh, kInfinity, 0, kInfinity},
        {Operation::FAtanh, 1, 0, kInfinity},
        {Operation::FAtanh, 2, 0, nan},
        {Operation::FSqrt, -1, 0, nan},
        {Operation::FSqrt, -0.0f, 0, -0.0f},
        {Operation::FInverseSqrt, 0, 0, kInfinity},
        {Operation::FPow, 0, 0, 1},
        {Operation::FPow, nan, 0, 1},
        {Operation::FPow, 1, nan, 1},
        {Operation::FPow, 2, nan, nan},
        {Operation::FPow, nan, 2, nan},
        {Operation::FPow, -2, 3, -8},
        {Operation::FPow, -2, 2, 4},
        {Operation::FPow, -2, 0.5f, nan},
        {Operation::FPow, 0, -1, kInfinity},
        {Operation::FPow, -0.0f, -1, -kInfinity},
        {Operation::FPow, 0, 2, 0},
        {Operation::FPow, 2, 128, kInfinity},
        {Operation::FPow, 2, -1000, 0},
        {Operation::FPow, kInfinity, -1, 0},
        {Operation::FPow, kInfinity, 1, kInfinity},
        {Operation::FPow, -kInfinity, 3, -kInfinity},
        {Operation::FPow, 0.5f, kInfinity, 0},
        {Operation::FPow, 0.5f, -kInfinity, kInfinity},
        {Operation::FPow, -1, kInfinity, 1},
        {Operation::FAtan2, 0, -1, 3.14159265f},
        {Operation::FAtan2, -0.0f, -1, -3.14159265f},
        {Operation::FAtan2, 0, 0, 0},
        {Operation::FAtan2, -0.0f, 0, -0.0f},
        {Operation::FAtan2, 1, 0, 1.57079633f},
        {Operation::FAtan2, kInfinity, kInfinity, 0.785398163f},
        {Operation::FAtan2, kInfinity, -kInfinity, 2.35619449f},
        {Operation::FAtan2, nan, 1, nan},
    };
    for (const Special& special : specials) {
        float value = Evaluate(special.operation, special.a, special.b);
        bool same = std::isnan(special.expected) ? std::isnan(value)
                                                 : ToWord(value) == ToWord(special.expected);
        EXPECT_TRUE(same) << GetInfo(special.operation).pName << "(" << special.a << ", "
                          << special.b << ") = " << value << ", not " << special.expected;
    }
}

/// Every function as rows on every instruction set against the scalar form, to the bit.
TEST(EngineMath, RowsAndScalarsOfAllInstructionSets_Agree) {
    const char* const functions[] = {"sin(a)",
                                     "cos(a)",
                                     "tan(a)",
                                     "asin(b)",
                                     "acos(b)",
                                     "atan(a)",
                                     "atan(a, c)",
                                     "sinh(b * 30.0)",
                                     "cosh(b * 30.0)",
                                     "tanh(b)",
                                     "asinh(a)",
                                     "acosh(abs(a))",
                                     "atanh(b)",
                                     "pow(abs(a), b * 9.0)",
                                     "pow(a, floor(b * 5.0))",
                                     "exp(b * 80.0)",
                                     "log(abs(a))",
                                     "exp2(b * 100.0)",
                                     "log2(abs(a))",
                                     "sqrt(abs(a))",
                                     "inversesqrt(abs(a))",
                                     "floor(a)",
                                     "ceil(a)",
                                     "trunc(a)",
                                     "fract(a)",
                                     "roundEven(a)",
                                     "mod(a, c)",
                                     "a / c",
                                     "smoothstep(b, c, a)",
                                     "float(int(a))"};
    std::string text =
        "uniform float ua; uniform float ub; uniform float uc;\nvoid main()\n{\n"
        "float a = kl_RayOrigin.x; float b = kl_RayOrigin.y; float c = kl_RayOrigin.z;\n";
    std::string scalar = "a = ua; b = ub; c = uc;\n";
    for (const char* function : functions) {
        text += std::string("accumulate(0, ") + function + ");\n";
        scalar += std::string("accumulate(0, ") + function + ");\n";
    }
    EngineRig rows(text + "}\n");
    EngineRig scalars(std::string("uniform float ua; uniform float ub; uniform float uc;\n") +
                      "void main()\n{\nfloat a; float b; float c;\n" + scalar + "}\n");
    std::mt19937 random(3);
    std::vector<float> inputs[3];
    for (std::size_t lane = 0; lane < kMaxLanes; ++lane) {
        float big = std::ldexp(1.0f, static_cast<int>(random() % 200u) - 100);
        float values[3] = {(random() % 2 == 0 ? 10.0f : big) *
                               (static_cast<float>(random()) * 4.7e-10f - 1.0f),
                           static_cast<float>(random()) * 4.65661287e-10f - 1.0f,
                           static_cast<float>(random()) * 1e-9f - 2.0f};
        for (std::size_t i = 0; i < 3; ++i) {
            inputs[i].push_back(values[i]);
            rows.GetLaneRow(static_cast<LaneInput>(kLaneInput_RayOriginX + i))[lane] =
                ToWord(values[i]);
        }
    }
    std::vector<std::uint32_t> expected = ToBits(rows.Run(kMaxLanes, 0, InstructionSet::Baseline));
    EXPECT_EQ(ToBits(rows.Run(kMaxLanes, 0, InstructionSet::Avx2)), expected);
    EXPECT_EQ(ToBits(rows.Run(kMaxLanes, 0, InstructionSet::Avx512)), expected);
    for (std::size_t lane = 0; lane < kMaxLanes; lane += 5) {
        scalars.SetUniform("ua", std::vector<float>{inputs[0][lane]});
        scalars.SetUniform("ub", std::vector<float>{inputs[1][lane]});
        scalars.SetUniform("uc", std::vector<float>{inputs[2][lane]});
        std::vector<std::uint32_t> alone = ToBits(rows.Run(1, static_cast<int>(lane)));
        for (InstructionSet instructionSet : kInstructionSets) {
            EXPECT_EQ(ToBits(scalars.Run(1, 0, instructionSet)), alone) << lane;
        }
    }
}

TEST(EngineMath, DenormalsAreFlushed_AndTheThreadsStateIsRestored) {
    unsigned before = _mm_getcsr();
    EngineRig rig("void main() { accumulate(0, kl_HitDistance * 0.5); }");
    rig.GetLaneRow(kLaneInput_HitDistance)[0] = ToWord(1.17549435e-38f);
    for (InstructionSet instructionSet : kInstructionSets) {
        EXPECT_EQ(rig.Run(1, 0, instructionSet).accumulates[0].value[0], 0.0f);
        EXPECT_EQ(_mm_getcsr() & 0xffc0u, before & 0xffc0u);
    }
}

} // namespace
} // namespace Tolen::OpenKL::Testing
