#include "Kinetra/Core/KNMVPManager.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

#include "Kinetra/Core/Implementation/MatrixLanes.h"
#include "tests/Kinetra/Core/CoreTestSupport.h"

// Matrices are written column by column, as they are stored.
namespace {

using Kinetra::KNMVPManager;
using Matrix = KNMVPManager::Matrix;
using Vector = KNMVPManager::Vector;

const Matrix kIdentity{{1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}};

Matrix randomMatrix(std::mt19937& random) {
    Matrix m;
    std::generate(m.m, m.m + 16,
                  [&] { return std::uniform_real_distribution<float>(-100, 100)(random); });
    return m;
}

bool sameBits(const Matrix& a, const Matrix& b) {
    return std::memcmp(a.m, b.m, sizeof a.m) == 0;
}

void expectNear(const Matrix& actual, const Matrix& expected, float tolerance = 1e-6f) {
    for (int k = 0; k < 16; ++k) {
        EXPECT_NEAR(actual.m[k], expected.m[k], tolerance) << "at index " << k;
    }
}

// m · (x, y, z, 1) is e.
void expectMaps(const Matrix& m, Vector p, Floats e, float tolerance = 1e-6f) {
    for (int j = 0; j < 3; ++j) {
        EXPECT_NEAR(m[0][j] * p.x + m[1][j] * p.y + m[2][j] * p.z + m[3][j], e[j], tolerance) << j;
    }
}

TEST(KNMVPManager, FourLanePathsMatchTheScalarFormulasBitForBit) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        const Matrix a = randomMatrix(random), b = randomMatrix(random);
        Matrix expected, product, left = a, right = b, scalarLeft = a, scalarRight = b;
        Matrix moved = a, movedScalar = a, scaled = a, scaledScalar = a;
        qam::lanes::multiplyScalar(expected.m, a.m, b.m);
        KNMVPManager::multiplyMatrix(product, a, b);
        KNMVPManager::multiplyMatrix(left, left, b);  // written over either operand
        KNMVPManager::multiplyMatrix(right, a, right);
        qam::lanes::multiplyScalar(scalarLeft.m, scalarLeft.m, b.m);
        qam::lanes::multiplyScalar(scalarRight.m, a.m, scalarRight.m);
        KNMVPManager::translateMatrix(moved, 1.5f, -0.3f, 7.1f);
        qam::lanes::translateScalar(movedScalar.m, 1.5f, -0.3f, 7.1f);
        KNMVPManager::scaleMatrix(scaled, 0.7f, -3.0f, 1e-3f);
        qam::lanes::scaleScalar(scaledScalar.m, 0.7f, -3.0f, 1e-3f);
        ASSERT_EQ((std::vector<bool>{sameBits(product, expected), sameBits(left, expected),
                                     sameBits(right, expected), sameBits(scalarLeft, expected),
                                     sameBits(scalarRight, expected), sameBits(moved, movedScalar),
                                     sameBits(scaled, scaledScalar)}),
                  std::vector<bool>(7, true));
    }
}

TEST(KNMVPManager, RotationTurnsClockwiseWithTheExactDegreeConstant) {
    KNMVPManager mvp;
    mvp.setRotate(90, 0, 0, 1);
    // 90 times the constant rounds to the float above pi/2, whose cosine is -1.6292068e-7;
    // with the float nearest pi/180 it would be -4.37e-8.
    EXPECT_NEAR(mvp.getModelMatrix()[0][0], -1.6292068e-7f, 1e-12f);
    expectNear(mvp.getModelMatrix(), Matrix{{0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}});
    // About (1, 1, 0), normalised, by 90 degrees: x goes to (1, 1, sqrt 2) / 2, z to (-1, 1, 0) /
    // sqrt 2.
    Matrix tilted = kIdentity;
    KNMVPManager::rotateMatrix(tilted, 90, 1, 1, 0);
    expectMaps(tilted, {1, 0, 0}, {0.5f, 0.5f, 0.70710678f});
    expectMaps(tilted, {0, 0, 1}, {-0.70710678f, 0.70710678f, 0});
}

TEST(KNMVPManager, DegenerateInputLeavesTheMatrixUnchanged) {
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
    LogCapture log;
    mvp.setModelMatrix(nullptr);
    EXPECT_EQ(log.messages().size(), 1u);
    EXPECT_EQ(std::pair(sameBits(mvp.getPRJMatrix(), kIdentity),
                        sameBits(mvp.getModelMatrix(), kIdentity)),
              std::pair(true, true));
}

TEST(KNMVPManager, PerspectiveFrustumAndOrthoProjections) {
    KNMVPManager mvp;
    mvp.setPerspective(60, 0.5625f, 1, 100);
    const float h = 0.57735027f;  // tan 30 degrees
    expectNear(mvp.getPRJMatrix(),
               Matrix{{1 / (0.5625f * h), 0, 0, 0, 0, 1 / h, 0, 0, 0, 0, -101.0f / 99, -1, 0, 0,
                       -200.0f / 99, 0}},
               1e-5f);
    mvp.setFrustum(0, 2, 0, 4, 1, 3);
    expectNear(mvp.getPRJMatrix(), Matrix{{1, 0, 0, 0, 0, 0.5f, 0, 0, 1, 1, -2, -1, 0, 0, -3, 0}});
    mvp.setOrtho(0, 720, 0, 1280, -1, 3);
    expectNear(mvp.getPRJMatrix(), Matrix{{2.0f / 720, 0, 0, 0, 0, 2.0f / 1280, 0, 0, 0, 0, -0.5f,
                                           0, -1, -1, -0.5f, 1}});
}

TEST(KNMVPManager, LookAtBuildsTheViewAndOrthonormalisesUp) {
    KNMVPManager mvp;
    mvp.setLookAt({0, 0, 5}, {0, 0, 0}, {0, 2, 1});  // an up vector leaning towards the eye
    EXPECT_NEAR(mvp.getCameraUp().y, 1, 1e-6);
    EXPECT_NEAR(mvp.getCameraUp().z, 0, 1e-6);
    // Looking down -x from (3, 0, 0) with up +y: right is -z.
    mvp.setLookAt(3, 0, 0, 0, 0, 0, 0, 1, 0);
    expectMaps(mvp.getViewMatrix(), {0, 0, 0}, {0, 0, -3});
    expectMaps(mvp.getViewMatrix(), {3, 0, -1}, {1, 0, 0});
    expectMaps(mvp.getViewMatrix(), {3, 2, 0}, {0, 2, 0});
}

TEST(KNMVPManager, ModelScalesThenRotatesThenTranslatesAndProductsAreProjViewModel) {
    KNMVPManager mvp;
    mvp.setTranslate(10, 0, 0);
    mvp.setRotate(90, 0, 0, 1);
    mvp.setScale(2, 1, 1);
    // (1, 0, 0) -> scaled (2, 0, 0) -> turned clockwise (0, -2, 0) -> moved (10, -2, 0).
    expectMaps(mvp.getModelMatrix(), {1, 0, 0}, {10, -2, 0}, 1e-5f);
    mvp.setOrtho(-20, 20, -20, 20, -1, 1);
    mvp.setLookAt(0, 0, 1, 0, 0, 0, 0, 1, 0);
    // One unit behind the eye maps to the far plane.
    expectMaps(mvp.getMVPMatrix(), {1, 0, 0}, {0.5f, -0.1f, 1});
    expectMaps(mvp.getViewProjMatrix(), {10, -2, 0}, {0.5f, -0.1f, 1});
    // A camera that turns does not commute with the model: the model moves the origin to
    // (10, 0, 0) first, seven units behind an eye at (3, 0, 0) looking at the origin.
    mvp.setLookAt(3, 0, 0, 0, 0, 0, 0, 1, 0);
    expectMaps(mvp.getMVMatrix(), {0, 0, 0}, {0, 0, 7}, 1e-5f);
}

TEST(KNMVPManager, InverseTransposeOfTheModel) {
    KNMVPManager mvp;
    mvp.setScale(2, 4, 8);
    EXPECT_TRUE(sameBits(mvp.getITModelMatrix(),
                         Matrix{{0.5f, 0, 0, 0, 0, 0.25f, 0, 0, 0, 0, 0.125f, 0, 0, 0, 0, 1}}));
    // Columns (1, 0, 0), (2, 1, 0), (0, 3, 1): the inverse has columns (1, 0, 0), (-2, 1, 0),
    // (6, -3, 1); transposed, -2 at [0][1], 6 at [0][2] and -3 at [1][2].
    const Matrix shear{{1, 0, 0, 0, 2, 1, 0, 0, 0, 3, 1, 0, 0, 0, 0, 1}};
    mvp.setModelMatrix(shear.m);
    expectNear(mvp.getITModelMatrix(), Matrix{{1, -2, 6, 0, 0, 1, -3, 0, 0, 0, 1, 0, 0, 0, 0, 1}},
               0);
    mvp.setScale(0, 1, 1);  // singular: the 3 x 3 part is zero
    EXPECT_TRUE(
        sameBits(mvp.getITModelMatrix(), Matrix{{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}}));
    mvp.setScale(1e-20f, 1, 1);  // tiny but not singular
    EXPECT_FLOAT_EQ(mvp.getITModelMatrix()[0][0], 1e20f);
}

}  // namespace
