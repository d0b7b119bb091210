#include "Kinetra/Layers/KNDrawMixWaterBrush.h"

#include <GLES2/gl2.h>

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Layers/Implementation/BrushFields.h"
#include "Kinetra/Layers/Implementation/BrushParts.h"
#include "Kinetra/Layers/Implementation/BrushPass.h"
#include "Kinetra/Layers/Implementation/BrushQuad.h"
#include "Kinetra/Layers/Implementation/WaterPass.h"
#include "embedded/Kinetra/Layers/KNDrawMixWaterBrush.frag.h"
#include "embedded/Kinetra/Layers/KNDrawMixWaterBrush.vert.h"

namespace Kinetra {

namespace {

// Uniform slots; 4 and 5 stay empty.
enum Slot {
    kMVPMatrix = 0,
    kTexMap = 1,
    kDensity = 2,
    kAlpha = 3,
    kSaturation = 6,
    kBrightness = 7,
    kRedSaturation = 8,
    kGreenSaturation = 9,
    kBlueSaturation = 10,
};

constexpr float kBrightnessDefault = 1.1f;
constexpr float kSaturationDefault = 1.2f;
constexpr float kWeightDefault = 0.3333f;

}  // namespace

KNDrawMixWaterBrush::KNDrawMixWaterBrush()
    : mColor{1, 1, 1, 1},
      mPosition{0, 0, 0},
      mBGTexture(kUnsetTexture),
      mAlphaTexture(0),
      mDensityTexture(0),
      mRectAlign(0),
      mSurfaceWidth(0),
      mSurfaceHeight(0),
      mBrightness(0),
      mSaturation(0),
      mRedSaturation(0),
      mGreenSaturation(0),
      mBlueSaturation(0) {}

// The members then go in reverse declaration order: shader manager, MVP manager, the meshes.
KNDrawMixWaterBrush::~KNDrawMixWaterBrush() {
    qam::forgetLoggedOnce(this);
}

void KNDrawMixWaterBrush::initialize(float width, float height, int) {
    if (!qam::wholePixels(this, width, height, "KNDrawMixWaterBrush::initialize")) {
        return;
    }
    qam::setSurfaceProjection(mMVP, width, height);
    mBrightness = kBrightnessDefault;
    mSaturation = kSaturationDefault;
    mRedSaturation = kWeightDefault;
    mGreenSaturation = kWeightDefault;
    mBlueSaturation = kWeightDefault;
    mSurfaceWidth = static_cast<int>(width);
    mSurfaceHeight = static_cast<int>(height);
    createRectTextureShader();
    mMesh.reset();
    mBGMesh.reset();
    createRectVertex(width, height);
    createTextureUV();
    qam::fitWaterBackground(mBGMesh, mSurfaceWidth, mSurfaceHeight);
}

void KNDrawMixWaterBrush::createRectTextureShader() {
    qam::buildWaterProgram(mShader, qam::embedded::KNDrawMixWaterBrush_vert,
                           qam::embedded::KNDrawMixWaterBrush_frag,
                           {{kMVPMatrix, "uMVPMatrix"},
                            {kTexMap, "uTexMap"},
                            {kDensity, "uDensity"},
                            {kAlpha, "uAlpha"},
                            {kSaturation, "uSaturation"},
                            {kBrightness, "uBrightness"},
                            {kRedSaturation, "uRedSaturation"},
                            {kGreenSaturation, "uGreenSaturation"},
                            {kBlueSaturation, "uBlueSaturation"}});
}

void KNDrawMixWaterBrush::createRectVertex(float width, float height) {
    qam::appendBrushQuad(mMesh, mPosition, mRectAlign, width, height);
}

void KNDrawMixWaterBrush::createTextureUV() {
    qam::fillWaterUV(mMesh, mBGMesh);
}

void KNDrawMixWaterBrush::draw() {
    if (!qam::waterReady(this, mMesh, mBGMesh, "KNDrawMixWaterBrush::draw")) {
        return;
    }
    glDisable(GL_BLEND);
    // No effect while blending is off; kept as the brush has always set it.
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    qam::beginWaterPass(mShader, mMesh, mBGMesh);
    qam::bindBrushTexture(mShader, kTexMap, 0, mBGTexture);
    qam::bindBrushTexture(mShader, kAlpha, 2, mAlphaTexture);
    qam::bindBrushTexture(mShader, kDensity, 1, mDensityTexture);
    qam::setBrushValue(mShader, kSaturation, mSaturation);
    qam::setBrushValue(mShader, kBrightness, mBrightness);
    qam::setBrushValue(mShader, kRedSaturation, mRedSaturation);
    qam::setBrushValue(mShader, kGreenSaturation, mGreenSaturation);
    qam::setBrushValue(mShader, kBlueSaturation, mBlueSaturation);
    qam::bindBrushVertices(mShader, mMesh);
    qam::setBrushMatrix(mShader, mMVP);
    qam::finishWaterPass(mShader, mMesh);
}

void KNDrawMixWaterBrush::contextChanged() {
    mShader.contextChanged();
}

void KNDrawMixWaterBrush::resizeSurface(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawMixWaterBrush::resizeSurface", mSurfaceWidth,
                           mSurfaceHeight)) {
        return;
    }
    qam::setSurfaceProjection(mMVP, width, height);
    createRectVertex(width, height);
    qam::fitWaterBackground(mBGMesh, mSurfaceWidth, mSurfaceHeight);
    mBGTexture = kUnsetTexture;
}

void KNDrawMixWaterBrush::setSize(float width, float height) {
    if (!qam::storeSurface(this, width, height, "KNDrawMixWaterBrush::setSize", mSurfaceWidth,
                           mSurfaceHeight)) {
        return;
    }
    createRectVertex(width, height);
}

void KNDrawMixWaterBrush::setPosition(float x, float y, float z) {
    qam::storeFloats(mPosition, x, y, z);
    createRectVertex(static_cast<float>(mSurfaceWidth), static_cast<float>(mSurfaceHeight));
}

void KNDrawMixWaterBrush::setRectAlign(int mode) {
    mRectAlign = mode;
}

void KNDrawMixWaterBrush::setColor(float r, float g, float b, float a) {
    qam::storeFloats(mColor, r, g, b, a);
}

void KNDrawMixWaterBrush::setTranslate(float x, float y, float z) {
    mMVP.setTranslate(x, y, z);
}

void KNDrawMixWaterBrush::setRotate(float angle, float x, float y, float z) {
    mMVP.setRotate(angle, x, y, z);
}

void KNDrawMixWaterBrush::setScale(float x, float y, float z) {
    mMVP.setScale(x, y, z);
}

void KNDrawMixWaterBrush::setBGTexture(const char* name, bool) {
    mBGTexture = KNTextureManager::getInstancePtr()->getTextureID(name);
    qam::fitWaterBackground(mBGMesh, mSurfaceWidth, mSurfaceHeight);
}

void KNDrawMixWaterBrush::changeBGTextureID(unsigned int texture) {
    mBGTexture = texture;
}

void KNDrawMixWaterBrush::setAlphaDensityTextureID(unsigned int alpha, unsigned int density) {
    mAlphaTexture = alpha;
    mDensityTexture = density;
}

}  // namespace Kinetra
