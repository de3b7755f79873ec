#include "TolenCore/Matrix.h"
#include "TolenCore/Vector.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <sstream>

namespace Tolen::Tests {
namespace {

template <class T>
std::string Text(const T& value) {
    std::ostringstream stream;
    stream << value;
    return stream.str();
}

class Comma : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
};

TEST(Vector, NewOnesAreZeroAndTightlyPacked) {
    EXPECT_EQ(Vector4f(), Vector4f(0, 0, 0, 0));
    EXPECT_EQ(Vector3i(), Vector3i(0, 0, 0));
    EXPECT_EQ(sizeof(Vector2f), 8u);
    EXPECT_EQ(sizeof(Vector3f), 12u);
    EXPECT_EQ(sizeof(Vector4f), 16u);
    EXPECT_EQ(sizeof(Vector2i), 8u);
    EXPECT_EQ(sizeof(Vector3i), 12u);
    EXPECT_EQ(sizeof(Vector4i), 16u);
}

TEST(Vector, TheStreamForm_IsInParentheses) {
    EXPECT_EQ(Text(Vector2f(1.0f, 2.5f)), "(1,2.5)");
    EXPECT_EQ(Text(Vector3f(1.0f, -2.0f, 3.0f)), "(1,-2,3)");
    EXPECT_EQ(Text(Vector4f(0.0f, 0.25f, 1e20f, 4.0f)), "(0,0.25,1e+20,4)");
}

TEST(Vector, TheStreamForm_KeepsThePointAndTheStreamsLocale) {
    std::ostringstream stream;
    const std::locale comma(std::locale::classic(), new Comma);
    stream.imbue(comma);
    stream << Vector2f(0.5f, 1.0f) << Matrix33f(0.5f) << 1.5f;
    EXPECT_EQ(stream.str(), "(0.5,1)((0.5,0,0),(0,0.5,0),(0,0,0.5))1,5");
}

TEST(Matrix, NewOnesAreTheIdentity) {
    EXPECT_EQ(sizeof(Matrix33f), 36u);
    EXPECT_EQ(sizeof(Matrix44f), 64u);
    EXPECT_EQ(Matrix33f(), Matrix33f(1.0f));
    EXPECT_EQ(Matrix44f(), Matrix44f(1));
    EXPECT_EQ(Text(Matrix33f()), "((1,0,0),(0,1,0),(0,0,1))");
    EXPECT_EQ(Text(Matrix44f(2)), "((2,0,0,0),(0,2,0,0),(0,0,2,0),(0,0,0,2))");
}

TEST(Matrix, FloatsAreColumnByColumn) {
    float columns[16];
    for (int i = 0; i < 16; ++i) {
        columns[i] = static_cast<float>(i);
    }
    const Matrix33f three(columns);
    EXPECT_EQ(three(0, 1), 3.0f);
    EXPECT_EQ(Text(three), "((0,3,6),(1,4,7),(2,5,8))");
    const Matrix44f four(columns);
    EXPECT_EQ(four(3, 0), 3.0f);
    EXPECT_EQ(Text(four), "((0,4,8,12),(1,5,9,13),(2,6,10,14),(3,7,11,15))");
}

TEST(Matrix, Transpose_MayWriteIntoItsOwnMatrix) {
    float columns[16];
    for (int i = 0; i < 16; ++i) {
        columns[i] = static_cast<float>(i);
    }
    Matrix44f four(columns);
    Matrix44f other;
    four.Transpose(other);
    EXPECT_EQ(other(0, 3), four(3, 0));
    four.Transpose(four);
    EXPECT_EQ(four, other);
    Matrix33f three(columns);
    three.Transpose(three);
    EXPECT_EQ(Text(three), "((0,1,2),(3,4,5),(6,7,8))");
}

TEST(Matrix, AProductWithAColumnVector_AppliesTheColumns) {
    Matrix44f move;
    move(0, 3) = 5.0f;
    EXPECT_EQ(move * Vector4f(1, 2, 3, 1), Vector4f(6, 2, 3, 1));
    EXPECT_EQ(move * Vector4f(1, 2, 3, 0), Vector4f(1, 2, 3, 0));
    Matrix44f scale(2.0f);
    scale(3, 3) = 1.0f;
    EXPECT_EQ((scale * move) * Vector4f(1, 0, 0, 1), scale * (move * Vector4f(1, 0, 0, 1)));
}

TEST(Matrix, Invert_GivesTheIdentityBack) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> range(-3.0f, 3.0f);
    for (int n = 0; n < 100; ++n) {
        Matrix44f matrix;
        for (float& value : matrix.m) {
            value = range(random);
        }
        Matrix44f inverse;
        ASSERT_TRUE(matrix.Invert(inverse));
        const Matrix44f product = inverse * matrix;
        for (int i = 0; i < 16; ++i) {
            EXPECT_NEAR(product.m[i], i % 5 == 0 ? 1.0f : 0.0f, 2e-3f);
        }
    }
}

TEST(Matrix, Invert_WithoutAnInverseLeavesTheTargetAlone) {
    Matrix44f nan;
    nan.m[5] = std::numeric_limits<float>::quiet_NaN();
    Matrix44f tiny(1e-45f);
    for (const Matrix44f& matrix : {Matrix44f(0.0f), nan, tiny}) {
        Matrix44f out(7.0f);
        EXPECT_FALSE(matrix.Invert(out));
        EXPECT_EQ(out, Matrix44f(7.0f));
    }
    // A zero on the diagonal is no obstacle.
    Matrix44f swap;
    swap(0, 0) = swap(1, 1) = 0.0f;
    swap(0, 1) = swap(1, 0) = 1.0f;
    EXPECT_TRUE(swap.Invert(swap));
    EXPECT_EQ(swap(0, 1), 1.0f);
}

} // namespace
} // namespace Tolen::Tests
