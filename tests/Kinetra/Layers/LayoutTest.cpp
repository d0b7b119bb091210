// The layers as effect libraries built elsewhere see them: they allocate the brushes with `new`,
// reach their fields by offset, derive from the KNIRenderer ones and call those by vtable slot.
// Figures are LP64 (arm64-v8a) then ILP32 (armeabi-v7a).

#include "Kinetra/Layers/KNDrawAdvectColorBrush.h"
#include "Kinetra/Layers/KNDrawBGAdvectColorBrush.h"
#include "Kinetra/Layers/KNDrawBGAdvectWaterBrush.h"
#include "Kinetra/Layers/KNDrawBrilliantAdvect.h"
#include "Kinetra/Layers/KNDrawBrilliantRadial.h"
#include "Kinetra/Layers/KNDrawBrilliantRing.h"
#include "Kinetra/Layers/KNDrawMixColorBrush.h"
#include "Kinetra/Layers/KNDrawMixWaterBrush.h"
#include "Kinetra/Layers/KNDrawRadialColorBrush.h"
#include "Kinetra/Layers/KNDrawRadialColorBrushColor.h"
#include "Kinetra/Layers/KNDrawRadialWaterBrush.h"
#include "tests/support/Layout.h"

namespace {

using namespace Kinetra;

// The colour brushes: three owned pointers, colour, position, then their own fields.
LAYOUT_FIELDS(KNDrawAdvectColorBrush, AT(mMesh, 0, 0), AT(mMVP, 8, 4), AT(mShader, 16, 8),
              AT(mColor, 24, 12), AT(mPosition, 40, 28), AT(mFBOTexture, 52, 40),
              AT(mVelocityTexture, 56, 44), AT(mRadialTexture, 60, 48),
              AT(mRadialColorTexture, 64, 52), AT(mBackgroundTexture, 68, 56),
              AT(mPatternColorTexture, 72, 60), AT(mRectAlign, 76, 64), AT(mSurfaceWidth, 80, 68),
              AT(mSurfaceHeight, 84, 72), AT(mNoiseVectorScalar, 88, 76),
              AT(mRadialVectorScalar, 92, 80));
LAYOUT_SIZE(KNDrawAdvectColorBrush, 96, 84, 8, 4);

LAYOUT_FIELDS(KNDrawBGAdvectColorBrush, AT(mMesh, 0, 0), AT(mMVP, 8, 4), AT(mShader, 16, 8),
              AT(mColor, 24, 12), AT(mPosition, 40, 28), AT(mFBOTexture, 52, 40),
              AT(mVelocityTexture, 56, 44), AT(mRadialTexture, 60, 48), AT(mBGTexture, 64, 52),
              AT(mRectAlign, 68, 56), AT(mSurfaceWidth, 72, 60), AT(mSurfaceHeight, 76, 64),
              AT(mNoiseVectorScalar, 80, 68), AT(mRadialVectorScalar, 84, 72));
LAYOUT_SIZE(KNDrawBGAdvectColorBrush, 88, 76, 8, 4);

// 108 bytes of data, padded to the pointers' alignment on LP64.
LAYOUT_FIELDS(KNDrawMixColorBrush, AT(mMesh, 0, 0), AT(mMVP, 8, 4), AT(mShader, 16, 8),
              AT(mColor, 24, 12), AT(mPosition, 40, 28), AT(mBGTexture, 52, 40),
              AT(mAlphaTexture, 56, 44), AT(mDensityTexture, 60, 48),
              AT(mColorDensityTexture, 64, 52), AT(mRectAlign, 68, 56), AT(mSurfaceWidth, 72, 60),
              AT(mSurfaceHeight, 76, 64), AT(mAlpha, 80, 68), AT(mBrightWeight, 84, 72),
              AT(mBrightness, 88, 76), AT(mSaturation, 92, 80), AT(mRedSaturation, 96, 84),
              AT(mGreenSaturation, 100, 88), AT(mBlueSaturation, 104, 92));
LAYOUT_SIZE(KNDrawMixColorBrush, 112, 96, 8, 4);

// The water brushes hold by value two KNMesh (14 arrays: 336 / 168), a KNMVPManager
// (536 / 528) and a KNShaderManager (GL name and two arrays: 56 / 28).
LAYOUT_FIELDS(KNDrawBGAdvectWaterBrush, AT(mMesh, 0, 0), AT(mBGMesh, 336, 168), AT(mMVP, 672, 336),
              AT(mShader, 1208, 864), AT(mColor, 1264, 892), AT(mPosition, 1280, 908),
              AT(mFBOTexture, 1292, 920), AT(mVelocityTexture, 1296, 924),
              AT(mRadialTexture, 1300, 928), AT(mBGTexture, 1304, 932), AT(mRectAlign, 1308, 936),
              AT(mSurfaceWidth, 1312, 940), AT(mSurfaceHeight, 1316, 944),
              AT(mNoiseVectorScalar, 1320, 948), AT(mRadialVectorScalar, 1324, 952));
LAYOUT_SIZE(KNDrawBGAdvectWaterBrush, 1328, 956, 8, 4);

LAYOUT_FIELDS(KNDrawMixWaterBrush, AT(mMesh, 0, 0), AT(mBGMesh, 336, 168), AT(mMVP, 672, 336),
              AT(mShader, 1208, 864), AT(mColor, 1264, 892), AT(mPosition, 1280, 908),
              AT(mBGTexture, 1292, 920), AT(mAlphaTexture, 1296, 924),
              AT(mDensityTexture, 1300, 928), AT(mRectAlign, 1304, 932),
              AT(mSurfaceWidth, 1308, 936), AT(mSurfaceHeight, 1312, 940),
              AT(mBrightness, 1316, 944), AT(mSaturation, 1320, 948), AT(mRedSaturation, 1324, 952),
              AT(mGreenSaturation, 1328, 956), AT(mBlueSaturation, 1332, 960));
LAYOUT_SIZE(KNDrawMixWaterBrush, 1336, 964, 8, 4);

// The renderer layers. KNIRenderer's data ends at 188 / 152: a 4-byte field goes there, a
// pointer or a mesh (both aligned 8 on LP64) at 192.

// Data ends at 244 on LP64, padded to 248.
LAYOUT_FIELDS(KNDrawRadialColorBrush, AT(mRectMesh, 192, 152), AT(mCentre, 200, 156),
              AT(mMaskTexture, 212, 168), AT(mRectAlign, 216, 172), AT(mSurfaceWidth, 220, 176),
              AT(mSurfaceHeight, 224, 180), AT(mTimeStep, 228, 184), AT(mAlpha, 232, 188),
              AT(mRatio, 236, 192));
LAYOUT_SIZE(KNDrawRadialColorBrush, 248, 200, 8, 4);
LAYOUT_END(KNDrawRadialColorBrush, 244, 200);

LAYOUT_FIELDS(KNDrawRadialColorBrushColor, AT(mRectMesh, 192, 152), AT(mCentre, 200, 156),
              AT(mMaskTexture, 212, 168), AT(mColorTexture, 216, 172), AT(mRectAlign, 220, 176),
              AT(mSurfaceWidth, 224, 180), AT(mSurfaceHeight, 228, 184),
              AT(mResolutionRatio, 232, 188), AT(mInvScreen, 236, 192));
LAYOUT_SIZE(KNDrawRadialColorBrushColor, 248, 200, 8, 4);
LAYOUT_END(KNDrawRadialColorBrushColor, 244, 200);

LAYOUT_FIELDS(KNDrawRadialWaterBrush, AT(mRectMesh, 192, 152), AT(mCentre, 528, 320),
              AT(mMaskTexture, 540, 332), AT(mGraphTexture, 544, 336), AT(mRectAlign, 548, 340),
              AT(mSurfaceWidth, 552, 344), AT(mSurfaceHeight, 556, 348), AT(mTimeStep, 560, 352),
              AT(mAlpha, 564, 356), AT(mRatio, 568, 360), AT(mGraphPow, 576, 368),
              AT(mGraphMultiply, 580, 372));
LAYOUT_SIZE(KNDrawRadialWaterBrush, 584, 376, 8, 4);
LAYOUT_END(KNDrawRadialWaterBrush, 584, 376);

LAYOUT_FIELDS(KNDrawBrilliantAdvect, AT(mMesh, 192, 152), AT(mRadialTextureId, 528, 320));
LAYOUT_SIZE(KNDrawBrilliantAdvect, 536, 324, 8, 4);
LAYOUT_END(KNDrawBrilliantAdvect, 532, 324);

// The orientation flag is a 1-byte bool after the array: data ends at 593 / 373, in tail
// padding.
LAYOUT_FIELDS(KNDrawBrilliantRadial, AT(mMesh, 192, 152), AT(mPosition, 528, 320),
              AT(mInvSurfaceWidth, 540, 332), AT(mInvSurfaceHeight, 544, 336),
              AT(mSurfaceWidth, 548, 340), AT(mSurfaceHeight, 552, 344),
              AT(mAlphaShapeTextureId, 556, 348), AT(mPatternTextureId, 560, 352),
              AT(mTimeStep, 564, 356), AT(mPatternUV, 568, 360),
              AT(mPatternFollowsScreen, 592, 372));
LAYOUT_SIZE(KNDrawBrilliantRadial, 600, 376, 8, 4);
LAYOUT_END(KNDrawBrilliantRadial, 593, 373);

// The integer size that setSize stores sits after the reciprocals, as in the radial layer;
// the first array is aligned up from 580 to 584 on LP64.
LAYOUT_FIELDS(KNDrawBrilliantRing, AT(mMesh, 192, 152), AT(mPosition, 528, 320),
              AT(mInvSurfaceWidth, 540, 332), AT(mInvSurfaceHeight, 544, 336),
              AT(mSurfaceWidth, 548, 340), AT(mSurfaceHeight, 552, 344),
              AT(mBackgroundTextureId, 556, 348), AT(mShineTextureId, 560, 352),
              AT(mDiamondTextureId, 564, 356), AT(mAlphaTextureId, 568, 360),
              AT(mBlurTextureId, 572, 364), AT(mAlpha, 576, 368), AT(mTabScaledUV, 584, 372),
              AT(mBackgroundUV, 608, 384));
LAYOUT_SIZE(KNDrawBrilliantRing, 632, 396, 8, 4);
LAYOUT_END(KNDrawBrilliantRing, 632, 396);

}  // namespace
