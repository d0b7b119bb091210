#include "Common/Renderer/Base/Implementation/DrawableMatrices.h"

#include <gtest/gtest.h>

#include <glm/gtc/matrix_inverse.hpp>
#include <glm/gtc/matrix_transform.hpp>

namespace {

template <typename Matrix>
void expectNear(const Matrix& actual, const Matrix& expected) {
    for (int column = 0; column < Matrix::length(); ++column) {
        for (int row = 0; row < Matrix::col_type::length(); ++row) {
            EXPECT_NEAR(actual[column][row], expected[column][row], 1e-5f)
                << "at [" << column << "][" << row << "]";
        }
    }
}

glm::mat4 someModel() {
    glm::mat4 model = glm::translate(glm::mat4(1.0f), glm::vec3(3.0f, -2.0f, 0.5f));
    model = glm::rotate(model, 0.7f, glm::normalize(glm::vec3(1.0f, 2.0f, -0.5f)));
    return glm::scale(model, glm::vec3(2.0f, 0.5f, 1.5f));
}

TEST(DrawableMatrices, NormalMatrixIsTheInverseTransposeOfTheUpperLeft) {
    const glm::mat4 model = someModel();
    expectNear(qam::normalMatrixOf(model), glm::inverseTranspose(glm::mat3(model)));
}

TEST(DrawableMatrices, ModelViewIsAnAffineProductWithItsBottomRowForced) {
    const glm::mat4 view = glm::lookAt(glm::vec3(1, 2, 5), glm::vec3(0), glm::vec3(0, 1, 0));
    glm::mat4 model = someModel();
    const glm::mat4 expected = view * model;
    model[0][3] = 7.0f;  // a bottom row that an affine product never reads
    model[3][3] = 2.0f;
    expectNear(qam::affineProduct(view, model), expected);
}

TEST(DrawableMatrices, MvpReadsOnlyTheEntriesOfASymmetricProjection) {
    const glm::mat4 modelView = someModel();
    const glm::mat4 perspective = glm::perspective(1.0f, 0.6f, 1.0f, 100.0f);
    expectNear(qam::sparseProjectionProduct(perspective, modelView), perspective * modelView);

    glm::mat4 cluttered = perspective;
    for (int index : {1, 2, 3, 4, 6, 7, 8, 9}) {
        cluttered[index / 4][index % 4] = 9.0f;
    }
    expectNear(qam::sparseProjectionProduct(cluttered, modelView), perspective * modelView);
}

}  // namespace
