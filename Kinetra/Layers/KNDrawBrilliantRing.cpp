#include "Kinetra/Layers/KNDrawBrilliantRing.h"

#include <GLES2/gl2.h>

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/Implementation/BrilliantQuad.h"
#include "Kinetra/Layers/Implementation/BrushFields.h"
#include "Kinetra/Layers/Implementation/BrushParts.h"
#include "embedded/Kinetra/Layers/KNDrawBrilliantRing.frag.h"
#include "embedded/Kinetra/Layers/KNDrawBrilliantRing.vert.h"

namespace Kinetra {

namespace {

// The background is zoomed by 1 / 0.95 about its centre.
constexpr float kTabScale = 0.95f;

float* floats(std::vector<KNVector3D<float>>& array) {
    return reinterpret_cast<float*>(array.data());
}

}  // namespace

KNDrawBrilliantRing::KNDrawBrilliantRing() {
    mMesh.reset();
    // Before initialize a draw finds an empty mesh rather than none.
    setMesh(&mMesh);
}

KNDrawBrilliantRing::~KNDrawBrilliantRing() {
    qam::forgetLoggedOnce(this);
}

void KNDrawBrilliantRing::contextChanged() {
    KNIRenderer::contextChanged();
}

void KNDrawBrilliantRing::initRender(float width, float height) {
    if (!qam::wholePixels(this, width, height, "KNDrawBrilliantRing::initRender")) {
        return;
    }
    fitSurface(width, height);
    createRectTextureShader();
    createRectVertex(width, height);
    createTabScaledTextureUV(kTabScale, {0, 0});
}

void KNDrawBrilliantRing::fitSurface(float width, float height) {
    mInvSurfaceWidth = 1.0f / width;
    mInvSurfaceHeight = 1.0f / height;
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
}

void KNDrawBrilliantRing::createRectTextureShader() {
    createShaderProgram(qam::embedded::KNDrawBrilliantRing_vert,
                        qam::embedded::KNDrawBrilliantRing_frag);
}

void KNDrawBrilliantRing::createRectVertex(float width, float height) {
    // The background coordinates are fitted to the size in whole pixels.
    if (!qam::wholePixels(this, width, height, "KNDrawBrilliantRing::createRectVertex")) {
        return;
    }
    qam::buildBrilliantQuad(mMesh, 0, 0, width, height);
    qam::writeBaseUV(mMesh.uv);
    mBackgroundUV = mMesh.uv;
    KNTextureManager::getInstancePtr()->normalizeTextureCoord(
        mBackgroundUV, static_cast<int>(width), static_cast<int>(height));
    setMesh(&mMesh);
}

void KNDrawBrilliantRing::createTabScaledTextureUV(const float& scale,
                                                   const KNVector2D<float>& offset) {
    const float s = scale;
    mTabScaledUV.resize(4);
    mTabScaledUV[0] = {1 - s + offset.x, s + offset.y, 0};
    mTabScaledUV[1] = {s + offset.x, s + offset.y, 0};
    mTabScaledUV[2] = {1 - s + offset.x, 1 - s + offset.y, 0};
    mTabScaledUV[3] = {s + offset.x, 1 - s + offset.y, 0};
}

void KNDrawBrilliantRing::resizeSurface(float width, float height) {
    if (!qam::wholePixels(this, width, height, "KNDrawBrilliantRing::resizeSurface")) {
        return;
    }
    fitSurface(width, height);
    createRectVertex(width, height);
    createTabScaledTextureUV(kTabScale, {0, 0});
}

void KNDrawBrilliantRing::setPosition(float x, float y, float z) {
    qam::storeFloats(mPosition, x, y, z);
    createRectVertex(static_cast<float>(mSurfaceWidth), static_cast<float>(mSurfaceHeight));
}

void KNDrawBrilliantRing::setSize(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawBrilliantRing::setSize", mSurfaceWidth,
                           mSurfaceHeight)) {
        return;
    }
    createRectVertex(width, height);
}

void KNDrawBrilliantRing::drawRender() {
    setShaderArrayMeshVertex("aPosition");
    setShaderUniformMVPMatrix("uMVPMatrix");
    setShaderArrayVector("aTabScaledUV", floats(mTabScaledUV), 3);
    setShaderArrayVector("aTexUVBg", floats(mBackgroundUV), 3);
    setShaderArrayMeshUV("aTexUV");
    setShaderUnifromTexture("uBackgroundMap", mBackgroundTextureId);
    setShaderUnifromTexture("uShineMap", mShineTextureId);
    setShaderUnifromTexture("uDiamondMap", mDiamondTextureId);
    setShaderUnifromTexture("uAlphaMap", mAlphaTextureId);
    setShaderUnifromTexture("uBlurMap", mBlurTextureId);
    setShaderUniformValue("uAlpha", mAlpha);
    setDrawElementsWithOption(GL_TRIANGLE_STRIP);
}

}  // namespace Kinetra
