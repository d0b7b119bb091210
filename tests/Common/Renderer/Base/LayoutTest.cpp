#include "tests/support/Layout.h"

#include "Common/Renderer/Base/Background.h"
#include "Common/Renderer/Base/BackgroundRenderer.h"
#include "Common/Renderer/Base/Drawable.h"
#include "Common/Renderer/Base/LightRenderer.h"
#include "Common/Renderer/Base/ModelObject.h"
#include "Common/Renderer/Base/RenderableTexture.h"
#include "Common/Renderer/Base/Renderer.h"
#include "Common/Renderer/Base/ShaderProgram.h"
#include "Common/Renderer/Base/Texture.h"
#include "Common/Renderer/Base/TextureCube.h"
#include "Common/Renderer/Base/Uniform.h"
#include "Common/Tools/Curves.h"
#include "Common/Tools/File.h"
#include "Common/Tools/Profiler.h"

namespace {

using namespace qam::layout;
using namespace vi;
using Attribute = Renderer::Attribute;
using ProfilerRecord = Profiler::Record;

LAYOUT_FIELDS(ShaderProgram, AT(mVertexSource, 0, 0), AT(mFragmentSource, kString, kString),
              AT(mProgram, 2 * kString, 2 * kString),
              AT(mReferenceCount, 2 * kString + 4, 2 * kString + 4),
              AT(mId, 2 * kString + 8, 2 * kString + 8));
LAYOUT_SIZE(ShaderProgram, 2 * kString + 16, 2 * kString + 12, 8, 4);

// Seven one-byte flags, then 8 bytes of tail padding on LP64 that a derived class fills.
LAYOUT_FIELDS(Texture, AT(mKind, 8, 4), AT(mTexture, 12, 8), AT(mBuffer, 16, 12),
              AT(mWidth, 24, 16), AT(mHeight, 28, 20), AT(mIsUploaded, 32, 24),
              AT(mIsStatic, 33, 25), AT(mIsRepeat, 34, 26), AT(mIsMirrored, 35, 27),
              AT(mIsLinear, 36, 28), AT(mIsCompressed, 37, 29), AT(mIsDeletable, 38, 30),
              AT(mSize, 40, 32), AT(mTexelSize, 48, 40), AT(mTarget, 56, 48), AT(mFormat, 60, 52),
              AT(mType, 64, 56));
LAYOUT_SIZE(Texture, 72, 60, 8, 4);
LAYOUT_END(Texture, 68, 60);

LAYOUT_FIELDS(TextureCube, AT(mFaceBuffers, 72, 60), AT(mFaceWidths, 96, 72),
              AT(mFaceHeights, 120, 84));
LAYOUT_SIZE(TextureCube, 144, 96, 8, 4);
LAYOUT_END(TextureCube, 144, 96);

// The matrices are plain floats (align 4); mNormalMatrix is 3 x 3.
LAYOUT_FIELDS(Drawable, AT(mMode, 0, 0), AT(mTexture, 8, 4), AT(mUserData, 16, 8),
              AT(mIndices, 24, 12), AT(mDimension, 48, 24), AT(mPositions3, 56, 28),
              AT(mPositions2, 80, 40), AT(mColors, 104, 52), AT(mTangents, 128, 64),
              AT(mNormals, 152, 76), AT(mTextureCoords, 176, 88), AT(mModelMatrix, 200, 100),
              AT(mNormalMatrix, 264, 164), AT(mModelViewProjectionMatrix, 300, 200),
              AT(mModelViewMatrix, 364, 264), AT(mOpacity, 428, 328),
              AT(mIsPositionsStatic, 432, 332), AT(mIsNormalsStatic, 433, 333),
              AT(mIsTextureCoordsStatic, 434, 334), AT(mIsIndicesChanged, 435, 335));
LAYOUT_SIZE(Drawable, 440, 336, 8, 4);

LAYOUT_FIELDS(Uniform, AT(mName, 0, 0), AT(mLocation, kString, kString),
              AT(mData, kString + 8, kString + 4), AT(mType, kString + 16, kString + 8),
              AT(mCount, kString + 20, kString + 12));
LAYOUT_SIZE(Uniform, kString + 24, kString + 16, 8, 4);

LAYOUT_FIELDS(Attribute, AT(mName, 0, 0), AT(mBuffer, kString, kString),
              AT(mLocation, kString + 4, kString + 4), AT(mData, kString + 8, kString + 8),
              AT(mVertexCount, kString + 16, kString + 12),
              AT(mComponents, kString + 24, kString + 16),
              AT(mIsStatic, kString + 28, kString + 20));
LAYOUT_SIZE(Attribute, kString + 32, kString + 24, 8, 4);

LAYOUT_FIELDS(Renderer, AT(mProgram, 8, 4), AT(mIndexBuffer, 16, 8), AT(mVertexCount, 20, 12),
              AT(mAttributes, 24, 16), AT(mUniforms, 48, 28), AT(mTextures, 72, 40),
              AT(mSources, 96, 52), AT(mDrawable, 120, 64));
LAYOUT_SIZE(Renderer, 128, 68, 8, 4);
LAYOUT_END(Renderer, 128, 68);

// The view matrix starts in the texture's tail padding (68 on LP64).
LAYOUT_FIELDS(RenderableTexture, AT(mViewMatrix, 68, 60), AT(mProjectionMatrix, 132, 124),
              AT(mPosition, 196, 188), AT(mFrameBuffer, 204, 196), AT(mColorRenderBuffer, 208, 200),
              AT(mDepthRenderBuffer, 212, 204), AT(mHasDepth, 216, 208), AT(mRenderers, 224, 212),
              AT(mSavedFrameBuffer, 232, 216), AT(mSavedPosition, 236, 220),
              AT(mSavedSize, 244, 228));
LAYOUT_SIZE(RenderableTexture, 256, 236, 8, 4);
LAYOUT_END(RenderableTexture, 252, 236);

LAYOUT_FIELDS(File, AT(mBuffer, 0, 0));
LAYOUT_SIZE(File, 24, 12, 8, 4);
LAYOUT_SIZE(ModelObject, 24, 12, 8, 4);

LAYOUT_FIELDS(BackgroundRenderer, AT(mTextureCoordsIndex, 128, 68));
LAYOUT_SIZE(BackgroundRenderer, 136, 72, 8, 4);
LAYOUT_END(BackgroundRenderer, 132, 72);
LAYOUT_SIZE(LightRenderer, 128, 68, 8, 4);
LAYOUT_END(LightRenderer, 128, 68);

LAYOUT_FIELDS(Background, AT(mRenderer, 0, 0), AT(mDrawable, 8, 4), AT(mTexture, 448, 340));
LAYOUT_SIZE(Background, 456, 344, 8, 4);

LAYOUT_FIELDS(Curves, AT(mTexture, 0, 0), AT(mTable, 8, 4));
LAYOUT_SIZE(Curves, 1032, 1028, 8, 4);

LAYOUT_FIELDS(ProfilerRecord, AT(max, 0, 0), AT(total, 4, 4), AT(min, 8, 8), AT(count, 12, 12),
              AT(user, 16, 16), AT(name, 24, 20));
LAYOUT_SIZE(ProfilerRecord, 32, 24, 8, 4);

TEST(RenderCoreLayout, VirtualOperationsSitInTheirSlots) {
    // Destructors take slots 0 and 1.
    expectSlots({
        LAYOUT_SLOT(Texture, getBuffer, 2),
        LAYOUT_SLOT(Texture, update, 3),
        LAYOUT_SLOT(Texture, allocate, 4),
        LAYOUT_SLOT(Texture, contextChanged, 5),
        LAYOUT_SLOT(Texture, bind, 6),
        LAYOUT_SLOT(TextureCube, update, 3),
        LAYOUT_SLOT(RenderableTexture, update, 3),
        LAYOUT_SLOT(RenderableTexture, allocate, 4),
        LAYOUT_SLOT(RenderableTexture, contextChanged, 5),
        LAYOUT_SLOT(RenderableTexture, bind, 6),
        LAYOUT_SLOT(Renderer, setDrawable, 2),
    });
}

}  // namespace
