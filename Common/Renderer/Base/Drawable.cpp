#include "Common/Renderer/Base/Drawable.h"

namespace vi {

static glm::mat4 sProjectionMatrix(1.0f);
static glm::mat4 sViewMatrix(1.0f);
static glm::mat4 sIdentityMatrix(1.0f);

glm::mat4* Drawable::mProjectionMatrix = &sProjectionMatrix;
glm::mat4* Drawable::mViewMatrix = &sViewMatrix;
glm::mat4* Drawable::mIdentityMatrix = &sIdentityMatrix;

Drawable::Drawable()
    : mMode(GL_TRIANGLES),
      mTexture(nullptr),
      mUserData(nullptr),
      mDimension(3),
      mModelMatrix(1.0f),
      mNormalMatrix(1.0f),
      mModelViewProjectionMatrix(1.0f),
      mModelViewMatrix(1.0f),
      mOpacity(1.0f),
      mIsPositionsStatic(0),
      mIsNormalsStatic(0),
      mIsTextureCoordsStatic(0),
      mIsIndicesChanged(0) {}

}  // namespace vi
