#pragma once

#include <glm/mat3x3.hpp>
#include <glm/mat4x4.hpp>

// The matrices a renderer derives from a drawable before each draw, computed with the
// shortcuts the render core relies on.
namespace qam {

// Transpose of the inverse of the model's upper-left 3 x 3, by cofactors over the
// determinant. A singular matrix is not caught: the result is then not finite.
glm::mat3 normalMatrixOf(const glm::mat4& model);

// view x model, both taken as affine: their bottom rows are ignored and the result's bottom
// row is (0, 0, 0, 1).
glm::mat4 affineProduct(const glm::mat4& view, const glm::mat4& model);

// projection x modelView for a symmetric perspective or orthographic projection: only its
// column-major entries 0, 5, 10, 11, 12, 13, 14 and 15 are read.
glm::mat4 sparseProjectionProduct(const glm::mat4& projection, const glm::mat4& modelView);

}  // namespace qam
