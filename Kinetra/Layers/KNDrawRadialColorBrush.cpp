#include "Kinetra/Layers/KNDrawRadialColorBrush.h"

#include <GLES2/gl2.h>

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/Implementation/BrushFields.h"
#include "Kinetra/Layers/Implementation/BrushParts.h"
#include "Kinetra/Layers/Implementation/RadialQuad.h"
#include "embedded/Kinetra/Layers/KNDrawRadialColorBrush.frag.h"
#include "embedded/Kinetra/Layers/KNDrawRadialColorBrush.vert.h"

namespace Kinetra {

KNDrawRadialColorBrush::KNDrawRadialColorBrush()
    : mRectMesh(nullptr),
      mCentre{0, 0, 0},
      mMaskTexture(kUnsetTexture),
      mRectAlign(0),
      mSurfaceWidth(1024),
      mSurfaceHeight(768),
      mTimeStep(0),
      mAlpha(0),
      mRatio{1.0f, 0.5625f} {}

KNDrawRadialColorBrush::~KNDrawRadialColorBrush() {
    delete mRectMesh;
    qam::forgetLoggedOnce(this);
}

void KNDrawRadialColorBrush::contextChanged() {
    KNIRenderer::contextChanged();
}

void KNDrawRadialColorBrush::initRender(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawRadialColorBrush::initRender", mSurfaceWidth,
                           mSurfaceHeight)) {
        return;
    }
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    createRectTextureShader();
    createRectVertex(width, height);
    createTextureUV();
}

void KNDrawRadialColorBrush::createRectTextureShader() {
    createShaderProgram(qam::embedded::KNDrawRadialColorBrush_vert,
                        qam::embedded::KNDrawRadialColorBrush_frag);
}

void KNDrawRadialColorBrush::createRectVertex(float width, float height) {
    if (mRectMesh == nullptr) {
        mRectMesh = new KNMesh();
    }
    qam::buildRadialQuad(*mRectMesh, mCentre, mRectAlign, width, height);
}

void KNDrawRadialColorBrush::createTextureUV() {
    if (mRectMesh == nullptr) {
        mRectMesh = new KNMesh();
    }
    qam::fillRadialUV(*this, *mRectMesh);
}

void KNDrawRadialColorBrush::resizeSurface(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawRadialColorBrush::resizeSurface",
                           mSurfaceWidth, mSurfaceHeight)) {
        return;
    }
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    createRectVertex(width, height);
    mMaskTexture = kUnsetTexture;
}

void KNDrawRadialColorBrush::setSize(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawRadialColorBrush::setSize", mSurfaceWidth,
                           mSurfaceHeight)) {
        return;
    }
    createRectVertex(width, height);
}

void KNDrawRadialColorBrush::setPosition(float x, float y, float z) {
    mCentre[0] = x;
    mCentre[1] = y;
    mCentre[2] = z;
    createRectVertex(static_cast<float>(mSurfaceWidth), static_cast<float>(mSurfaceHeight));
}

void KNDrawRadialColorBrush::setRectAlign(int mode) {
    mRectAlign = mode;
}

void KNDrawRadialColorBrush::setMaskTexture(const char* name) {
    mMaskTexture = KNTextureManager::getInstancePtr()->getTextureID(name);
}

void KNDrawRadialColorBrush::setRatio(float x, float y) {
    mRatio[0] = x;
    mRatio[1] = y;
}

void KNDrawRadialColorBrush::drawRender() {
    setShaderArrayMeshVertex("aPosition");
    setShaderUniformMVPMatrix("uMVPMatrix");
    setShaderArrayMeshUV("aTexUV");
    setShaderUnifromTexture("uMask", mMaskTexture);
    setShaderUniformValue("uTimeStep", mTimeStep);
    setShaderUniformValue("uCenterX", mCentre[0]);
    setShaderUniformValue("uCenterY", mCentre[1]);
    setShaderUniformValue("uAlpha", mAlpha);
    setVec2UniformValue("uScreenRatio", mRatio);
    glEnable(GL_BLEND);
    glBlendFuncSeparate(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    setDrawElementsWithOption(GL_TRIANGLE_STRIP);
}

}  // namespace Kinetra
