#include "Kinetra/Layers/KNDrawMixColorBrush.h"

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNMVPManager.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/Implementation/BrushFields.h"
#include "Kinetra/Layers/Implementation/BrushParts.h"
#include "Kinetra/Layers/Implementation/BrushPass.h"
#include "Kinetra/Layers/Implementation/BrushQuad.h"
#include "embedded/Kinetra/Layers/KNDrawMixColorBrush.frag.h"
#include "embedded/Kinetra/Layers/KNDrawMixColorBrush.vert.h"

namespace Kinetra {

namespace {

// Uniform slots, in the order they are registered.
enum Slot {
    kMVPMatrix,
    kTexMap,
    kDensity,
    kAlpha,
    kAlphaRatio,
    kBrightRatio,
    kSaturation,
    kBrightness,
    kRedSaturation,
    kGreenSaturation,
    kBlueSaturation,
    kColorDensity,
};

// Written by initialize after the quad.
constexpr float kBrightnessDefault = 1.1f;
constexpr float kSaturationDefault = 1.2f;
constexpr float kChannelSaturationDefault = 0.3333f;

}  // namespace

KNDrawMixColorBrush::KNDrawMixColorBrush()
    : mMesh(nullptr),
      mMVP(nullptr),
      mShader(nullptr),
      mColor{1, 1, 1, 1},
      mPosition{0, 0, 0},
      mBGTexture(kUnsetTexture),
      mAlphaTexture(0),
      mDensityTexture(0),
      mColorDensityTexture(0),
      mRectAlign(0),
      mSurfaceWidth(0),
      mSurfaceHeight(0),
      mAlpha(1.0f),
      mBrightWeight(0.89f),
      mBrightness(0),
      mSaturation(0),
      mRedSaturation(0),
      mGreenSaturation(0),
      mBlueSaturation(0) {}

KNDrawMixColorBrush::~KNDrawMixColorBrush() {
    qam::releaseBrush(mMesh, mMVP, mShader);
    qam::forgetLoggedOnce(this);
}

void KNDrawMixColorBrush::initialize(float width, float height, int) {
    if (!qam::wholePixels(this, width, height, "KNDrawMixColorBrush::initialize")) {
        return;
    }
    qam::prepareBrush(mMesh, mMVP, width, height);
    mSurfaceWidth = static_cast<int>(width);
    mSurfaceHeight = static_cast<int>(height);
    createRectTextureShader();
    createRectVertex(width, height);
    createTextureUV();
    mBrightness = kBrightnessDefault;
    mSaturation = kSaturationDefault;
    mRedSaturation = kChannelSaturationDefault;
    mGreenSaturation = kChannelSaturationDefault;
    mBlueSaturation = kChannelSaturationDefault;
}

void KNDrawMixColorBrush::createRectTextureShader() {
    if (mShader == nullptr) {
        mShader = new KNShaderManager();
    }
    qam::buildBrushProgram(*mShader, qam::embedded::KNDrawMixColorBrush_vert,
                           qam::embedded::KNDrawMixColorBrush_frag,
                           {"uMVPMatrix", "uTexMap", "uDensity", "uAlpha", "uAlphaRatio",
                            "uBrightRatio", "uSaturation", "uBrightness", "uRedSaturation",
                            "uGreenSaturation", "uBlueSaturation", "uColorDensity"});
}

void KNDrawMixColorBrush::createRectVertex(float width, float height) {
    if (mMesh == nullptr) {
        mMesh = new KNMesh();
    }
    qam::appendBrushQuad(*mMesh, mPosition, mRectAlign, width, height);
}

void KNDrawMixColorBrush::createTextureUV() {
    if (mMesh == nullptr) {
        mMesh = new KNMesh();
    }
    qam::appendBaseUV(mMesh->uv);
}

void KNDrawMixColorBrush::draw() {
    if (!qam::brushReady(this, mMesh, mMVP, mShader, "KNDrawMixColorBrush::draw")) {
        return;
    }
    qam::beginBrushPass(*mShader, *mMesh);
    qam::bindBrushTexture(*mShader, kTexMap, 0, mBGTexture);
    qam::bindBrushTexture(*mShader, kDensity, 1, mDensityTexture);
    qam::bindBrushTexture(*mShader, kAlpha, 2, mAlphaTexture);
    qam::bindBrushTexture(*mShader, kColorDensity, 3, mColorDensityTexture);
    // This brush sends its values before the vertices.
    qam::setBrushValue(*mShader, kAlphaRatio, mAlpha);
    qam::setBrushValue(*mShader, kBrightRatio, mBrightWeight);
    qam::setBrushValue(*mShader, kSaturation, mSaturation);
    qam::setBrushValue(*mShader, kBrightness, mBrightness);
    qam::setBrushValue(*mShader, kRedSaturation, mRedSaturation);
    qam::setBrushValue(*mShader, kGreenSaturation, mGreenSaturation);
    qam::setBrushValue(*mShader, kBlueSaturation, mBlueSaturation);
    qam::bindBrushVertices(*mShader, *mMesh);
    qam::setBrushMatrix(*mShader, *mMVP);
    qam::finishBrushPass(*mShader, *mMesh);
}

void KNDrawMixColorBrush::contextChanged() {
    if (mShader != nullptr) {
        mShader->contextChanged();
    }
}

void KNDrawMixColorBrush::resizeSurface(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawMixColorBrush::resizeSurface", mSurfaceWidth,
                           mSurfaceHeight)) {
        return;
    }
    if (mMVP != nullptr) {
        qam::setSurfaceProjection(*mMVP, width, height);
    }
    createRectVertex(width, height);
    mBGTexture = kUnsetTexture;
}

void KNDrawMixColorBrush::setSize(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawMixColorBrush::setSize", mSurfaceWidth,
                           mSurfaceHeight)) {
        return;
    }
    createRectVertex(width, height);
}

void KNDrawMixColorBrush::setPosition(float x, float y, float z) {
    qam::storeFloats(mPosition, x, y, z);
    createRectVertex(static_cast<float>(mSurfaceWidth), static_cast<float>(mSurfaceHeight));
}

void KNDrawMixColorBrush::setRectAlign(int mode) {
    mRectAlign = mode;
}

void KNDrawMixColorBrush::setColor(float r, float g, float b, float a) {
    qam::storeFloats(mColor, r, g, b, a);
}

void KNDrawMixColorBrush::setTranslate(float x, float y, float z) {
    if (mMVP != nullptr) {
        mMVP->setTranslate(x, y, z);
    }
}

void KNDrawMixColorBrush::setRotate(float angle, float x, float y, float z) {
    if (mMVP != nullptr) {
        mMVP->setRotate(angle, x, y, z);
    }
}

void KNDrawMixColorBrush::setScale(float x, float y, float z) {
    if (mMVP != nullptr) {
        mMVP->setScale(x, y, z);
    }
}

void KNDrawMixColorBrush::setBGTexture(const char* name, bool) {
    mBGTexture = KNTextureManager::getInstancePtr()->getTextureID(name);
}

void KNDrawMixColorBrush::changeBGTextureID(unsigned int texture) {
    mBGTexture = texture;
}

void KNDrawMixColorBrush::setMixColorTextureID(unsigned int alpha, unsigned int density,
                                               unsigned int colorDensity) {
    mAlphaTexture = alpha;
    mDensityTexture = density;
    mColorDensityTexture = colorDensity;
}

void KNDrawMixColorBrush::setAlpha(float alpha) {
    mAlpha = alpha;
}

void KNDrawMixColorBrush::setBrightWeight(float weight) {
    mBrightWeight = weight;
}

void KNDrawMixColorBrush::setBrightness(float brightness) {
    mBrightness = brightness;
}

void KNDrawMixColorBrush::setSaturation(float saturation) {
    mSaturation = saturation;
}

void KNDrawMixColorBrush::setRedSaturation(float saturation) {
    mRedSaturation = saturation;
}

void KNDrawMixColorBrush::setGreenSaturation(float saturation) {
    mGreenSaturation = saturation;
}

void KNDrawMixColorBrush::setBlueSaturation(float saturation) {
    mBlueSaturation = saturation;
}

}  // namespace Kinetra
