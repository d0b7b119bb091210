#include "Kinetra/Core/KNDrawBackground.h"

#include <GLES2/gl2.h>

#include <utility>

#include "Common/Platform/Log.h"
#include "Common/Platform/Truncation.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "embedded/Kinetra/Core/KNDrawBackground.frag.h"
#include "embedded/Kinetra/Core/KNDrawBackground.vert.h"

namespace Kinetra {

namespace {

// The surface size in whole pixels; 0 for what no int holds (converting it is undefined).
int wholePixels(float size) {
    return qam::truncatesToInt(size) ? static_cast<int>(size) : 0;
}

}  // namespace

KNDrawBackground::KNDrawBackground() = default;

KNDrawBackground::~KNDrawBackground() = default;

void KNDrawBackground::contextChanged() {}

void KNDrawBackground::initRender(float width, float height) {
    mSurfaceSize[0] = width;
    mSurfaceSize[1] = height;
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    mMesh.reset();
    createRectVertex(width, height);
    createTextureUV();
    createShaderProgram(qam::embedded::KNDrawBackground_vert, qam::embedded::KNDrawBackground_frag);
    cropToBackground();
}

void KNDrawBackground::createRectVertex(float width, float height) {
    mMesh.vertex = {{0, 0, 0}, {width, 0, 0}, {0, height, 0}, {width, height, 0}};
    mMesh.index = {0, 1, 2, 3};
}

void KNDrawBackground::createTextureUV() {
    mMesh.uv = {{0, 1, 0}, {1, 1, 0}, {0, 0, 0}, {1, 0, 0}};
}

void KNDrawBackground::resizeSurface(float width, float height) {
    mSurfaceSize[0] = width;
    mSurfaceSize[1] = height;
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    createRectVertex(width, height);
    cropToBackground();
}

void KNDrawBackground::setTexture(const char* name) {
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNDrawBackground::setTexture: null name, texture kept");
        return;
    }
    mTextureId = KNTextureManager::getInstancePtr()->getTextureID(name);
    cropToBackground();
}

void KNDrawBackground::setTextureID(const unsigned int& id) {
    mTextureId = id;
    cropToBackground();
}

void KNDrawBackground::setFBOUV() {
    mFBOUV = true;
    if (mMesh.uv.size() >= 4) {
        std::swap(mMesh.uv[0], mMesh.uv[2]);
        std::swap(mMesh.uv[1], mMesh.uv[3]);
    }
}

void KNDrawBackground::cropToBackground() {
    KNTextureManager::getInstancePtr()->normalizeTextureCoord(
        mMesh.uv, wholePixels(mSurfaceSize[0]), wholePixels(mSurfaceSize[1]));
}

void KNDrawBackground::drawRender() {
    setMesh(&mMesh);
    setShaderArrayMeshVertex("aPosition");
    setShaderArrayMeshUV("aTexUV");
    setShaderUniformMVPMatrix("uMVPMatrix");
    setShaderUnformColor("uColor");
    setShaderUnifromTexture("uTexMap", mTextureId);
    setDrawElementsWithOption(GL_TRIANGLE_STRIP);
}

unsigned int KNDrawBackground::getTextureID() const {
    return mTextureId;
}

bool KNDrawBackground::getFBOUV() const {
    return mFBOUV;
}

}  // namespace Kinetra
