#include "Kinetra/Layers/KNDrawBGAdvectWaterBrush.h"

#include <GLES2/gl2.h>

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/Implementation/BrushFields.h"
#include "Kinetra/Layers/Implementation/BrushParts.h"
#include "Kinetra/Layers/Implementation/BrushPass.h"
#include "Kinetra/Layers/Implementation/BrushQuad.h"
#include "Kinetra/Layers/Implementation/WaterPass.h"
#include "embedded/Kinetra/Layers/KNDrawBGAdvectWaterBrush.frag.h"
#include "embedded/Kinetra/Layers/KNDrawBGAdvectWaterBrush.vert.h"

namespace Kinetra {

namespace {

// Uniform slots, in the order they are registered.
enum Slot {
    kMVPMatrix,
    kTexMap,
    kVelocity,
    kRadial,
    kOriginal,
    kNoiseVectorScalar,
    kRadialVectorScalar,
};

constexpr float kNoiseScale = 125.0f;
constexpr float kRadialScale = 18.525f;
// Unlike the colour brushes, initialize writes the raw factor, not a scaled default.
constexpr float kScalarDefault = 1.0f;

}  // namespace

KNDrawBGAdvectWaterBrush::KNDrawBGAdvectWaterBrush()
    : mColor{1, 1, 1, 1},
      mPosition{0, 0, 0},
      mFBOTexture(kUnsetTexture),
      mVelocityTexture(0),
      mRadialTexture(0),
      mBGTexture(kUnsetTexture),
      mRectAlign(0),
      mSurfaceWidth(0),
      mSurfaceHeight(0),
      mNoiseVectorScalar(0),
      mRadialVectorScalar(0) {}

// The members then go in reverse declaration order: shader manager, MVP manager, the meshes.
KNDrawBGAdvectWaterBrush::~KNDrawBGAdvectWaterBrush() {
    qam::forgetLoggedOnce(this);
}

void KNDrawBGAdvectWaterBrush::initialize(float width, float height, int) {
    if (!qam::wholePixels(this, width, height, "KNDrawBGAdvectWaterBrush::initialize")) {
        return;
    }
    qam::setSurfaceProjection(mMVP, width, height);
    createRectTextureShader();
    mNoiseVectorScalar = kScalarDefault;
    mRadialVectorScalar = kScalarDefault;
    mSurfaceWidth = static_cast<int>(width);
    mSurfaceHeight = static_cast<int>(height);
    mMesh.reset();
    mBGMesh.reset();
    createRectVertex(width, height);
    createTextureUV();
    qam::fitWaterBackground(mBGMesh, mSurfaceWidth, mSurfaceHeight);
}

void KNDrawBGAdvectWaterBrush::createRectTextureShader() {
    qam::buildWaterProgram(mShader, qam::embedded::KNDrawBGAdvectWaterBrush_vert,
                           qam::embedded::KNDrawBGAdvectWaterBrush_frag,
                           {{kMVPMatrix, "uMVPMatrix"},
                            {kTexMap, "uTexMap"},
                            {kVelocity, "uVelocity"},
                            {kRadial, "uRadial"},
                            {kOriginal, "uOriginal"},
                            {kNoiseVectorScalar, "uNoiseVectorScalar"},
                            {kRadialVectorScalar, "uRadialVectorScalar"}});
}

void KNDrawBGAdvectWaterBrush::createRectVertex(float width, float height) {
    qam::appendBrushQuad(mMesh, mPosition, mRectAlign, width, height);
}

void KNDrawBGAdvectWaterBrush::createTextureUV() {
    qam::fillWaterUV(mMesh, mBGMesh);
}

void KNDrawBGAdvectWaterBrush::draw() {
    if (!qam::waterReady(this, mMesh, mBGMesh, "KNDrawBGAdvectWaterBrush::draw")) {
        return;
    }
    glDisable(GL_BLEND);
    qam::beginWaterPass(mShader, mMesh, mBGMesh);
    qam::bindBrushTexture(mShader, kTexMap, 0, mFBOTexture);
    qam::bindBrushTexture(mShader, kVelocity, 1, mVelocityTexture);
    qam::bindBrushTexture(mShader, kRadial, 2, mRadialTexture);
    qam::bindBrushTexture(mShader, kOriginal, 3, mBGTexture);
    qam::bindBrushVertices(mShader, mMesh);
    qam::setBrushMatrix(mShader, mMVP);
    qam::setBrushValue(mShader, kNoiseVectorScalar, mNoiseVectorScalar);
    qam::setBrushValue(mShader, kRadialVectorScalar, mRadialVectorScalar);
    qam::finishWaterPass(mShader, mMesh);
}

void KNDrawBGAdvectWaterBrush::contextChanged() {
    mShader.contextChanged();
}

void KNDrawBGAdvectWaterBrush::resizeSurface(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawBGAdvectWaterBrush::resizeSurface",
                           mSurfaceWidth, mSurfaceHeight)) {
        return;
    }
    qam::setSurfaceProjection(mMVP, width, height);
    createRectVertex(width, height);
    qam::fitWaterBackground(mBGMesh, mSurfaceWidth, mSurfaceHeight);
    mBGTexture = kUnsetTexture;
}

void KNDrawBGAdvectWaterBrush::setSize(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawBGAdvectWaterBrush::setSize", mSurfaceWidth,
                           mSurfaceHeight)) {
        return;
    }
    createRectVertex(width, height);
}

void KNDrawBGAdvectWaterBrush::setPosition(float x, float y, float z) {
    qam::storeFloats(mPosition, x, y, z);
    createRectVertex(static_cast<float>(mSurfaceWidth), static_cast<float>(mSurfaceHeight));
}

void KNDrawBGAdvectWaterBrush::setRectAlign(int mode) {
    mRectAlign = mode;
}

void KNDrawBGAdvectWaterBrush::setColor(float r, float g, float b, float a) {
    qam::storeFloats(mColor, r, g, b, a);
}

void KNDrawBGAdvectWaterBrush::setTranslate(float x, float y, float z) {
    mMVP.setTranslate(x, y, z);
}

void KNDrawBGAdvectWaterBrush::setRotate(float angle, float x, float y, float z) {
    mMVP.setRotate(angle, x, y, z);
}

void KNDrawBGAdvectWaterBrush::setScale(float x, float y, float z) {
    mMVP.setScale(x, y, z);
}

void KNDrawBGAdvectWaterBrush::setBGTexture(const char* name, bool) {
    mBGTexture = KNTextureManager::getInstancePtr()->getTextureID(name);
    qam::fitWaterBackground(mBGMesh, mSurfaceWidth, mSurfaceHeight);
}

void KNDrawBGAdvectWaterBrush::changeBGTextureID(unsigned int texture) {
    mBGTexture = texture;
}

void KNDrawBGAdvectWaterBrush::setFBOID(unsigned int texture) {
    mFBOTexture = texture;
}

void KNDrawBGAdvectWaterBrush::setVelocityRadialTextureID(unsigned int velocity,
                                                          unsigned int radial) {
    mVelocityTexture = velocity;
    mRadialTexture = radial;
}

void KNDrawBGAdvectWaterBrush::setNoiseVectorScalar(float scalar) {
    mNoiseVectorScalar = scalar * kNoiseScale;
}

void KNDrawBGAdvectWaterBrush::setRadialVectorScalar(float scalar) {
    mRadialVectorScalar = scalar * kRadialScale;
}

}  // namespace Kinetra
