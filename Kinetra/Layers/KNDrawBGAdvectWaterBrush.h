#pragma once

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNMVPManager.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"

namespace Kinetra {

// Advects the previous frame ("uTexMap") along a radial field and a noise field over a
// background image ("uOriginal") fitted to the surface, pulling it back towards the background
// by 3 % a frame; the background shows where no field is present. The noise is read at the
// background's coordinates, so it stays with the image. Drawn with blending off: it replaces
// what is below. One quad, one pass; the caller binds the target and hands the previous result
// back through setFBOID. Textures are GL names it never owns; 0xFFFFFFFF means unset and is
// bound as it is. GL thread only.
class TALVEQAM_EXPORT KNDrawBGAdvectWaterBrush {
  public:
    static constexpr unsigned int kUnsetTexture = 0xFFFFFFFFu;

    KNDrawBGAdvectWaterBrush();
    ~KNDrawBGAdvectWaterBrush();
    KNDrawBGAdvectWaterBrush(const KNDrawBGAdvectWaterBrush&) = delete;
    KNDrawBGAdvectWaterBrush& operator=(const KNDrawBGAdvectWaterBrush&) = delete;

    // The last argument is not used. Writes 1 into both vector scalars, unscaled.
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
    void setFBOID(unsigned int texture);
    void setVelocityRadialTextureID(unsigned int velocity, unsigned int radial);
    // Stored times 125.
    void setNoiseVectorScalar(float scalar);
    // Stored times 18.525.
    void setRadialVectorScalar(float scalar);

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
    unsigned int getFBOID() const { return mFBOTexture; }
    unsigned int getVelocityTextureID() const { return mVelocityTexture; }
    unsigned int getRadialTextureID() const { return mRadialTexture; }
    unsigned int getBGTextureID() const { return mBGTexture; }
    float getNoiseVectorScalar() const { return mNoiseVectorScalar; }
    float getRadialVectorScalar() const { return mRadialVectorScalar; }

  private:
    KNMesh mMesh;
    KNMesh mBGMesh;
    KNMVPManager mMVP;
    KNShaderManager mShader;
    float mColor[4];
    float mPosition[3];
    unsigned int mFBOTexture;
    unsigned int mVelocityTexture;
    unsigned int mRadialTexture;
    unsigned int mBGTexture;
    int mRectAlign;
    int mSurfaceWidth;
    int mSurfaceHeight;
    float mNoiseVectorScalar;
    float mRadialVectorScalar;
};

}  // namespace Kinetra
