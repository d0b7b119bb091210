#include "Kinetra/Layers/KNDrawRadialWaterBrush.h"

#include <GLES2/gl2.h>

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/Implementation/BrushFields.h"
#include "Kinetra/Layers/Implementation/BrushParts.h"
#include "Kinetra/Layers/Implementation/RadialQuad.h"
#include "embedded/Kinetra/Layers/KNDrawRadialWaterBrush.frag.h"
#include "embedded/Kinetra/Layers/KNDrawRadialWaterBrush.vert.h"

namespace Kinetra {

KNDrawRadialWaterBrush::KNDrawRadialWaterBrush()
    : mCentre{0, 0, 0},
      mMaskTexture(kUnsetTexture),
      mGraphTexture(kUnsetTexture),
      mRectAlign(0),
      mSurfaceWidth(1024),
      mSurfaceHeight(768),
      mTimeStep(0),
      mAlpha(0),
      mRatio{1.0f, 0.5625f},
      mGraphPow(0),
      mGraphMultiply(0) {}

KNDrawRadialWaterBrush::~KNDrawRadialWaterBrush() {
    qam::forgetLoggedOnce(this);
}

void KNDrawRadialWaterBrush::contextChanged() {
    KNIRenderer::contextChanged();
}

void KNDrawRadialWaterBrush::initRender(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawRadialWaterBrush::initRender", mSurfaceWidth,
                           mSurfaceHeight)) {
        return;
    }
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    mRectMesh.reset();
    createRectTextureShader();
    createRectVertex(width, height);
    createTextureUV();
    mGraphPow = 2.0f;
    mGraphMultiply = 4.0f;
}

void KNDrawRadialWaterBrush::createRectTextureShader() {
    createShaderProgram(qam::embedded::KNDrawRadialWaterBrush_vert,
                        qam::embedded::KNDrawRadialWaterBrush_frag);
}

void KNDrawRadialWaterBrush::createRectVertex(float width, float height) {
    qam::buildRadialQuad(mRectMesh, mCentre, mRectAlign, width, height);
}

void KNDrawRadialWaterBrush::createTextureUV() {
    qam::fillRadialUV(*this, mRectMesh);
}

void KNDrawRadialWaterBrush::resizeSurface(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawRadialWaterBrush::resizeSurface",
                           mSurfaceWidth, mSurfaceHeight)) {
        return;
    }
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    createRectVertex(width, height);
    mMaskTexture = kUnsetTexture;
    mGraphTexture = kUnsetTexture;
}

void KNDrawRadialWaterBrush::setSize(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawRadialWaterBrush::setSize", mSurfaceWidth,
                           mSurfaceHeight)) {
        return;
    }
    createRectVertex(width, height);
}

void KNDrawRadialWaterBrush::setPosition(float x, float y, float z) {
    mCentre[0] = x;
    mCentre[1] = y;
    mCentre[2] = z;
    createRectVertex(static_cast<float>(mSurfaceWidth), static_cast<float>(mSurfaceHeight));
}

void KNDrawRadialWaterBrush::setRectAlign(int mode) {
    mRectAlign = mode;
}

void KNDrawRadialWaterBrush::setMaskTexture(const char* name) {
    mMaskTexture = KNTextureManager::getInstancePtr()->getTextureID(name);
}

void KNDrawRadialWaterBrush::setGraphTexture(const char* name) {
    mGraphTexture = KNTextureManager::getInstancePtr()->getTextureID(name);
}

void KNDrawRadialWaterBrush::setRatio(float x, float y) {
    mRatio[0] = x;
    mRatio[1] = y;
}

void KNDrawRadialWaterBrush::drawRender() {
    setShaderArrayMeshVertex("aPosition");
    setShaderUniformMVPMatrix("uMVPMatrix");
    setShaderArrayMeshUV("aTexUV");
    setShaderUnifromTexture("uMask", mMaskTexture);
    setShaderUnifromTexture("uTube", mGraphTexture);
    setShaderUniformValue("uTimeStep", mTimeStep);
    setShaderUniformValue("uCenterX", mCentre[0]);
    setShaderUniformValue("uCenterY", mCentre[1]);
    // Width from the whole-pixel surface, height from the renderer's float screen size.
    setShaderUniformValue("uInvScreenX", 1.0f / static_cast<float>(mSurfaceWidth));
    setShaderUniformValue("uInvScreenY", 1.0f / getScreenSize()[1]);
    setShaderUniformValue("uPow", mGraphPow);
    setShaderUniformValue("uMultiply", mGraphMultiply);
    setShaderUniformValue("uAlpha", mAlpha);
    setShaderUniformValue("uXRatio", mRatio[0]);
    setShaderUniformValue("uYRatio", mRatio[1]);
    glEnable(GL_BLEND);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    setDrawElementsWithOption(GL_TRIANGLE_STRIP);
}

}  // namespace Kinetra
