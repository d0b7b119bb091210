#pragma once

#include <GLES2/gl2.h>

#include <cstdint>
#include <glm/mat3x3.hpp>
#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <vector>

#include "Common/Platform/Export.h"

namespace vi {

class Texture;

// Geometry, transform and opacity of one drawn object. Effect code fills it; a vi::Renderer
// reads it at every draw and writes the derived matrices.
struct TALVEQAM_EXPORT Drawable {
    Drawable();

    // Primitive of the draw call, e.g. GL_TRIANGLES.
    GLenum mMode;
    // What the ready-made renderers bind to "uTexture"; not owned.
    Texture* mTexture;
    // For the effect's own use; the render core never reads it.
    void* mUserData;
    // Empty: drawn with glDrawArrays.
    std::vector<uint16_t> mIndices;
    // 3 selects mPositions3, anything else mPositions2.
    unsigned mDimension;
    std::vector<glm::vec3> mPositions3;
    std::vector<glm::vec2> mPositions2;
    // For the effect's own use; the render core never reads them.
    std::vector<glm::vec4> mColors;
    std::vector<glm::vec3> mTangents;
    std::vector<glm::vec3> mNormals;
    std::vector<glm::vec2> mTextureCoords;

    glm::mat4 mModelMatrix;
    // Derived at each draw from the model matrix and the shared camera matrices.
    glm::mat3 mNormalMatrix;
    glm::mat4 mModelViewProjectionMatrix;
    glm::mat4 mModelViewMatrix;
    // Published as "uOpacity".
    float mOpacity;

    // Passed as `isStatic` when a renderer adds the matching attribute: static arrays are
    // uploaded once, the others at every draw.
    uint8_t mIsPositionsStatic;
    uint8_t mIsNormalsStatic;
    uint8_t mIsTextureCoordsStatic;
    // Set by the effect after editing mIndices; the next draw re-uploads them and clears it.
    uint8_t mIsIndicesChanged;

    // The camera matrices shared by every drawable of the current effect. They point at
    // library-held identity matrices until an effect writes or re-points them.
    static glm::mat4* mProjectionMatrix;
    static glm::mat4* mViewMatrix;
    static glm::mat4* mIdentityMatrix;
};

}  // namespace vi
