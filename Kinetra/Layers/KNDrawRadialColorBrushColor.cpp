#include "Kinetra/Layers/KNDrawRadialColorBrushColor.h"

#include <GLES2/gl2.h>

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/Implementation/BrushFields.h"
#include "Kinetra/Layers/Implementation/BrushParts.h"
#include "Kinetra/Layers/Implementation/RadialQuad.h"
#include "embedded/Kinetra/Layers/KNDrawRadialColorBrushColor.frag.h"
#include "embedded/Kinetra/Layers/KNDrawRadialColorBrushColor.vert.h"

namespace Kinetra {

KNDrawRadialColorBrushColor::KNDrawRadialColorBrushColor()
    : mRectMesh(nullptr),
      mCentre{0, 0, 0},
      mMaskTexture(kUnsetTexture),
      mColorTexture(kUnsetTexture),
      mRectAlign(0),
      mSurfaceWidth(1024),
      mSurfaceHeight(768),
      mResolutionRatio(0),
      mInvScreen{0, 0} {}

KNDrawRadialColorBrushColor::~KNDrawRadialColorBrushColor() {
    delete mRectMesh;
    qam::forgetLoggedOnce(this);
}

void KNDrawRadialColorBrushColor::contextChanged() {
    KNIRenderer::contextChanged();
}

void KNDrawRadialColorBrushColor::initRender(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawRadialColorBrushColor::initRender",
                           mSurfaceWidth, mSurfaceHeight)) {
        return;
    }
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    createRectTextureShader();
    createRectVertex(width, height);
    createTextureUV();
    setScreenSize(width, height);
}

void KNDrawRadialColorBrushColor::createRectTextureShader() {
    createShaderProgram(qam::embedded::KNDrawRadialColorBrushColor_vert,
                        qam::embedded::KNDrawRadialColorBrushColor_frag);
}

void KNDrawRadialColorBrushColor::createRectVertex(float width, float height) {
    if (mRectMesh == nullptr) {
        mRectMesh = new KNMesh();
    }
    qam::buildRadialQuad(*mRectMesh, mCentre, mRectAlign, width, height);
}

void KNDrawRadialColorBrushColor::createTextureUV() {
    if (mRectMesh == nullptr) {
        mRectMesh = new KNMesh();
    }
    qam::fillRadialUV(*this, *mRectMesh);
}

void KNDrawRadialColorBrushColor::resizeSurface(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawRadialColorBrushColor::resizeSurface",
                           mSurfaceWidth, mSurfaceHeight)) {
        return;
    }
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    createRectVertex(width, height);
    mMaskTexture = kUnsetTexture;
    mColorTexture = kUnsetTexture;
    setScreenSize(width, height);
}

void KNDrawRadialColorBrushColor::setSize(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawRadialColorBrushColor::setSize",
                           mSurfaceWidth, mSurfaceHeight)) {
        return;
    }
    createRectVertex(width, height);
}

void KNDrawRadialColorBrushColor::setPosition(float x, float y, float z) {
    mCentre[0] = x;
    mCentre[1] = y;
    mCentre[2] = z;
    createRectVertex(static_cast<float>(mSurfaceWidth), static_cast<float>(mSurfaceHeight));
}

void KNDrawRadialColorBrushColor::setRectAlign(int mode) {
    mRectAlign = mode;
}

void KNDrawRadialColorBrushColor::setMaskTexture(const char* name) {
    mMaskTexture = KNTextureManager::getInstancePtr()->getTextureID(name);
}

void KNDrawRadialColorBrushColor::setColorTexture(const char* name) {
    mColorTexture = KNTextureManager::getInstancePtr()->getTextureID(name);
}

void KNDrawRadialColorBrushColor::setResolutionRatio(float ratio) {
    mResolutionRatio = ratio;
    mInvScreen[0] = 1.0f / (ratio * getScreenSize()[0]);
    mInvScreen[1] = 1.0f / (ratio * getScreenSize()[1]);
}

void KNDrawRadialColorBrushColor::drawRender() {
    setShaderArrayMeshVertex("aPosition");
    setShaderUniformMVPMatrix("uMVPMatrix");
    setShaderArrayMeshUV("aTexUV");
    setShaderUnifromTexture("uMask", mMaskTexture);
    setShaderUnifromTexture("uColor", mColorTexture);
    setShaderUniformValue("uCenterX", mCentre[0]);
    setShaderUniformValue("uCenterY", mCentre[1]);
    setShaderUniformValue("uInvScreenX", mInvScreen[0]);
    setShaderUniformValue("uInvScreenY", mInvScreen[1]);
    glEnable(GL_BLEND);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    setDrawElementsWithOption(GL_TRIANGLE_STRIP);
}

}  // namespace Kinetra
