#include "Common/Renderer/Base/Implementation/DrawableMatrices.h"

namespace qam {

// Indexing below is a[column][row]; the cofactor formula is the same read either way, and
// the cofactor matrix over the determinant is already the inverse transposed.
glm::mat3 normalMatrixOf(const glm::mat4& a) {
    glm::mat3 c;
    c[0][0] = a[1][1] * a[2][2] - a[1][2] * a[2][1];
    c[0][1] = a[1][2] * a[2][0] - a[1][0] * a[2][2];
    c[0][2] = a[1][0] * a[2][1] - a[1][1] * a[2][0];
    c[1][0] = a[0][2] * a[2][1] - a[0][1] * a[2][2];
    c[1][1] = a[0][0] * a[2][2] - a[0][2] * a[2][0];
    c[1][2] = a[0][1] * a[2][0] - a[0][0] * a[2][1];
    c[2][0] = a[0][1] * a[1][2] - a[0][2] * a[1][1];
    c[2][1] = a[0][2] * a[1][0] - a[0][0] * a[1][2];
    c[2][2] = a[0][0] * a[1][1] - a[0][1] * a[1][0];
    const float determinant = a[0][0] * c[0][0] + a[0][1] * c[0][1] + a[0][2] * c[0][2];
    for (int column = 0; column < 3; ++column) {
        for (int row = 0; row < 3; ++row) {
            c[column][row] /= determinant;
        }
    }
    return c;
}

glm::mat4 affineProduct(const glm::mat4& view, const glm::mat4& model) {
    glm::mat4 result(0.0f);
    for (int column = 0; column < 4; ++column) {
        for (int row = 0; row < 3; ++row) {
            float sum = view[0][row] * model[column][0];
            for (int k = 1; k < 3; ++k) {
                sum += view[k][row] * model[column][k];
            }
            // The model's bottom row is taken as (0, 0, 0, 1): the view's translation comes
            // last, as in the full product.
            result[column][row] = column == 3 ? sum + view[3][row] : sum;
        }
    }
    result[3][3] = 1.0f;
    return result;
}

glm::mat4 sparseProjectionProduct(const glm::mat4& p, const glm::mat4& mv) {
    glm::mat4 result;
    for (int column = 0; column < 4; ++column) {
        const glm::vec4& m = mv[column];
        result[column][0] = p[0][0] * m[0] + p[3][0] * m[3];
        result[column][1] = p[1][1] * m[1] + p[3][1] * m[3];
        result[column][2] = p[2][2] * m[2] + p[3][2] * m[3];
        result[column][3] = p[2][3] * m[2] + p[3][3] * m[3];
    }
    return result;
}

}  // namespace qam
