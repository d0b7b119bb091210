#pragma once

#include "Common/Platform/Export.h"

namespace Kinetra {

class KNMesh;
class KNMVPManager;
class KNShaderManager;

// Composites a density image over a base texture: two density textures mixed by an alpha
// texture, brightened, saturated about a grey level and laid over by the fourth power of that
// alpha. No advection. One quad, one pass into whatever target the caller bound. Textures are
// GL names it never owns; 0xFFFFFFFF means unset and is bound as it is. GL thread only.
class TALVEQAM_EXPORT KNDrawMixColorBrush {
  public:
    static constexpr unsigned int kUnsetTexture = 0xFFFFFFFFu;

    KNDrawMixColorBrush();
    ~KNDrawMixColorBrush();
    KNDrawMixColorBrush(const KNDrawMixColorBrush&) = delete;
    KNDrawMixColorBrush& operator=(const KNDrawMixColorBrush&) = delete;

    // The last argument is not used. Calling it again rebuilds the program and the quad,
    // appends the coordinates once more and writes brightness and saturations' defaults again.
    void initialize(float width, float height, int);
    void createRectTextureShader();
    void createRectVertex(float width, float height);
    void createTextureUV();
    void draw();
    // The program's context is gone: forget its name without deleting it.
    void contextChanged();

    // Also forgets the base texture: hand it in again.
    void resizeSurface(float width, float height);
    void setSize(float width, float height);
    void setPosition(float x, float y, float z);
    // Taken at the next quad rebuild. 1 centres the quad on the position.
    void setRectAlign(int mode);
    void setColor(float r, float g, float b, float a);
    // Forwarded to the matrices; nothing before initialize.
    void setTranslate(float x, float y, float z);
    void setRotate(float angle, float x, float y, float z);
    void setScale(float x, float y, float z);

    // By name through KNTextureManager; the flag is not used.
    void setBGTexture(const char* name, bool);
    void changeBGTextureID(unsigned int texture);
    void setMixColorTextureID(unsigned int alpha, unsigned int density, unsigned int colorDensity);
    // Output alpha.
    void setAlpha(float alpha);
    // Sent to the program, which does not use it.
    void setBrightWeight(float weight);
    void setBrightness(float brightness);
    // 1 keeps the density colour, 0 turns it to its grey level.
    void setSaturation(float saturation);
    // The weight of the grey level, applied to all three channels.
    void setRedSaturation(float saturation);
    // Sent to the program, which does not use them.
    void setGreenSaturation(float saturation);
    void setBlueSaturation(float saturation);

    KNMesh* getMesh() { return mMesh; }
    KNMVPManager* getMVPManager() { return mMVP; }
    KNShaderManager* getShaderManager() { return mShader; }
    const float* getColor() const { return mColor; }
    const float* getPosition() const { return mPosition; }
    int getRectAlign() const { return mRectAlign; }
    int getSurfaceWidth() const { return mSurfaceWidth; }
    int getSurfaceHeight() const { return mSurfaceHeight; }
    unsigned int getBGTextureID() const { return mBGTexture; }
    unsigned int getAlphaTextureID() const { return mAlphaTexture; }
    unsigned int getDensityTextureID() const { return mDensityTexture; }
    unsigned int getColorDensityTextureID() const { return mColorDensityTexture; }
    float getAlpha() const { return mAlpha; }
    float getBrightWeight() const { return mBrightWeight; }
    float getBrightness() const { return mBrightness; }
    float getSaturation() const { return mSaturation; }
    float getRedSaturation() const { return mRedSaturation; }
    float getGreenSaturation() const { return mGreenSaturation; }
    float getBlueSaturation() const { return mBlueSaturation; }

  private:
    KNMesh* mMesh;
    KNMVPManager* mMVP;
    KNShaderManager* mShader;
    float mColor[4];
    float mPosition[3];
    unsigned int mBGTexture;
    unsigned int mAlphaTexture;
    unsigned int mDensityTexture;
    unsigned int mColorDensityTexture;
    int mRectAlign;
    int mSurfaceWidth;
    int mSurfaceHeight;
    float mAlpha;
    float mBrightWeight;
    float mBrightness;
    float mSaturation;
    float mRedSaturation;
    float mGreenSaturation;
    float mBlueSaturation;
};

}  // namespace Kinetra
