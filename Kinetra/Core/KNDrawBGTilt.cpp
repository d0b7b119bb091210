#include "Kinetra/Core/KNDrawBGTilt.h"

#include <GLES2/gl2.h>

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "embedded/Kinetra/Core/KNDrawBGTilt.frag.h"
#include "embedded/Kinetra/Core/KNDrawBGTilt.vert.h"

namespace Kinetra {

KNDrawBGTilt::KNDrawBGTilt() = default;

KNDrawBGTilt::~KNDrawBGTilt() {
    delete mMesh;
}

void KNDrawBGTilt::contextChanged() {}

KNMesh& KNDrawBGTilt::mesh() {
    if (mMesh == nullptr) {
        mMesh = new KNMesh();
    }
    return *mMesh;
}

void KNDrawBGTilt::initRender(float width, float height) {
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    createShaderProgram(qam::embedded::KNDrawBGTilt_vert, qam::embedded::KNDrawBGTilt_frag);
    mWidth = width;
    mHeight = height;
    createRectVertex(width, height);
    createTextureUV();
}

void KNDrawBGTilt::resizeSurface(float width, float height) {
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    mWidth = width;
    mHeight = height;
    createRectVertex(width, height);
}

void KNDrawBGTilt::createRectVertex(float width, float height) {
    KNMesh& m = mesh();
    if (mRectAlign == 1) {
        const float x = width / 2;
        const float y = height / 2;
        m.vertex = {{-x, -y, 0}, {x, -y, 0}, {-x, y, 0}, {x, y, 0}};
    } else {
        m.vertex = {{0, 0, 0}, {width, 0, 0}, {0, height, 0}, {width, height, 0}};
    }
    m.index = {0, 1, 2, 3};
}

void KNDrawBGTilt::setRectAlign(unsigned int align) {
    if (align == mRectAlign) {
        return;
    }
    mRectAlign = align;
    createRectVertex(mWidth, mHeight);
}

void KNDrawBGTilt::setSize(float width, float height) {
    // The same quad as createRectVertex for the current alignment, kept for later rebuilds.
    mWidth = width;
    mHeight = height;
    createRectVertex(width, height);
}

void KNDrawBGTilt::setRearTexture(const char* name) {
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNDrawBGTilt::setRearTexture: null name, texture kept");
        return;
    }
    mRearTextureId = KNTextureManager::getInstancePtr()->getTextureID(name);
}

void KNDrawBGTilt::setFrontTexture(const char* name) {
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNDrawBGTilt::setFrontTexture: null name, texture kept");
        return;
    }
    mFrontTextureId = KNTextureManager::getInstancePtr()->getTextureID(name);
}

void KNDrawBGTilt::setFBOUV() {
    mFBOUV = true;
    createFBOTextureUV();
}

void KNDrawBGTilt::createTextureUV() {
    mesh().uv = {{0, 1, 0}, {1, 1, 0}, {0, 0, 0}, {1, 0, 0}};
}

void KNDrawBGTilt::createFBOTextureUV() {
    mesh().uv = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}};
}

void KNDrawBGTilt::drawRender() {
    setMesh(&mesh());
    setShaderArrayMeshVertex("aPosition");
    setShaderArrayMeshUV("aTexUV");
    setShaderUniformMVPMatrix("uMVPMatrix");
    setShaderUnifromTexture("uCurrTexMap", mRearTextureId);
    setShaderUnifromTexture("uNextTexMap", mFrontTextureId);
    setShaderUniformValue("uAlphaScale", mAlphaScale);
    setDrawElementsWithOption(GL_TRIANGLE_STRIP);
}

void KNDrawBGTilt::setAlphaBlend(float alpha) {
    mAlphaScale = alpha;
}

void KNDrawBGTilt::setRearTextureID(unsigned int id) {
    mRearTextureId = id;
}

void KNDrawBGTilt::setFrontTextureID(unsigned int id) {
    mFrontTextureId = id;
}

bool KNDrawBGTilt::getFBOUV() const {
    return mFBOUV;
}

}  // namespace Kinetra
