#include "Kinetra/Core/KNMVPManager.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

#include "Kinetra/Core/Implementation/MatrixLanes.h"
#include "tests/support/LogCapture.h"

namespace {

using Kinetra::KNMVPManager;
using Matrix = KNMVPManager::Matrix;

Matrix identity() {
    Matrix m;
    KNMVPManager::setIdentityMatrix(m);
    return m;
}

Matrix randomMatrix(std::mt19937& random) {
    std::uniform_real_distribution<float> value(-100.0f, 100.0f);
    Matrix m;
    for (float& f : m.m) {
        f = value(random);
    }
    return m;
}

bool sameBits(const Matrix& a, const Matrix& b) {
    return std::memcmp(a.m, b.m, sizeof a.m) == 0;
}

// The column-vector product m · (x, y, z, 1).
KNMVPManager::Vector apply(const Matrix& m, float x, float y, float z) {
    const float p[4] = {x, y, z, 1.0f};
    float r[4] = {0, 0, 0, 0};
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            r[j] += m[i][j] * p[i];
        }
    }
    return {r[0], r[1], r[2]};
}

void expectMatrixNear(const Matrix& actual, const Matrix& expected, float tolerance) {
    for (int k = 0; k < 16; ++k) {
        EXPECT_NEAR(actual.m[k], expected.m[k], tolerance) << "at index " << k;
    }
}

// ---- the four-lane paths against the scalar formulas ------------------------------------

TEST(KNMVPManagerLanes, MultiplyTranslateScaleMatchTheScalarFormulasBitForBit) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        const Matrix a = randomMatrix(random);
        const Matrix b = randomMatrix(random);
        Matrix expected;
        qam::lanes::multiplyScalar(expected.m, a.m, b.m);
        Matrix product;
        KNMVPManager::multiplyMatrix(product, a, b);
        ASSERT_TRUE(sameBits(product, expected)) << "round " << round;

        // The result may be written over either operand.
        Matrix left = a;
        KNMVPManager::multiplyMatrix(left, left, b);
        ASSERT_TRUE(sameBits(left, expected));
        Matrix right = b;
        KNMVPManager::multiplyMatrix(right, a, right);
        ASSERT_TRUE(sameBits(right, expected));

        Matrix translated = a;
        Matrix translatedScalar = a;
        KNMVPManager::translateMatrix(translated, 1.5f, -0.3f, 7.1f);
        qam::lanes::translateScalar(translatedScalar.m, 1.5f, -0.3f, 7.1f);
        ASSERT_TRUE(sameBits(translated, translatedScalar));

        Matrix scaled = a;
        Matrix scaledScalar = a;
        KNMVPManager::scaleMatrix(scaled, 0.7f, -3.0f, 1e-3f);
        qam::lanes::scaleScalar(scaledScalar.m, 0.7f, -3.0f, 1e-3f);
        ASSERT_TRUE(sameBits(scaled, scaledScalar));
    }
}

// ---- builders, worked by hand -------------------------------------------------------------

// Multiply applies its first operand first; translate and scale post-multiply.
TEST(KNMVPManagerBuilders, OperandOrder) {
    Matrix translate = identity();
    translate[3][0] = 1;
    translate[3][1] = 2;
    translate[3][2] = 3;
    Matrix scale = identity();
    scale[0][0] = 2;
    scale[1][1] = 3;
    scale[2][2] = 4;
    Matrix r;
    KNMVPManager::multiplyMatrix(r, translate, scale);
    // Translated, then scaled: the translation is scaled too.
    Matrix expected = scale;
    expected[3][0] = 2;
    expected[3][1] = 6;
    expected[3][2] = 12;
    EXPECT_TRUE(sameBits(r, expected));

    Matrix m = identity();
    m[0][0] = 2;  // an existing scale of 2 along x
    KNMVPManager::translateMatrix(m, 1, 2, 3);
    const KNMVPManager::Vector moved = apply(m, 0, 0, 0);
    EXPECT_FLOAT_EQ(moved.x, 2);  // the translation goes through the existing scale
    EXPECT_FLOAT_EQ(moved.y, 2);
    KNMVPManager::scaleMatrix(m, 3, 4, 5);
    EXPECT_FLOAT_EQ(m[0][0], 6);
    EXPECT_FLOAT_EQ(m[3][0], 2);  // column 3 untouched
}

TEST(KNMVPManagerBuilders, RotationTurnsClockwiseWithTheExactDegreeConstant) {
    KNMVPManager mvp;
    mvp.setRotate(90, 0, 0, 1);
    const Matrix& model = mvp.getModelMatrix();
    // 90 times the constant rounds to the float above pi/2, whose cosine is -1.6292068e-7;
    // with the float nearest pi/180 it would be -4.37e-8.
    EXPECT_NEAR(model[0][0], -1.6292068e-7f, 1e-12f);
    EXPECT_FLOAT_EQ(model[0][1], -1.0f);
    EXPECT_FLOAT_EQ(model[1][0], 1.0f);
    EXPECT_FLOAT_EQ(model[2][2], 1.0f);
    EXPECT_FLOAT_EQ(model[3][3], 1.0f);
    const KNMVPManager::Vector x = apply(model, 1, 0, 0);
    EXPECT_NEAR(x.x, 0, 1e-6);
    EXPECT_NEAR(x.y, -1, 1e-6);  // the x axis goes to -y

    // A non-unit axis is normalised.
    Matrix about = identity();
    KNMVPManager::rotateMatrix(about, 180, 2, 0, 0);
    const KNMVPManager::Vector y = apply(about, 0, 1, 0);
    EXPECT_NEAR(y.y, -1, 1e-6);
    EXPECT_NEAR(y.z, 0, 1e-6);
}

TEST(KNMVPManagerBuilders, DegenerateInputLeavesTheMatrixUnchanged) {
    std::mt19937 random(3);
    const Matrix before = randomMatrix(random);
    Matrix m = before;
    KNMVPManager::rotateMatrix(m, 45, 0, 0, 0);
    KNMVPManager::rotateMatrix(m, 45, NAN, 0, 0);
    KNMVPManager::getFrustumMatrix(m, -1, 1, -1, 1, 0, 10);   // near 0
    KNMVPManager::getFrustumMatrix(m, -1, 1, -1, 1, 1, -10);  // far negative
    KNMVPManager::getFrustumMatrix(m, 1, -1, -1, 1, 1, 10);   // negative width
    KNMVPManager::getFrustumMatrix(m, -1, 1, 1, 1, 1, 10);    // zero height
    KNMVPManager::getFrustumMatrix(m, -1, 1, -1, 1, 5, 5);    // zero depth
    KNMVPManager::getOrthoMatrix(m, 3, 3, 0, 1, 0, 1);
    KNMVPManager::getOrthoMatrix(m, 0, 1, 2, 2, 0, 1);
    KNMVPManager::getOrthoMatrix(m, 0, 1, 0, 1, 4, 4);
    EXPECT_TRUE(sameBits(m, before));

    KNMVPManager mvp;
    mvp.setFrustum(-1, 1, -1, 1, 0, 100);
    EXPECT_TRUE(sameBits(mvp.getPRJMatrix(), identity()));
}

// ---- stored matrices ----------------------------------------------------------------------

TEST(KNMVPManagerSetters, PerspectiveOfSixtyDegrees) {
    KNMVPManager mvp;
    mvp.setPerspective(60, 0.5625f, 1, 100);
    const Matrix& p = mvp.getPRJMatrix();
    const float h = 0.57735027f;  // tan 30 degrees
    EXPECT_NEAR(p[1][1], 1 / h, 1e-5);
    EXPECT_NEAR(p[0][0], 1 / (0.5625f * h), 1e-5);
    EXPECT_FLOAT_EQ(p[2][0], 0);
    EXPECT_FLOAT_EQ(p[2][2], -101.0f / 99.0f);
    EXPECT_FLOAT_EQ(p[2][3], -1);
    EXPECT_FLOAT_EQ(p[3][2], -200.0f / 99.0f);
    EXPECT_FLOAT_EQ(p[3][3], 0);
}

TEST(KNMVPManagerSetters, FrustumAndOrthoOfAScreen) {
    KNMVPManager mvp;
    mvp.setFrustum(0, 2, 0, 4, 1, 3);
    Matrix frustum;
    frustum[0][0] = 1;
    frustum[1][1] = 0.5f;
    frustum[2][0] = 1;
    frustum[2][1] = 1;
    frustum[2][2] = -2;
    frustum[2][3] = -1;
    frustum[3][2] = -3;
    expectMatrixNear(mvp.getPRJMatrix(), frustum, 1e-7f);

    mvp.setOrtho(0, 720, 0, 1280, -1, 1);
    const Matrix& p = mvp.getPRJMatrix();
    EXPECT_FLOAT_EQ(p[0][0], 2.0f / 720.0f);
    EXPECT_FLOAT_EQ(p[1][1], 2.0f / 1280.0f);
    EXPECT_FLOAT_EQ(p[2][2], -1);
    EXPECT_FLOAT_EQ(p[3][0], -1);
    EXPECT_FLOAT_EQ(p[3][1], -1);
    EXPECT_FLOAT_EQ(p[3][2], 0);
    const KNMVPManager::Vector corner = apply(p, 720, 1280, 0);
    EXPECT_FLOAT_EQ(corner.x, 1);
    EXPECT_FLOAT_EQ(corner.y, 1);
}

TEST(KNMVPManagerSetters, LookAtBuildsTheViewAndOrthonormalisesUp) {
    KNMVPManager mvp;
    mvp.setLookAt(0, 0, 1, 0, 0, 0, 0, 1, 0);
    Matrix expected = identity();
    expected[3][2] = -1;
    expectMatrixNear(mvp.getViewMatrix(), expected, 0);

    // An up vector that leans towards the eye comes back orthonormal.
    mvp.setLookAt({0, 0, 5}, {0, 0, 0}, {0, 2, 1});
    const KNMVPManager::Vector up = mvp.getCameraUp();
    EXPECT_FLOAT_EQ(up.x, 0);
    EXPECT_FLOAT_EQ(up.y, 1);
    EXPECT_FLOAT_EQ(up.z, 0);
    EXPECT_FLOAT_EQ(mvp.getCameraPosition().z, 5);
    EXPECT_FLOAT_EQ(mvp.getCameraCentre().z, 0);

    // Looking down -x from (3, 0, 0): the eye maps to the origin, the centre to (0, 0, -3).
    mvp.setLookAt(3, 0, 0, 0, 0, 0, 0, 1, 0);
    const KNMVPManager::Vector eye = apply(mvp.getViewMatrix(), 3, 0, 0);
    const KNMVPManager::Vector centre = apply(mvp.getViewMatrix(), 0, 0, 0);
    EXPECT_NEAR(eye.x, 0, 1e-6);
    EXPECT_NEAR(eye.z, 0, 1e-6);
    EXPECT_NEAR(centre.z, -3, 1e-6);
    EXPECT_NEAR(centre.x, 0, 1e-6);

    // Setting the camera position rebuilds nothing.
    const Matrix view = mvp.getViewMatrix();
    mvp.setCameraPosition({9, 9, 9});
    EXPECT_TRUE(sameBits(mvp.getViewMatrix(), view));
    EXPECT_FLOAT_EQ(mvp.getCameraPosition().y, 9);
}

TEST(KNMVPManagerSetters, ModelScalesThenRotatesThenTranslates) {
    KNMVPManager mvp;
    mvp.setTranslate(10, 0, 0);
    mvp.setRotate(90, 0, 0, 1);
    mvp.setScale(2, 1, 1);
    // (1, 0, 0) -> scaled (2, 0, 0) -> turned clockwise (0, -2, 0) -> moved (10, -2, 0).
    const KNMVPManager::Vector p = apply(mvp.getModelMatrix(), 1, 0, 0);
    EXPECT_NEAR(p.x, 10, 1e-5);
    EXPECT_NEAR(p.y, -2, 1e-5);

    // The products: projection · view · model.
    mvp.setOrtho(-20, 20, -20, 20, -1, 1);
    mvp.setLookAt(0, 0, 1, 0, 0, 0, 0, 1, 0);
    const KNMVPManager::Vector clip = apply(mvp.getMVPMatrix(), 1, 0, 0);
    EXPECT_NEAR(clip.x, 0.5, 1e-6);
    EXPECT_NEAR(clip.y, -0.1, 1e-6);
    EXPECT_NEAR(clip.z, 1, 1e-6);  // one unit behind the eye maps to the far plane
    const KNMVPManager::Vector viewed = apply(mvp.getMVMatrix(), 1, 0, 0);
    EXPECT_NEAR(viewed.z, -1, 1e-6);
    const KNMVPManager::Vector vp = apply(mvp.getViewProjMatrix(), 10, -2, 0);
    EXPECT_NEAR(vp.x, 0.5, 1e-6);
    EXPECT_NEAR(vp.y, -0.1, 1e-6);
}

TEST(KNMVPManagerSetters, ANullModelMatrixIsLoggedAndDropped) {
    KNMVPManager mvp;
    qam::test::LogCapture log;
    mvp.setModelMatrix(nullptr);
    EXPECT_EQ(log.messages().size(), 1u);
    EXPECT_TRUE(sameBits(mvp.getModelMatrix(), identity()));
}

TEST(KNMVPManagerSetters, InverseTransposeOfTheModel) {
    KNMVPManager mvp;
    mvp.setScale(2, 2, 2);
    Matrix half = identity();
    half[0][0] = half[1][1] = half[2][2] = 0.5f;
    EXPECT_TRUE(sameBits(mvp.getITModelMatrix(), half));

    // A shear: model columns (1,0,0), (2,1,0), (0,0,1). Inverse columns (1,0,0), (-2,1,0),
    // (0,0,1); its transpose has the -2 at [0][1].
    Matrix shear = identity();
    shear[1][0] = 2;
    mvp.setModelMatrix(shear.m);
    Matrix expected = identity();
    expected[0][1] = -2;
    expectMatrixNear(mvp.getITModelMatrix(), expected, 0);

    // Singular: the 3 x 3 part is zero, the rest that of the identity.
    mvp.setScale(0, 1, 1);
    Matrix zero;
    zero[3][3] = 1;
    EXPECT_TRUE(sameBits(mvp.getITModelMatrix(), zero));
    // Tiny but not singular.
    mvp.setScale(1e-20f, 1, 1);
    EXPECT_FLOAT_EQ(mvp.getITModelMatrix()[0][0], 1e20f);
}

}  // namespace
