#pragma once

#include "support/paths/SourceFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace Tolen::Effects::Tests {

/// Expects @p text to be that of tests/effects/golden/@p name. With TOLEN_UPDATE_GOLDEN set in the
/// environment the file is written instead.
inline void ExpectGolden(const std::string& name, const std::string& text) {
    const std::string path = Tolen::Tests::SourceFolder() + "/tests/effects/golden/" + name;
    if (std::getenv("TOLEN_UPDATE_GOLDEN") != nullptr) {
        std::ofstream(path, std::ios::binary) << text;
        return;
    }
    std::ifstream file(path, std::ios::binary);
    ASSERT_TRUE(file) << path;
    std::ostringstream expected;
    expected << file.rdbuf();
    EXPECT_EQ(text, expected.str()) << path;
}

} // namespace Tolen::Effects::Tests
