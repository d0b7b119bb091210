#include "Kinetra/Layers/KNDrawAdvectColorBrush.h"

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNMVPManager.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/Implementation/BrushFields.h"
#include "Kinetra/Layers/Implementation/BrushParts.h"
#include "Kinetra/Layers/Implementation/BrushPass.h"
#include "Kinetra/Layers/Implementation/BrushQuad.h"
#include "embedded/Kinetra/Layers/KNDrawAdvectColorBrush.frag.h"
#include "embedded/Kinetra/Layers/KNDrawAdvectColorBrush.vert.h"

namespace Kinetra {

namespace {

// Uniform slots, in the order they are registered.
enum Slot {
    kMVPMatrix,
    kTexMap,
    kVelocity,
    kRadial,
    kOriginal,
    kRadialColor,
    kNoiseVectorScalar,
    kRadialVectorScalar,
    kBackground,
    kInvScreenX,
    kInvScreenY,
    kUnlockRatio,  // registered, though the program has no such uniform
};

constexpr float kNoiseScale = 125.0f;
constexpr float kRadialScale = 18.525f;
// What setNoiseVectorScalar(0.125) and setRadialVectorScalar(0.5) give.
constexpr float kNoiseDefault = 15.625f;
constexpr float kRadialDefault = 9.2625f;

}  // namespace

KNDrawAdvectColorBrush::KNDrawAdvectColorBrush()
    : mMesh(nullptr),
      mMVP(nullptr),
      mShader(nullptr),
      mColor{1, 1, 1, 1},
      mPosition{0, 0, 0},
      mFBOTexture(kUnsetTexture),
      mVelocityTexture(0),
      mRadialTexture(0),
      mRadialColorTexture(0),
      mBackgroundTexture(kUnsetTexture),
      mPatternColorTexture(kUnsetTexture),
      mRectAlign(0),
      mSurfaceWidth(0),
      mSurfaceHeight(0),
      mNoiseVectorScalar(0),
      mRadialVectorScalar(0) {}

KNDrawAdvectColorBrush::~KNDrawAdvectColorBrush() {
    qam::releaseBrush(mMesh, mMVP, mShader);
    qam::forgetLoggedOnce(this);
}

void KNDrawAdvectColorBrush::initialize(float width, float height, int) {
    if (!qam::wholePixels(this, width, height, "KNDrawAdvectColorBrush::initialize")) {
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

void KNDrawAdvectColorBrush::createRectTextureShader() {
    if (mShader == nullptr) {
        mShader = new KNShaderManager();
    }
    qam::buildBrushProgram(*mShader, qam::embedded::KNDrawAdvectColorBrush_vert,
                           qam::embedded::KNDrawAdvectColorBrush_frag,
                           {"uMVPMatrix", "uTexMap", "uVelocity", "uRadial", "uOriginal",
                            "uRadialColor", "uNoiseVectorScalar", "uRadialVectorScalar",
                            "uBackground", "uInvScreenX", "uInvScreenY", "uUnlockRatio"});
}

void KNDrawAdvectColorBrush::createRectVertex(float width, float height) {
    if (mMesh == nullptr) {
        mMesh = new KNMesh();
    }
    qam::appendBrushQuad(*mMesh, mPosition, mRectAlign, width, height);
}

void KNDrawAdvectColorBrush::createTextureUV() {
    if (mMesh == nullptr) {
        mMesh = new KNMesh();
    }
    qam::appendBaseUV(mMesh->uv);
}

void KNDrawAdvectColorBrush::draw() {
    if (!qam::brushReady(this, mMesh, mMVP, mShader, "KNDrawAdvectColorBrush::draw")) {
        return;
    }
    qam::beginBrushPass(*mShader, *mMesh);
    qam::bindBrushTexture(*mShader, kTexMap, 0, mFBOTexture);
    qam::bindBrushTexture(*mShader, kVelocity, 1, mVelocityTexture);
    qam::bindBrushTexture(*mShader, kRadial, 2, mRadialTexture);
    qam::bindBrushTexture(*mShader, kOriginal, 3, mPatternColorTexture);
    qam::bindBrushTexture(*mShader, kRadialColor, 4, mRadialColorTexture);
    qam::bindBrushTexture(*mShader, kBackground, 5, mBackgroundTexture);
    qam::bindBrushVertices(*mShader, *mMesh);
    qam::setBrushMatrix(*mShader, *mMVP);
    qam::setBrushValue(*mShader, kNoiseVectorScalar, mNoiseVectorScalar);
    qam::setBrushValue(*mShader, kRadialVectorScalar, mRadialVectorScalar);
    qam::setBrushValue(*mShader, kInvScreenX, 1.0f / static_cast<float>(mSurfaceWidth));
    qam::setBrushValue(*mShader, kInvScreenY, 1.0f / static_cast<float>(mSurfaceHeight));
    qam::finishBrushPass(*mShader, *mMesh);
}

void KNDrawAdvectColorBrush::contextChanged() {
    if (mShader != nullptr) {
        mShader->contextChanged();
    }
}

void KNDrawAdvectColorBrush::resizeSurface(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawAdvectColorBrush::resizeSurface",
                           mSurfaceWidth, mSurfaceHeight)) {
        return;
    }
    if (mMVP != nullptr) {
        qam::setSurfaceProjection(*mMVP, width, height);
    }
    createRectVertex(width, height);
    mBackgroundTexture = kUnsetTexture;
    mPatternColorTexture = kUnsetTexture;
}

void KNDrawAdvectColorBrush::setSize(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawAdvectColorBrush::setSize", mSurfaceWidth,
                           mSurfaceHeight)) {
        return;
    }
    createRectVertex(width, height);
}

void KNDrawAdvectColorBrush::setPosition(float x, float y, float z) {
    qam::storeFloats(mPosition, x, y, z);
    createRectVertex(static_cast<float>(mSurfaceWidth), static_cast<float>(mSurfaceHeight));
}

void KNDrawAdvectColorBrush::setRectAlign(int mode) {
    mRectAlign = mode;
}

void KNDrawAdvectColorBrush::setColor(float r, float g, float b, float a) {
    qam::storeFloats(mColor, r, g, b, a);
}

void KNDrawAdvectColorBrush::setTranslate(float x, float y, float z) {
    if (mMVP != nullptr) {
        mMVP->setTranslate(x, y, z);
    }
}

void KNDrawAdvectColorBrush::setRotate(float angle, float x, float y, float z) {
    if (mMVP != nullptr) {
        mMVP->setRotate(angle, x, y, z);
    }
}

void KNDrawAdvectColorBrush::setScale(float x, float y, float z) {
    if (mMVP != nullptr) {
        mMVP->setScale(x, y, z);
    }
}

void KNDrawAdvectColorBrush::setBGTexture(const char* name, bool) {
    mBackgroundTexture = KNTextureManager::getInstancePtr()->getTextureID(name);
}

void KNDrawAdvectColorBrush::setPatternColorTexture(char* name, bool) {
    mPatternColorTexture = KNTextureManager::getInstancePtr()->getTextureID(name);
}

void KNDrawAdvectColorBrush::setFBOID(unsigned int texture) {
    mFBOTexture = texture;
}

void KNDrawAdvectColorBrush::setBackgroundTextureID(unsigned int texture) {
    mBackgroundTexture = texture;
}

void KNDrawAdvectColorBrush::changePatternColorTextureID(unsigned int texture) {
    mPatternColorTexture = texture;
}

void KNDrawAdvectColorBrush::setVelocityRadialTextureID(unsigned int velocity, unsigned int radial,
                                                        unsigned int radialColor) {
    mVelocityTexture = velocity;
    mRadialTexture = radial;
    mRadialColorTexture = radialColor;
}

void KNDrawAdvectColorBrush::setNoiseVectorScalar(float scalar) {
    mNoiseVectorScalar = scalar * kNoiseScale;
}

void KNDrawAdvectColorBrush::setRadialVectorScalar(float scalar) {
    mRadialVectorScalar = scalar * kRadialScale;
}

}  // namespace Kinetra
