#include "Kinetra/Core/KNIRenderer.h"

#include <GLES2/gl2.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "Common/Platform/Log.h"
#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"

namespace Kinetra {

namespace {

using Vector = KNMVPManager::Vector;

constexpr unsigned int kNoLimit = std::numeric_limits<unsigned int>::max();
// Below this a camera vector counts as zero length.
constexpr float kTiny = 1e-30f;

// A mesh array as the packed floats GL reads (null when empty).
template <typename Element>
const float* floats(const std::vector<Element>& array) {
    return reinterpret_cast<const float*>(array.data());
}

float length(const Vector& v) {
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

// Fewest vertices among the arrays each renderer has bound since its last draw, on this (the GL)
// thread. Kept beside the renderers, not in them: effect libraries lay KNIRenderer out field by
// field. Usually one entry, the layer being drawn; a fixed array, so the frame allocates nothing
// and layers held in statics may still reach it as the process ends.
class BoundVertices {
  public:
    void bound(const KNIRenderer* renderer, unsigned int vertices) {
        if (Entry* entry = find(renderer)) {
            entry->vertices = std::min(entry->vertices, vertices);
        } else if (mCount < kCapacity) {
            mEntries[mCount++] = {renderer, vertices};
        }  // else more layers bind at once than ever draw together: that one goes unchecked
    }
    unsigned int limit(const KNIRenderer* renderer) {
        const Entry* entry = find(renderer);
        return entry == nullptr ? kNoLimit : entry->vertices;
    }
    void forget(const KNIRenderer* renderer) {
        if (Entry* entry = find(renderer)) {
            *entry = mEntries[--mCount];
        }
    }

  private:
    struct Entry {
        const KNIRenderer* renderer;
        unsigned int vertices;
    };
    static constexpr unsigned int kCapacity = 8;

    Entry* find(const KNIRenderer* renderer) {
        for (unsigned int i = 0; i < mCount; ++i) {
            if (mEntries[i].renderer == renderer) {
                return &mEntries[i];
            }
        }
        return nullptr;
    }

    Entry mEntries[kCapacity];
    unsigned int mCount;
};

thread_local BoundVertices tBoundVertices;

}  // namespace

KNIRenderer::KNIRenderer()
    : mMesh(nullptr),
      mMVP(nullptr),
      mShader(nullptr),
      mColor{},
      mRotate{},
      mTranslate{},
      mScale{},
      mScreenSize{},
      mRenderSize{},
      mTextureUnit(0),
      mModelMatrixGiven(false),
      mDrawArrays(false),
      mDrawMode(0),
      mVisible(true),
      mBlend{},
      mDepthTest(false),
      mCustomIndices(nullptr),
      mCustomIndexCount(0),
      mCustomVertexCount(0),
      mCustomDrawPending(false) {}

KNIRenderer::~KNIRenderer() {
    tBoundVertices.forget(this);
    qam::forgetLoggedOnce(this);
    delete mShader;
    delete mMVP;
}

void KNIRenderer::contextChanged() {
    if (mShader != nullptr) {
        mShader->contextChanged();
    }
}

void KNIRenderer::initRender(float, float) {}

void KNIRenderer::drawRender() {}

void KNIRenderer::initialize(float width, float height) {
    mRenderSize[0] = width;
    mRenderSize[1] = height;
    mScreenSize[0] = 720.0f;
    mScreenSize[1] = 1280.0f;
    mDrawArrays = true;
    mDrawMode = GL_TRIANGLES;
    mModelMatrixGiven = false;
    std::fill(mColor, mColor + 4, 1.0f);
    mTextureUnit = 0;
    setBlendOption(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    std::fill(mScale, mScale + 3, 1.0f);
    std::fill(mRotate, mRotate + 4, 0.0f);
    std::fill(mTranslate, mTranslate + 3, 0.0f);
    mvp();
    initRender(width, height);
}

void KNIRenderer::setScreenSize(float width, float height) {
    mScreenSize[0] = width;
    mScreenSize[1] = height;
}

void KNIRenderer::createShaderProgram(const char* vertexSource, const char* fragmentSource) {
    if (vertexSource == nullptr || fragmentSource == nullptr) {
        qam::logErrorOnce(this,
                          "KNIRenderer::createShaderProgram: null shader source, program kept");
        return;
    }
    if (mShader == nullptr) {
        mShader = new KNShaderManager();
    }
    mShader->reset();
    mShader->createProgram(vertexSource, fragmentSource);
}

KNMVPManager& KNIRenderer::mvp() {
    if (mMVP == nullptr) {
        mMVP = new KNMVPManager();
    }
    return *mMVP;
}

// ---- camera ---------------------------------------------------------------------------------

void KNIRenderer::setOrthogonalCameraView(float left, float right, float bottom, float top,
                                          float nearZ, float farZ) {
    mvp().setOrtho(left, right, bottom, top, nearZ, farZ);
}

void KNIRenderer::setPerspectiveCameraView(float fovy, float aspect, float nearZ, float farZ) {
    mvp().setPerspective(fovy, aspect, nearZ, farZ);
}

void KNIRenderer::setFrustumCameraView(float left, float right, float bottom, float top,
                                       float nearZ, float farZ) {
    mvp().setFrustum(left, right, bottom, top, nearZ, farZ);
}

void KNIRenderer::setLookAt(float eyeX, float eyeY, float eyeZ, float centerX, float centerY,
                            float centerZ, float upX, float upY, float upZ) {
    mvp().setLookAt(eyeX, eyeY, eyeZ, centerX, centerY, centerZ, upX, upY, upZ);
}

void KNIRenderer::MoveCameraX(float d) {
    if (d == 0.0f) {
        return;
    }
    KNMVPManager& m = mvp();
    Vector eye = m.getCameraPosition();
    Vector centre = m.getCameraCentre();
    const Vector up = m.getCameraUp();
    const Vector towards = {centre.x - eye.x, centre.y - eye.y, centre.z - eye.z};
    const float l = length(towards);
    const Vector n =
        l < kTiny ? Vector{1.0f, 0.0f, 0.0f} : Vector{towards.x / l, towards.y / l, towards.z / l};
    const Vector side = {up.y * n.z - up.z * n.y, up.z * n.x - up.x * n.z, up.x * n.y - up.y * n.x};
    const float s = length(side);
    // -side is the camera's right, n × up.
    const Vector offset = s < kTiny ? Vector{-d, 0.0f, 0.0f}
                                    : Vector{-d * side.x / s, -d * side.y / s, -d * side.z / s};
    eye = {eye.x + offset.x, eye.y + offset.y, eye.z + offset.z};
    centre = {centre.x + offset.x, centre.y + offset.y, centre.z + offset.z};
    m.setLookAt(eye, centre, up);
}

void KNIRenderer::MoveCameraY(float d) {
    if (d == 0.0f) {
        return;
    }
    KNMVPManager& m = mvp();
    Vector eye = m.getCameraPosition();
    Vector centre = m.getCameraCentre();
    const Vector up = m.getCameraUp();
    const float l = length(up);
    const Vector offset =
        l < kTiny ? Vector{d, 0.0f, 0.0f} : Vector{d * up.x / l, d * up.y / l, d * up.z / l};
    eye = {eye.x + offset.x, eye.y + offset.y, eye.z + offset.z};
    centre = {centre.x + offset.x, centre.y + offset.y, centre.z + offset.z};
    m.setLookAt(eye, centre, up);
}

void KNIRenderer::MoveCameraZ(float d) {
    if (d == 0.0f) {
        return;
    }
    KNMVPManager& m = mvp();
    Vector eye = m.getCameraPosition();
    const Vector centre = m.getCameraCentre();
    const Vector up = m.getCameraUp();
    const Vector towards = {centre.x - eye.x, centre.y - eye.y, centre.z - eye.z};
    const float l = length(towards);
    if (l < kTiny) {
        eye.x += d;
    } else {
        eye = {eye.x + d * towards.x / l, eye.y + d * towards.y / l, eye.z + d * towards.z / l};
    }
    m.setLookAt(eye, centre, up);
}

// ---- attributes -----------------------------------------------------------------------------

bool KNIRenderer::ready(const char* name, const char* caller) {
    if (mShader == nullptr || mShader->getProgram() == 0) {
        return false;
    }
    // GL would read the name as a string.
    if (name == nullptr) {
        qam::logErrorOnce(this, "KNIRenderer::%s: null name, ignored", caller);
        return false;
    }
    return true;
}

void KNIRenderer::bindAttribute(const char* name, unsigned int size, const void* data,
                                unsigned int elements) {
    const int location = mShader->getAttributeLoc(name);
    // An unknown name gives -1, which GL rejects; it is enabled and disabled all the same.
    const GLuint index = static_cast<GLuint>(location);
    mEnabledAttributes.push_back(index);
    glVertexAttribPointer(index, static_cast<GLint>(size), GL_FLOAT, GL_FALSE,
                          static_cast<GLsizei>(size * sizeof(float)), data);
    glEnableVertexAttribArray(index);
    if (elements != kNoLimit) {
        tBoundVertices.bound(this, elements);
    }
}

bool KNIRenderer::meshReady(const char* name, const char* caller) {
    if (!ready(name, caller)) {
        return false;
    }
    if (mMesh == nullptr) {
        qam::logErrorOnce(this, "KNIRenderer::%s: no mesh set, \"%s\" not bound", caller, name);
        return false;
    }
    return true;
}

void KNIRenderer::bindMeshArray(const char* name, unsigned int size, const float* data,
                                std::size_t floats) {
    // Fewer floats than one element: an empty array, skipped.
    if (floats < size) {
        return;
    }
    bindAttribute(name, size, data, static_cast<unsigned int>(floats / size));
}

void KNIRenderer::setShaderArrayMeshVertex(const char* attributeName) {
    if (meshReady(attributeName, "setShaderArrayMeshVertex")) {
        bindMeshArray(attributeName, 3, floats(mMesh->vertex), 3 * mMesh->vertex.size());
    }
}

void KNIRenderer::setShaderArrayMeshVertex2D(const char* attributeName) {
    if (meshReady(attributeName, "setShaderArrayMeshVertex2D")) {
        bindMeshArray(attributeName, 2, floats(mMesh->vertex), 3 * mMesh->vertex.size());
    }
}

void KNIRenderer::setShaderArrayMeshNormal(const char* attributeName) {
    if (meshReady(attributeName, "setShaderArrayMeshNormal")) {
        bindMeshArray(attributeName, 3, floats(mMesh->normal), 3 * mMesh->normal.size());
    }
}

void KNIRenderer::setShaderArrayMeshHeight(const char* attributeName) {
    if (meshReady(attributeName, "setShaderArrayMeshHeight")) {
        bindMeshArray(attributeName, 3, floats(mMesh->height), 3 * mMesh->height.size());
    }
}

void KNIRenderer::setShaderArrayMeshTangent(const char* attributeName) {
    if (meshReady(attributeName, "setShaderArrayMeshTangent")) {
        bindMeshArray(attributeName, 3, floats(mMesh->tangent), 3 * mMesh->tangent.size());
    }
}

void KNIRenderer::setShaderArrayMeshUV(const char* attributeName) {
    if (meshReady(attributeName, "setShaderArrayMeshUV")) {
        bindMeshArray(attributeName, 3, floats(mMesh->uv), 3 * mMesh->uv.size());
    }
}

void KNIRenderer::setShaderArrayMeshColor(const char* attributeName) {
    if (meshReady(attributeName, "setShaderArrayMeshColor")) {
        bindMeshArray(attributeName, 4, floats(mMesh->color), 4 * mMesh->color.size());
    }
}

void KNIRenderer::setShaderArrayMeshCustom(const char* attributeName) {
    if (meshReady(attributeName, "setShaderArrayMeshCustom")) {
        bindMeshArray(attributeName, 1, mMesh->custom.data(), mMesh->custom.size());
    }
}

void KNIRenderer::setShaderArrayVector(const char* attributeName, float* data,
                                       unsigned int components) {
    if (!ready(attributeName, "setShaderArrayVector")) {
        return;
    }
    // Passed on as GL takes it: with a buffer bound, `data` is an offset (null is 0). Its
    // length is unknown here, so it sets no limit on the draw.
    bindAttribute(attributeName, components, data, kNoLimit);
}

// ---- uniforms -------------------------------------------------------------------------------

void KNIRenderer::setMatrixUniform(const char* name, const KNMVPManager::Matrix& matrix) {
    glUniformMatrix4fv(mShader->getUniformLoc(name), 1, GL_FALSE, matrix.data());
}

void KNIRenderer::setShaderUniformMVPMatrix(const char* name) {
    if (ready(name, "setShaderUniformMVPMatrix")) {
        setMatrixUniform(name, mvp().getMVPMatrix());
    }
}

void KNIRenderer::setShaderUniformMVMatrix(const char* name) {
    if (ready(name, "setShaderUniformMVMatrix")) {
        setMatrixUniform(name, mvp().getMVMatrix());
    }
}

void KNIRenderer::setShaderUniformMMatrix(const char* name) {
    if (ready(name, "setShaderUniformMMatrix")) {
        setMatrixUniform(name, mvp().getModelMatrix());
    }
}

void KNIRenderer::setShaderUniformITMMatrix(const char* name) {
    if (ready(name, "setShaderUniformITMMatrix")) {
        setMatrixUniform(name, mvp().getITModelMatrix());
    }
}

void KNIRenderer::bindTexture(const char* name, unsigned int target, unsigned int textureId) {
    glActiveTexture(GL_TEXTURE0 + mTextureUnit);
    glBindTexture(target, textureId);
    glUniform1i(mShader->getUniformLoc(name), static_cast<GLint>(mTextureUnit));
    ++mTextureUnit;
}

void KNIRenderer::setShaderUnifromTexture(const char* name, unsigned int textureId) {
    if (ready(name, "setShaderUnifromTexture")) {
        bindTexture(name, GL_TEXTURE_2D, textureId);
    }
}

void KNIRenderer::setShaderUniformCubeMapTexture(const char* name, unsigned int textureId) {
    if (ready(name, "setShaderUniformCubeMapTexture")) {
        bindTexture(name, GL_TEXTURE_CUBE_MAP, textureId);
    }
}

void KNIRenderer::setShaderUniformValue(const char* name, float value) {
    if (ready(name, "setShaderUniformValue")) {
        glUniform1f(mShader->getUniformLoc(name), value);
    }
}

void KNIRenderer::setVec2UniformValue(const char* name, float* v) {
    if (!ready(name, "setVec2UniformValue")) {
        return;
    }
    if (v == nullptr) {  // GL would read two floats from it
        qam::logErrorOnce(
            this, "KNIRenderer::setVec2UniformValue: null vector for \"%s\", not sent", name);
        return;
    }
    glUniform2fv(mShader->getUniformLoc(name), 1, v);
}

void KNIRenderer::setShaderUniformVector(const char* name, float* v, unsigned int components,
                                         unsigned int count) {
    // Any other number of components sends nothing.
    if (!ready(name, "setShaderUniformVector") || components < 1 || components > 4) {
        return;
    }
    if (v == nullptr && count != 0) {  // GL would read the values from it
        qam::logErrorOnce(
            this, "KNIRenderer::setShaderUniformVector: null values for \"%s\", not sent", name);
        return;
    }
    const GLint location = mShader->getUniformLoc(name);
    const GLsizei n = static_cast<GLsizei>(count);
    switch (components) {
        case 1:
            glUniform1fv(location, n, v);
            break;
        case 2:
            glUniform2fv(location, n, v);
            break;
        case 3:
            glUniform3fv(location, n, v);
            break;
        default:
            glUniform4fv(location, n, v);
            break;
    }
}

void KNIRenderer::setShaderUnformColor(const char* name) {
    if (ready(name, "setShaderUnformColor")) {
        glUniform4fv(mShader->getUniformLoc(name), 1, mColor);
    }
}

// ---- draw calls -----------------------------------------------------------------------------

void KNIRenderer::setDrawElementsWithOption(unsigned int mode) {
    mDrawMode = mode;
    mDrawArrays = false;
}

void KNIRenderer::setDrawArraysWithOption(unsigned int mode) {
    mDrawMode = mode;
    mDrawArrays = true;
}

// With an element-array buffer bound, `indices` is an offset into it (null is offset 0).
void KNIRenderer::setCustomDrawElement(unsigned short* indices, unsigned int count,
                                       unsigned int mode) {
    mCustomIndices = indices;
    mCustomIndexCount = count;
    setDrawElementsWithOption(mode);
    mCustomDrawPending = true;
}

void KNIRenderer::setCustomDrawArrays(unsigned int count, unsigned int mode) {
    mCustomVertexCount = count;
    setDrawArraysWithOption(mode);
    mCustomDrawPending = true;
}

bool KNIRenderer::withinBoundArrays(const char* caller, unsigned int vertices,
                                    const unsigned short* indices, unsigned int indexCount) {
    unsigned int needed = vertices;
    for (unsigned int k = 0; k < indexCount; ++k) {
        needed = std::max(needed, indices[k] + 1u);
    }
    const unsigned int bound = tBoundVertices.limit(this);
    if (needed > bound) {
        qam::logErrorOnce(this,
                          "KNIRenderer::%s: the draw reads %u vertices but a bound array holds %u, "
                          "skipped",
                          caller, needed, bound);
        return false;
    }
    return true;
}

void KNIRenderer::runMeshDraw() {
    if (mMesh == nullptr) {
        qam::logErrorOnce(this, "KNIRenderer::runMeshDraw: no mesh set, nothing drawn");
        return;
    }
    if (mDrawArrays) {
        const unsigned int count = mMesh->getNumOfVertex();
        if (withinBoundArrays("runMeshDraw", count, nullptr, 0)) {
            glDrawArrays(mDrawMode, 0, static_cast<GLsizei>(count));
        }
        return;
    }
    const unsigned int count = mMesh->getNumOfVertexIndex();
    if (withinBoundArrays("runMeshDraw", 0, mMesh->index.data(), count)) {
        glDrawElements(mDrawMode, static_cast<GLsizei>(count), GL_UNSIGNED_SHORT,
                       mMesh->index.data());
    }
}

void KNIRenderer::runCustomDraw() {
    if (mDrawArrays) {
        if (withinBoundArrays("runCustomDraw", mCustomVertexCount, nullptr, 0)) {
            glDrawArrays(mDrawMode, 0, static_cast<GLsizei>(mCustomVertexCount));
        }
    } else {
        // Not read here: the indices may be an offset into a bound element-array buffer.
        glDrawElements(mDrawMode, static_cast<GLsizei>(mCustomIndexCount), GL_UNSIGNED_SHORT,
                       mCustomIndices);
    }
    mCustomDrawPending = false;
}

// ---- transform, state -----------------------------------------------------------------------

void KNIRenderer::setColor(float r, float g, float b, float a) {
    mColor[0] = r;
    mColor[1] = g;
    mColor[2] = b;
    mColor[3] = a;
}

void KNIRenderer::setTranslate(float x, float y, float z) {
    mTranslate[0] = x;
    mTranslate[1] = y;
    mTranslate[2] = z;
}

void KNIRenderer::setRotate(float angle, float x, float y, float z) {
    mRotate[0] = angle;
    mRotate[1] = x;
    mRotate[2] = y;
    mRotate[3] = z;
}

void KNIRenderer::setScale(float x, float y, float z) {
    mScale[0] = x;
    mScale[1] = y;
    mScale[2] = z;
}

void KNIRenderer::convertModelMatrix(float* m) {
    if (m == nullptr) {
        qam::logErrorOnce(this, "KNIRenderer::convertModelMatrix: null matrix, ignored");
        return;
    }
    mvp().setModelMatrix(m);
    mModelMatrixGiven = true;
}

KNMVPManager::Matrix& KNIRenderer::getViewMatrix() {
    return mvp().getViewMatrix();
}

KNMVPManager::Matrix& KNIRenderer::getMVPMatrix() {
    return mvp().getMVPMatrix();
}

void KNIRenderer::setBlendOption(const unsigned int& src, const unsigned int& dst) {
    setBlendOption(src, dst, src, dst);
}

void KNIRenderer::setBlendOption(const unsigned int& srcRGB, const unsigned int& dstRGB,
                                 const unsigned int& srcAlpha, const unsigned int& dstAlpha) {
    mBlend[0] = srcRGB;
    mBlend[1] = dstRGB;
    mBlend[2] = srcAlpha;
    mBlend[3] = dstAlpha;
}

void KNIRenderer::updateMVPMtrix() {
    if (mMVP == nullptr || mModelMatrixGiven) {
        return;
    }
    mMVP->setTranslate(mTranslate[0], mTranslate[1], mTranslate[2]);
    mMVP->setRotate(mRotate[0], mRotate[1], mRotate[2], mRotate[3]);
    mMVP->setScale(mScale[0], mScale[1], mScale[2]);
}

void KNIRenderer::resetShaderParameters() {
    for (unsigned int location : mEnabledAttributes) {
        glDisableVertexAttribArray(location);
    }
    mEnabledAttributes.clear();
    mTextureUnit = 0;
    mModelMatrixGiven = false;
    tBoundVertices.forget(this);
}

void KNIRenderer::draw() {
    if (!mVisible) {
        return;
    }
    updateMVPMtrix();
    if (mDepthTest) {
        glEnable(GL_DEPTH_TEST);
    } else {
        glDisable(GL_DEPTH_TEST);
    }
    // Blending stays on afterwards; nothing restores the earlier state.
    glEnable(GL_BLEND);
    glBlendFuncSeparate(mBlend[0], mBlend[1], mBlend[2], mBlend[3]);
    glUseProgram(mShader != nullptr ? mShader->getProgram() : 0);
    drawRender();
    if (mCustomDrawPending) {
        runCustomDraw();
    } else {
        runMeshDraw();
    }
    resetShaderParameters();
}

const float* KNIRenderer::getScreenSize() const {
    return mScreenSize;
}

const float* KNIRenderer::getRenderSize() const {
    return mRenderSize;
}

void KNIRenderer::setMesh(KNMesh* mesh) {
    mMesh = mesh;
}

KNMesh* KNIRenderer::getMesh() {
    return mMesh;
}

KNShaderManager* KNIRenderer::getShaderManager() {
    return mShader;
}

KNMVPManager* KNIRenderer::getMVPManager() {
    return mMVP;
}

float* KNIRenderer::getColor() {
    return mColor;
}

float* KNIRenderer::getPosition() {
    return mTranslate;
}

float* KNIRenderer::getRotate() {
    return mRotate;
}

float* KNIRenderer::getScale() {
    return mScale;
}

void KNIRenderer::setVisible(bool visible) {
    mVisible = visible;
}

bool KNIRenderer::getVisible() const {
    return mVisible != 0;
}

void KNIRenderer::setDepthTest(bool depthTest) {
    mDepthTest = depthTest;
}

bool KNIRenderer::getDepthTest() const {
    return mDepthTest != 0;
}

}  // namespace Kinetra
