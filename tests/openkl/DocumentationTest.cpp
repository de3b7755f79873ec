#include "compiler/Builtins.h"
#include "support/paths/SourceFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

namespace Tolen::OpenKL::Tests {

TEST(Documentation, EveryNameOfTheLanguage_IsInItsPage) {
    std::ifstream file(Tolen::Tests::SourceFolder() + "/docs/openkl.md");
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    ASSERT_FALSE(page.empty());
    for (int i = 0; i < kVariable_Count; ++i) {
        const std::string name(BuiltinVariableToString(static_cast<BuiltinVariable>(i)));
        EXPECT_NE(page.find("`" + name + "`"), std::string::npos) << name;
    }
    for (int i = 0; i < kFunction_Count; ++i) {
        const std::string name(BuiltinFunctionToString(static_cast<BuiltinFunction>(i)));
        const bool isThere = page.find("`" + name) != std::string::npos ||
                             page.find(" " + name + " ") != std::string::npos ||
                             page.find(" " + name + "`") != std::string::npos ||
                             page.find(" " + name + "(") != std::string::npos;
        EXPECT_TRUE(isThere) << name;
    }
}

} // namespace Tolen::OpenKL::Tests
