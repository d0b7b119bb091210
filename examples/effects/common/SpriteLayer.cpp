#include "examples/effects/common/SpriteLayer.h"

#include <GLES2/gl2.h>

#include "embedded/examples/effects/common/SpriteLayer.frag.h"
#include "embedded/examples/effects/common/SpriteLayer.vert.h"

namespace qam::samples {

SpriteLayer::SpriteLayer() {
    mMesh.uv = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}};
    mMesh.index = {0, 1, 2, 3};
    setMesh(&mMesh);
}

void SpriteLayer::initRender(float width, float height) {
    setOrthogonalCameraView(0, width, 0, height, -1, 1);
    createShaderProgram(qam::embedded::SpriteLayer_vert, qam::embedded::SpriteLayer_frag);
    setRect(0, 0, width, height);
}

void SpriteLayer::setRect(float x, float y, float width, float height) {
    mMesh.vertex = {{x, y, 0}, {x + width, y, 0}, {x, y + height, 0}, {x + width, y + height, 0}};
}

void SpriteLayer::setSquare(float x, float y, float size) {
    setRect(x - 0.5f * size, y - 0.5f * size, size, size);
}

void SpriteLayer::drawRender() {
    setShaderArrayMeshVertex("aPosition");
    setShaderArrayMeshUV("aTexUV");
    setShaderUniformMVPMatrix("uMVPMatrix");
    setShaderUnformColor("uColor");
    setShaderUniformValue("uTextureAlpha", mTextureAlpha);
    setShaderUnifromTexture("uTexMap", mTexture);
    setDrawElementsWithOption(GL_TRIANGLE_STRIP);
}

}  // namespace qam::samples
