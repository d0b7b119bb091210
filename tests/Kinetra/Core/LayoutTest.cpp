// Effect libraries built elsewhere derive from these classes, allocate them and call their
// virtual operations by slot, so their layout on both Android ABIs is part of the interface.

#include "tests/support/Layout.h"

#include <array>
#include <cstddef>

#include "Kinetra/Core/KNDrawBGTilt.h"
#include "Kinetra/Core/KNDrawBackground.h"
#include "Kinetra/Core/KNFBO.h"
#include "Kinetra/Core/KNGrid2D.h"
#include "Kinetra/Core/KNIRenderer.h"
#include "Kinetra/Core/KNISceneComponent.h"
#include "Kinetra/Core/KNMVPManager.h"
#include "Kinetra/Core/KNMatrix4x4.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNObject.h"
#include "Kinetra/Core/KNShaderManager.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "Kinetra/Core/KNVBOManager.h"
#include "Kinetra/Core/KNVector.h"
#include "Kinetra/Core/_TEXTURE_COLOR_BUFFER.h"

namespace {

using namespace Kinetra;
using namespace qam::layout;

// An overloaded virtual, named by its signature.
// clang-format off
#define LAYOUT_OVERLOAD_SLOT(Class, op, Ret, Args, slot) \
    ::qam::layout::Slot{#Class "::" #op #Args, \
                        ::qam::layout::vtableSlot(static_cast<Ret (Class::*) Args>(&Class::op)), slot}
// clang-format on

using SceneLayerEntry = KNISceneComponent::LayerEntry;
using Matrix = KNMatrix4x4<float>;
using TextureRecord = KNTextureManager::TextureRecord;
using ShaderLocation = KNShaderManager::Location;
using MeshColour = decltype(KNMesh::color)::value_type;
using MeshIndex = decltype(KNMesh::index)::value_type;
using MeshScalar = decltype(KNMesh::auxB)::value_type;
using MeshCustom = decltype(KNMesh::custom)::value_type;

// Value types: mesh arrays go to GL packed, so their element sizes are the attribute strides.
LAYOUT_SIZE(KNVector3D<float>, 12, 12, 4, 4);
LAYOUT_FIELDS(KNVector3D<float>, AT(x, 0, 0), AT(y, 4, 4), AT(z, 8, 8));
LAYOUT_SIZE(KNVector2D<float>, 8, 8, 4, 4);
LAYOUT_SIZE(KNVector2D<int>, 8, 8, 4, 4);
LAYOUT_FIELDS(KNVector2D<int>, AT(y, 4, 4));
// double is 8-aligned on armeabi-v7a too.
LAYOUT_SIZE(KNVector2D<double>, 16, 16, 8, 8);
LAYOUT_FIELDS(KNVector2D<double>, AT(y, 8, 8));
LAYOUT_SIZE(MeshColour, 16, 16, 4, 4);
LAYOUT_SIZE(MeshIndex, 2, 2, 2, 2);
LAYOUT_SIZE(MeshScalar, 4, 4, 4, 4);
LAYOUT_SIZE(MeshCustom, 4, 4, 4, 4);

LAYOUT_SIZE(Matrix, 64, 64, 4, 4);
LAYOUT_FIELDS(Matrix, AT(m, 0, 0));

// KNISceneComponent: the frozen flag is one byte, so derived scenes start right after it.
LAYOUT_FIELDS(KNISceneComponent, AT(mLayers, 8, 4), AT(mWidth, 32, 16), AT(mHeight, 36, 20),
              AT(mReserved, 40, 24), AT(mVisibility, 44, 28), AT(mFrozen, 48, 32));
LAYOUT_SIZE(KNISceneComponent, 56, 36, 8, 4);
LAYOUT_END(KNISceneComponent, 49, 33);
LAYOUT_FIELDS(SceneLayerEntry, AT(kind, 0, 0), AT(layer, 8, 4));
LAYOUT_SIZE(SceneLayerEntry, 16, 8, 8, 4);

// KNIRenderer: visible, depth test and custom-draw-pending are 32-bit truth values; the two
// one-byte flags share a word. Data ends at 188 on LP64, tail padding to 192.
LAYOUT_FIELDS(KNIRenderer, AT(mMesh, 8, 4), AT(mMVP, 16, 8), AT(mShader, 24, 12),
              AT(mColor, 32, 16), AT(mRotate, 48, 32), AT(mTranslate, 64, 48), AT(mScale, 76, 60),
              AT(mScreenSize, 88, 72), AT(mRenderSize, 96, 80), AT(mTextureUnit, 104, 88),
              AT(mModelMatrixGiven, 108, 92), AT(mDrawArrays, 109, 93), AT(mDrawMode, 112, 96),
              AT(mVisible, 116, 100), AT(mBlend, 120, 104), AT(mDepthTest, 136, 120),
              AT(mEnabledAttributes, 144, 124), AT(mCustomIndices, 168, 136),
              AT(mCustomIndexCount, 176, 140), AT(mCustomVertexCount, 180, 144),
              AT(mCustomDrawPending, 184, 148));
LAYOUT_SIZE(KNIRenderer, 192, 152, 8, 4);
LAYOUT_END(KNIRenderer, 188, 152);

LAYOUT_FIELDS(KNMesh, AT(vertex, 0, 0), AT(aux2D, 24, 12), AT(normal, 48, 24), AT(height, 72, 36),
              AT(tangent, 96, 48), AT(auxA, 120, 60), AT(uv, 144, 72), AT(color, 168, 84),
              AT(index, 192, 96), AT(auxB, 216, 108), AT(auxC, 240, 120), AT(auxD, 264, 132),
              AT(auxE, 288, 144), AT(custom, 312, 156));
LAYOUT_SIZE(KNMesh, 336, 168, 8, 4);

LAYOUT_FIELDS(KNVBOManager, AT(mBuffers[KNVBOManager::kVertex], 0, 0),
              AT(mBuffers[KNVBOManager::kNormal], 4, 4), AT(mBuffers[KNVBOManager::kHeight], 8, 8),
              AT(mBuffers[KNVBOManager::kTangent], 12, 12), AT(mBuffers[KNVBOManager::kUV], 16, 16),
              AT(mBuffers[KNVBOManager::kColor], 20, 20),
              AT(mBuffers[KNVBOManager::kIndex], 24, 24));
LAYOUT_SIZE(KNVBOManager, 28, 28, 4, 4);

// KNMVPManager: matrices of plain floats, so nothing pads them: 532 bytes of data on LP64,
// padded to 536.
LAYOUT_FIELDS(KNMVPManager, AT(mMVP, 8, 4), AT(mMV, 72, 68), AT(mViewProjection, 136, 132),
              AT(mView, 200, 196), AT(mProjection, 264, 260), AT(mModel, 328, 324),
              AT(mITModel, 392, 388), AT(mTranslate, 456, 452), AT(mScale, 468, 464),
              AT(mRotate, 480, 476), AT(mEye, 496, 492), AT(mUp, 508, 504), AT(mCentre, 520, 516));
LAYOUT_SIZE(KNMVPManager, 536, 528, 8, 4);
LAYOUT_END(KNMVPManager, 532, 528);

LAYOUT_FIELDS(KNShaderManager, AT(mProgram, 0, 0), AT(mAttributes, 8, 4), AT(mUniforms, 32, 16));
LAYOUT_SIZE(KNShaderManager, 56, 28, 8, 4);
LAYOUT_FIELDS(ShaderLocation, AT(id, 0, 0), AT(location, 4, 4));
LAYOUT_SIZE(ShaderLocation, 8, 8, 4, 4);

LAYOUT_FIELDS(_TEXTURE_COLOR_BUFFER, AT(width, 0, 0), AT(height, 4, 4), AT(pixels, 8, 8),
              AT(name, 16, 12), AT(size, 144, 140), AT(channels, 148, 144));
LAYOUT_SIZE(_TEXTURE_COLOR_BUFFER, 152, 148, 8, 4);

// The generated flag is a 32-bit truth value.
LAYOUT_FIELDS(TextureRecord, AT(id, 0, 0), AT(name, 4, 4), AT(width, 132, 132),
              AT(height, 136, 136), AT(generated, 140, 140));
LAYOUT_SIZE(TextureRecord, 144, 144, 4, 4);

LAYOUT_FIELDS(KNTextureManager, AT(mColorBuffers, 0, 0), AT(mTextures, 24, 12),
              AT(mWrapOption, 48, 24), AT(mFilterOption, 52, 28), AT(mPixelFormat, 56, 32),
              AT(mDataType, 60, 36));
LAYOUT_SIZE(KNTextureManager, 64, 40, 8, 4);

// The depth flag is a 32-bit truth value.
LAYOUT_FIELDS(KNFBO, AT(mDepthEnabled, 0, 0), AT(mWrap, 4, 4), AT(mFilter, 8, 8),
              AT(mDataType, 12, 12), AT(mWidth, 16, 16), AT(mHeight, 20, 20),
              AT(mFramebuffer, 24, 24), AT(mTexture, 28, 28), AT(mRenderbuffer, 32, 32),
              AT(mClearColor, 36, 36));
LAYOUT_SIZE(KNFBO, 52, 52, 4, 4);

LAYOUT_FIELDS(KNObject, AT(mName, 8, 4));
LAYOUT_SIZE(KNObject, 8 + kString, 4 + kString, 8, 4);
LAYOUT_END(KNObject, 8 + kString, 4 + kString);

// KNGrid2D: the resolution follows the name string directly; the doubles from the dimension on
// are 8-aligned on both ABIs, so on armeabi-v7a where they start depends on the string's size.
constexpr std::size_t up8(std::size_t n) {
    return (n + 7) / 8 * 8;
}
constexpr std::size_t kGridD64 = 16 + kString;
constexpr std::size_t kGridD32 = up8(12 + kString);
LAYOUT_FIELDS(KNGrid2D, AT(mResolution, 8 + kString, 4 + kString),
              AT(mGrid.dimension, kGridD64, kGridD32),
              AT(mGrid.cellSize, kGridD64 + 16, kGridD32 + 16),
              AT(mGrid.cellCount, kGridD64 + 32, kGridD32 + 32),
              AT(mGrid.cellCountPlusNy, kGridD64 + 36, kGridD32 + 36),
              AT(mGrid.cellCountPlusNx, kGridD64 + 40, kGridD32 + 40),
              AT(mGrid.cellCountPlusNxCopy, kGridD64 + 44, kGridD32 + 44),
              AT(mGrid.cellCountPlusNyCopy, kGridD64 + 48, kGridD32 + 48),
              AT(mGrid.nodeCount, kGridD64 + 52, kGridD32 + 52),
              AT(mGrid.nodesPerRow, kGridD64 + 56, kGridD32 + 56),
              AT(mGrid.nodesPerColumn, kGridD64 + 60, kGridD32 + 60),
              AT(mGrid.lastCellColumn, kGridD64 + 64, kGridD32 + 64),
              AT(mGrid.lastCellRow, kGridD64 + 68, kGridD32 + 68),
              AT(mGrid.cellCountCopy, kGridD64 + 72, kGridD32 + 72),
              AT(mGrid.halfCell, kGridD64 + 80, kGridD32 + 80),
              AT(mGrid.squaredCell, kGridD64 + 96, kGridD32 + 96),
              AT(mGrid.squaredCellProduct, kGridD64 + 112, kGridD32 + 112),
              AT(mGrid.minCell, kGridD64 + 120, kGridD32 + 120),
              AT(mGrid.maxCell, kGridD64 + 128, kGridD32 + 128),
              AT(mGrid.cellDiagonal, kGridD64 + 136, kGridD32 + 136),
              AT(mGrid.epsilon, kGridD64 + 144, kGridD32 + 144),
              AT(mGrid.upperBound, kGridD64 + 152, kGridD32 + 152),
              AT(mGrid.spare, kGridD64 + 168, kGridD32 + 168));
LAYOUT_SIZE(KNGrid2D, kGridD64 + 200, kGridD32 + 200, 8, 8);
LAYOUT_END(KNGrid2D, kGridD64 + 200, kGridD32 + 200);

// KNDrawBackground: its mesh is held by value right after the renderer's data.
LAYOUT_FIELDS(KNDrawBackground, AT(mMesh, 192, 152), AT(mTextureId, 528, 320),
              AT(mSurfaceSize, 532, 324), AT(mFBOUV, 540, 332));
LAYOUT_SIZE(KNDrawBackground, 544, 336, 8, 4);
LAYOUT_END(KNDrawBackground, 541, 333);

LAYOUT_FIELDS(KNDrawBGTilt, AT(mMesh, 192, 152), AT(mRearTextureId, 200, 156),
              AT(mFrontTextureId, 204, 160), AT(mRectAlign, 208, 164), AT(mWidth, 212, 168),
              AT(mHeight, 216, 172), AT(mAlphaScale, 220, 176), AT(mFBOUV, 224, 180));
LAYOUT_SIZE(KNDrawBGTilt, 232, 184, 8, 4);
LAYOUT_END(KNDrawBGTilt, 225, 181);

// Slots 0 and 1 are the destructors throughout.
TEST(KinetraCoreLayout, VirtualOperationsSitInTheirSlots) {
    expectSlots({
        LAYOUT_SLOT(KNISceneComponent, initScene, 2),
        LAYOUT_SLOT(KNISceneComponent, changeSurface, 3),
        LAYOUT_SLOT(KNISceneComponent, spareHook, 4),
        LAYOUT_SLOT(KNISceneComponent, updateScene, 5),
        LAYOUT_SLOT(KNISceneComponent, drawScene, 6),
        LAYOUT_SLOT(KNISceneComponent, keyEvent, 7),
        LAYOUT_SLOT(KNISceneComponent, customEvent, 8),
        LAYOUT_SLOT(KNISceneComponent, touchDown, 9),
        LAYOUT_SLOT(KNISceneComponent, hoverEvent, 10),
        LAYOUT_SLOT(KNISceneComponent, touchEvent, 11),
        LAYOUT_SLOT(KNISceneComponent, sensorEvent, 12),
        LAYOUT_SLOT(KNISceneComponent, setTexture, 13),
        LAYOUT_SLOT(KNISceneComponent, setTextureColor, 14),
        LAYOUT_SLOT(KNISceneComponent, resetScene, 15),
        LAYOUT_SLOT(KNISceneComponent, isEmptyScene, 16),

        LAYOUT_SLOT(KNIRenderer, contextChanged, 2),
        LAYOUT_SLOT(KNIRenderer, initRender, 3),
        LAYOUT_SLOT(KNIRenderer, drawRender, 4),

        LAYOUT_OVERLOAD_SLOT(KNGrid2D, getResolution, void, (int*, int*), 2),
        LAYOUT_OVERLOAD_SLOT(KNGrid2D, getDimension, void, (double*, double*), 3),
        LAYOUT_OVERLOAD_SLOT(KNGrid2D, getCellSize, void, (double*, double*), 4),
        LAYOUT_OVERLOAD_SLOT(KNGrid2D, getResolution, KNVector2D<int>, (), 5),
        LAYOUT_OVERLOAD_SLOT(KNGrid2D, getDimension, KNVector2D<double>, (), 6),
        LAYOUT_OVERLOAD_SLOT(KNGrid2D, getCellSize, KNVector2D<double>, (), 7),
        LAYOUT_SLOT(KNGrid2D, getNodesOfCell, 8),
    });
}

}  // namespace
