#include "EngineRig.h"

namespace Tolen::OpenKL::Testing {
namespace {

TEST(EngineLanguage, AnExpression_IsAccumulated) {
    EXPECT_EQ(RunStatements("accumulate(0, 1.0 + 2.0 * 3.0);"), std::vector<float>{7.0f});
}

TEST(EngineLanguage, ALoop_Sums) {
    EXPECT_EQ(RunStatements("float s = 0.0; for (int i = 0; i < 10; ++i) { if (i == 7) break; if (i == 3) continue; s += float(i); } accumulate(0, s);"), std::vector<float>{18.0f});
}

TEST(EngineLanguage, AFunction_Returns) {
    EXPECT_EQ(RunStatements("float y; float z = f(3.0, y); accumulate(0, vec3(z, y, f(-1.0, y)));", "float f(float x, out float y) { if (x < 0.0) return -x; y = x * 2.0; return y + 1.0; }"), (std::vector<float>{7.0f, 6.0f, 1.0f}));
}

} // namespace
} // namespace Tolen::OpenKL::Testing
