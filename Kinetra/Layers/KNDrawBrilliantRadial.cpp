#include "Kinetra/Layers/KNDrawBrilliantRadial.h"

#include <GLES2/gl2.h>

#include <utility>

#include "Common/Platform/Log.h"
#include "Kinetra/Layers/Implementation/BrilliantQuad.h"
#include "Kinetra/Layers/Implementation/BrushFields.h"
#include "embedded/Kinetra/Layers/KNDrawBrilliantRadial.frag.h"
#include "embedded/Kinetra/Layers/KNDrawBrilliantRadial.vert.h"

namespace Kinetra {

KNDrawBrilliantRadial::KNDrawBrilliantRadial() {
    mMesh.reset();
    // Before initialize a draw finds an empty mesh rather than none.
    setMesh(&mMesh);
}

KNDrawBrilliantRadial::~KNDrawBrilliantRadial() {
    qam::forgetLoggedOnce(this);
}

void KNDrawBrilliantRadial::contextChanged() {
    KNIRenderer::contextChanged();
}

void KNDrawBrilliantRadial::initRender(float width, float height) {
    setReciprocals(width, height);
    mPatternFollowsScreen = width <= height;
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    createRectTextureShader();
    createRectVertex(width, height);
}

void KNDrawBrilliantRadial::setReciprocals(float width, float height) {
    mInvSurfaceWidth = 1.0f / width;
    mInvSurfaceHeight = 1.0f / height;
}

void KNDrawBrilliantRadial::createRectTextureShader() {
    createShaderProgram(qam::embedded::KNDrawBrilliantRadial_vert,
                        qam::embedded::KNDrawBrilliantRadial_frag);
}

void KNDrawBrilliantRadial::createRectVertex(float width, float height) {
    qam::buildBrilliantQuad(mMesh, mPosition[0] - 0.5f * width, mPosition[1] - 0.5f * height, width,
                            height);
    // Upright on purpose: flipTextureV turns these into the base coordinates.
    mMesh.uv[0] = {0, 0, 0};
    mMesh.uv[1] = {1, 0, 0};
    mMesh.uv[2] = {0, 1, 0};
    mMesh.uv[3] = {1, 1, 0};
    // Screen coordinates (aScreenUV) with v = 0 at the top of the surface.
    mMesh.normal.resize(4);
    for (size_t i = 0; i < 4; ++i) {
        mMesh.normal[i] = {mMesh.vertex[i].x * mInvSurfaceWidth,
                           1.0f - mMesh.vertex[i].y * mInvSurfaceHeight, 0};
    }
    createPatternTextureUV();
    setMesh(&mMesh);
}

void KNDrawBrilliantRadial::createPatternTextureUV() {
    mPatternUV.clear();
    for (const KNVector3D<float>& screen : mMesh.normal) {
        if (mPatternFollowsScreen) {
            mPatternUV.push_back({screen.x, screen.y, 0});
        } else {
            mPatternUV.push_back({screen.y, screen.x, 0});
        }
    }
}

void KNDrawBrilliantRadial::flipTextureV() {
    if (mMesh.uv.size() < 4) {
        qam::logErrorOnce(this,
                          "KNDrawBrilliantRadial::flipTextureV: no quad yet, nothing flipped");
        return;
    }
    std::swap(mMesh.uv[0].y, mMesh.uv[2].y);
    std::swap(mMesh.uv[1].y, mMesh.uv[3].y);
}

void KNDrawBrilliantRadial::resizeSurface(float width, float height) {
    setReciprocals(width, height);
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    createRectVertex(width, height);
}

void KNDrawBrilliantRadial::setPosition(float x, float y, float z) {
    qam::storeFloats(mPosition, x, y, z);
    createRectVertex(static_cast<float>(mSurfaceWidth), static_cast<float>(mSurfaceHeight));
}

void KNDrawBrilliantRadial::setSize(float width, float height) {
    qam::storeSurface(this, width, height, "KNDrawBrilliantRadial::setSize", mSurfaceWidth,
                      mSurfaceHeight);
}

void KNDrawBrilliantRadial::drawRender() {
    glDisable(GL_DEPTH_TEST);
    setShaderArrayMeshVertex("aPosition");
    setShaderArrayMeshNormal("aScreenUV");
    setShaderUniformMVPMatrix("uMVPMatrix");
    setShaderArrayMeshUV("aTexUV");
    setShaderArrayVector("aPatternUV", reinterpret_cast<float*>(mPatternUV.data()), 3);
    setShaderUnifromTexture("uAlphaMap", mAlphaShapeTextureId);
    setShaderUnifromTexture("uPatternMap", mPatternTextureId);
    setShaderUniformValue("uTimeStep", mTimeStep);
    // The base applied this frame's blend state before drawRender: this takes effect from the
    // next draw on.
    setBlendOption(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    setDrawElementsWithOption(GL_TRIANGLE_STRIP);
}

}  // namespace Kinetra
