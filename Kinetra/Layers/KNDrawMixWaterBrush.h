#pragma once

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNMVPManager.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"

namespace Kinetra {

// Composites a density image ("uDensity") over a background ("uTexMap") fitted to the
// surface, by the alpha of a third image ("uAlpha"). The density is brightened, then
// saturated about a grey level P weighted per channel: P = sqrt(r² · red + g² · green +
// b² · blue). Drawn with blending off: it replaces what is below. Textures are GL names it
// never owns; 0xFFFFFFFF means unset and is bound as it is. GL thread only.
class TALVEQAM_EXPORT KNDrawMixWaterBrush {
  public:
    static constexpr unsigned int kUnsetTexture = 0xFFFFFFFFu;

    KNDrawMixWaterBrush();
    ~KNDrawMixWaterBrush();
    KNDrawMixWaterBrush(const KNDrawMixWaterBrush&) = delete;
    KNDrawMixWaterBrush& operator=(const KNDrawMixWaterBrush&) = delete;

    // The last argument is not used. Writes brightness 1.1, saturation 1.2 and the three
    // weights 0.3333.
    void initialize(float width, float height, int);
    void createRectTextureShader();
    void createRectVertex(float width, float height);
    // Both coordinate arrays, emptied and refilled.
    void createTextureUV();
    void draw();
    // The program's context is gone: forget its name without deleting it.
    void contextChanged();

    // Also fits the background coordinates again and forgets the background texture: hand it
    // in again.
    void resizeSurface(float width, float height);
    void setSize(float width, float height);
    void setPosition(float x, float y, float z);
    // Taken at the next quad rebuild. 1 centres the quad on the position.
    void setRectAlign(int mode);
    void setColor(float r, float g, float b, float a);
    void setTranslate(float x, float y, float z);
    void setRotate(float angle, float x, float y, float z);
    void setScale(float x, float y, float z);

    // By name through KNTextureManager, then fits the background coordinates again; the flag
    // is not used.
    void setBGTexture(const char* name, bool);
    void changeBGTextureID(unsigned int texture);
    void setAlphaDensityTextureID(unsigned int alpha, unsigned int density);
    void setBrightness(float brightness) { mBrightness = brightness; }
    void setSaturation(float saturation) { mSaturation = saturation; }
    void setRedSaturation(float weight) { mRedSaturation = weight; }
    void setGreenSaturation(float weight) { mGreenSaturation = weight; }
    void setBlueSaturation(float weight) { mBlueSaturation = weight; }

    KNMesh& getMesh() { return mMesh; }
    // Only its texture coordinates are used: the background's.
    KNMesh& getBGMesh() { return mBGMesh; }
    KNMVPManager& getMVPManager() { return mMVP; }
    KNShaderManager& getShaderManager() { return mShader; }
    const float* getColor() const { return mColor; }
    const float* getPosition() const { return mPosition; }
    int getRectAlign() const { return mRectAlign; }
    int getSurfaceWidth() const { return mSurfaceWidth; }
    int getSurfaceHeight() const { return mSurfaceHeight; }
    unsigned int getBGTextureID() const { return mBGTexture; }
    unsigned int getAlphaTextureID() const { return mAlphaTexture; }
    unsigned int getDensityTextureID() const { return mDensityTexture; }
    float getBrightness() const { return mBrightness; }
    float getSaturation() const { return mSaturation; }
    float getRedSaturation() const { return mRedSaturation; }
    float getGreenSaturation() const { return mGreenSaturation; }
    float getBlueSaturation() const { return mBlueSaturation; }

  private:
    KNMesh mMesh;
    KNMesh mBGMesh;
    KNMVPManager mMVP;
    KNShaderManager mShader;
    float mColor[4];
    float mPosition[3];
    unsigned int mBGTexture;
    unsigned int mAlphaTexture;
    unsigned int mDensityTexture;
    int mRectAlign;
    int mSurfaceWidth;
    int mSurfaceHeight;
    float mBrightness;
    float mSaturation;
    float mRedSaturation;
    float mGreenSaturation;
    float mBlueSaturation;
};

}  // namespace Kinetra
