#include "Kinetra/Layers/KNDrawBGAdvectColorBrush.h"

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNMVPManager.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/Implementation/BrushFields.h"
#include "Kinetra/Layers/Implementation/BrushParts.h"
#include "Kinetra/Layers/Implementation/BrushPass.h"
#include "Kinetra/Layers/Implementation/BrushQuad.h"
#include "embedded/Kinetra/Layers/KNDrawBGAdvectColorBrush.frag.h"
#include "embedded/Kinetra/Layers/KNDrawBGAdvectColorBrush.vert.h"

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
// What setNoiseVectorScalar(0.125) and setRadialVectorScalar(0.5) give.
constexpr float kNoiseDefault = 15.625f;
constexpr float kRadialDefault = 9.2625f;

}  // namespace

KNDrawBGAdvectColorBrush::KNDrawBGAdvectColorBrush()
    : mMesh(nullptr),
      mMVP(nullptr),
      mShader(nullptr),
      mColor{1, 1, 1, 1},
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

KNDrawBGAdvectColorBrush::~KNDrawBGAdvectColorBrush() {
    qam::releaseBrush(mMesh, mMVP, mShader);
    qam::forgetLoggedOnce(this);
}

void KNDrawBGAdvectColorBrush::initialize(float width, float height, int) {
    if (!qam::wholePixels(this, width, height, "KNDrawBGAdvectColorBrush::initialize")) {
        return;
    }
    qam::prepareBrush(mMesh, mMVP, width, height);
    mSurfaceWidth = static_cast<int>(width);
    mSurfaceHeight = static_cast<int>(height);
    createRectTextureShader();
    createRectVertex(width, height);
    createTextureUV();
    mNoiseVectorScalar = kNoiseDefault;
    mRadialVectorScalar = kRadialDefault;
}

void KNDrawBGAdvectColorBrush::createRectTextureShader() {
    if (mShader == nullptr) {
        mShader = new KNShaderManager();
    }
    qam::buildBrushProgram(*mShader, qam::embedded::KNDrawBGAdvectColorBrush_vert,
                           qam::embedded::KNDrawBGAdvectColorBrush_frag,
                           {"uMVPMatrix", "uTexMap", "uVelocity", "uRadial", "uOriginal",
                            "uNoiseVectorScalar", "uRadialVectorScalar"});
}

void KNDrawBGAdvectColorBrush::createRectVertex(float width, float height) {
    if (mMesh == nullptr) {
        mMesh = new KNMesh();
    }
    qam::appendBrushQuad(*mMesh, mPosition, mRectAlign, width, height);
}

void KNDrawBGAdvectColorBrush::createTextureUV() {
    if (mMesh == nullptr) {
        mMesh = new KNMesh();
    }
    qam::appendBaseUV(mMesh->uv);
}

void KNDrawBGAdvectColorBrush::draw() {
    if (!qam::brushReady(this, mMesh, mMVP, mShader, "KNDrawBGAdvectColorBrush::draw")) {
        return;
    }
    qam::beginBrushPass(*mShader, *mMesh);
    qam::bindBrushTexture(*mShader, kTexMap, 0, mFBOTexture);
    qam::bindBrushTexture(*mShader, kVelocity, 1, mVelocityTexture);
    qam::bindBrushTexture(*mShader, kRadial, 2, mRadialTexture);
    qam::bindBrushTexture(*mShader, kOriginal, 3, mBGTexture);
    qam::bindBrushVertices(*mShader, *mMesh);
    qam::setBrushMatrix(*mShader, *mMVP);
    qam::setBrushValue(*mShader, kNoiseVectorScalar, mNoiseVectorScalar);
    qam::setBrushValue(*mShader, kRadialVectorScalar, mRadialVectorScalar);
    qam::finishBrushPass(*mShader, *mMesh);
}

void KNDrawBGAdvectColorBrush::contextChanged() {
    if (mShader != nullptr) {
        mShader->contextChanged();
    }
}

void KNDrawBGAdvectColorBrush::resizeSurface(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawBGAdvectColorBrush::resizeSurface",
                           mSurfaceWidth, mSurfaceHeight)) {
        return;
    }
    if (mMVP != nullptr) {
        qam::setSurfaceProjection(*mMVP, width, height);
    }
    createRectVertex(width, height);
    mBGTexture = kUnsetTexture;
}

void KNDrawBGAdvectColorBrush::setSize(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawBGAdvectColorBrush::setSize", mSurfaceWidth,
                           mSurfaceHeight)) {
        return;
    }
    createRectVertex(width, height);
}

void KNDrawBGAdvectColorBrush::setPosition(float x, float y, float z) {
    qam::storeFloats(mPosition, x, y, z);
    createRectVertex(static_cast<float>(mSurfaceWidth), static_cast<float>(mSurfaceHeight));
}

void KNDrawBGAdvectColorBrush::setRectAlign(int mode) {
    mRectAlign = mode;
}

void KNDrawBGAdvectColorBrush::setColor(float r, float g, float b, float a) {
    qam::storeFloats(mColor, r, g, b, a);
}

void KNDrawBGAdvectColorBrush::setTranslate(float x, float y, float z) {
    if (mMVP != nullptr) {
        mMVP->setTranslate(x, y, z);
    }
}

void KNDrawBGAdvectColorBrush::setRotate(float angle, float x, float y, float z) {
    if (mMVP != nullptr) {
        mMVP->setRotate(angle, x, y, z);
    }
}

void KNDrawBGAdvectColorBrush::setScale(float x, float y, float z) {
    if (mMVP != nullptr) {
        mMVP->setScale(x, y, z);
    }
}

void KNDrawBGAdvectColorBrush::setBGTexture(const char* name, bool) {
    mBGTexture = KNTextureManager::getInstancePtr()->getTextureID(name);
}

void KNDrawBGAdvectColorBrush::changeBGTextureID(unsigned int texture) {
    mBGTexture = texture;
}

void KNDrawBGAdvectColorBrush::setFBOID(unsigned int texture) {
    mFBOTexture = texture;
}

void KNDrawBGAdvectColorBrush::setVelocityRadialTextureID(unsigned int velocity,
                                                          unsigned int radial) {
    mVelocityTexture = velocity;
    mRadialTexture = radial;
}

void KNDrawBGAdvectColorBrush::setNoiseVectorScalar(float scalar) {
    mNoiseVectorScalar = scalar * kNoiseScale;
}

void KNDrawBGAdvectColorBrush::setRadialVectorScalar(float scalar) {
    mRadialVectorScalar = scalar * kRadialScale;
}

}  // namespace Kinetra
