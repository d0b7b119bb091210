#include "Kinetra/Core/KNMVPManager.h"

#include <cmath>
#include <cstdint>
#include <cstring>

#include "Common/Platform/Log.h"
#include "Kinetra/Core/Implementation/MatrixLanes.h"

namespace Kinetra {

namespace {

float floatFromBits(std::uint32_t bits) {
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// One unit in the last place above pi/180 and pi/360, and 1e-30: the exact constants the
// layers' angles and the inverse-transpose threshold were tuned with.
const float kDegreesToRadians = floatFromBits(0x3C8EFA36u);
const float kHalfDegreesToRadians = floatFromBits(0x3C0EFA36u);
const float kSingularDeterminant = floatFromBits(0x0DA24260u);

using Vector = KNMVPManager::Vector;

float length(const Vector& v) {
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

// Left as it is when of length 0.
Vector normalised(const Vector& v) {
    const float l = length(v);
    if (l == 0.0f) {
        return v;
    }
    return {v.x / l, v.y / l, v.z / l};
}

Vector cross(const Vector& a, const Vector& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

}  // namespace

KNMVPManager::KNMVPManager()
    : mTranslate{0.0f, 0.0f, 0.0f}, mScale{1.0f, 1.0f, 1.0f}, mRotate{0.0f, 0.0f, 0.0f, 0.0f} {
    setIdentityMatrix(mMVP);
    setIdentityMatrix(mMV);
    setIdentityMatrix(mView);
    setIdentityMatrix(mProjection);
    setIdentityMatrix(mModel);
}

KNMVPManager::~KNMVPManager() {
    qam::forgetLoggedOnce(this);
}

void KNMVPManager::setIdentityMatrix(Matrix& m) {
    std::memset(m.m, 0, sizeof m.m);
    m.m[0] = m.m[5] = m.m[10] = m.m[15] = 1.0f;
}

void KNMVPManager::multiplyMatrix(Matrix& r, const Matrix& a, const Matrix& b) {
    // The lanes hold the whole product before storing it, so r may be a or b.
    qam::lanes::multiply(r.m, a.m, b.m);
}

void KNMVPManager::translateMatrix(Matrix& m, float x, float y, float z) {
    qam::lanes::translate(m.m, x, y, z);
}

void KNMVPManager::scaleMatrix(Matrix& m, float x, float y, float z) {
    qam::lanes::scale(m.m, x, y, z);
}

void KNMVPManager::rotateMatrix(Matrix& m, float angle, float x, float y, float z) {
    const float mag = std::sqrt(x * x + y * y + z * z);
    if (!(mag > 0.0f)) {
        return;
    }
    x /= mag;
    y /= mag;
    z /= mag;
    float s;
    float c;
    sincosf(angle * kDegreesToRadians, &s, &c);
    const float t = 1.0f - c;
    Matrix r;
    r[0][0] = t * x * x + c;
    r[0][1] = t * x * y - z * s;
    r[0][2] = t * z * x + y * s;
    r[1][0] = t * x * y + z * s;
    r[1][1] = t * y * y + c;
    r[1][2] = t * y * z - x * s;
    r[2][0] = t * z * x - y * s;
    r[2][1] = t * y * z + x * s;
    r[2][2] = t * z * z + c;
    r[3][3] = 1.0f;
    multiplyMatrix(m, r, m);
}

void KNMVPManager::getFrustumMatrix(Matrix& m, float left, float right, float bottom, float top,
                                    float nearZ, float farZ) {
    const float dx = right - left;
    const float dy = top - bottom;
    const float dz = farZ - nearZ;
    if (!(nearZ > 0.0f && farZ > 0.0f && dx > 0.0f && dy > 0.0f && dz > 0.0f)) {
        return;
    }
    Matrix f;
    f[0][0] = 2.0f * nearZ / dx;
    f[1][1] = 2.0f * nearZ / dy;
    f[2][0] = (right + left) / dx;
    f[2][1] = (top + bottom) / dy;
    f[2][2] = -(nearZ + farZ) / dz;
    f[2][3] = -1.0f;
    f[3][2] = -2.0f * nearZ * farZ / dz;
    multiplyMatrix(m, f, m);
}

void KNMVPManager::getPerspectiveMatrix(Matrix& m, float fovy, float aspect, float nearZ,
                                        float farZ) {
    const float h = std::tan(fovy * kHalfDegreesToRadians) * nearZ;
    const float w = h * aspect;
    getFrustumMatrix(m, -w, w, -h, h, nearZ, farZ);
}

void KNMVPManager::getOrthoMatrix(Matrix& m, float left, float right, float bottom, float top,
                                  float nearZ, float farZ) {
    const float dx = right - left;
    const float dy = top - bottom;
    const float dz = farZ - nearZ;
    if (dx == 0.0f || dy == 0.0f || dz == 0.0f) {
        return;
    }
    Matrix o;
    setIdentityMatrix(o);
    o[0][0] = 2.0f / dx;
    o[1][1] = 2.0f / dy;
    o[2][2] = -2.0f / dz;
    o[3][0] = -(right + left) / dx;
    o[3][1] = -(top + bottom) / dy;
    o[3][2] = -(nearZ + farZ) / dz;
    multiplyMatrix(m, o, m);
}

void KNMVPManager::getLookAtMatrix(Matrix& m, float eyeX, float eyeY, float eyeZ, float centreX,
                                   float centreY, float centreZ, float upX, float upY, float upZ) {
    const Vector f = normalised({eyeX - centreX, eyeY - centreY, eyeZ - centreZ});
    const Vector side = cross({upX, upY, upZ}, f);
    const Vector u = normalised(cross(f, side));
    const Vector s = normalised(side);
    mUp = u;
    m[0][0] = s.x;
    m[0][1] = u.x;
    m[0][2] = f.x;
    m[0][3] = 0.0f;
    m[1][0] = s.y;
    m[1][1] = u.y;
    m[1][2] = f.y;
    m[1][3] = 0.0f;
    m[2][0] = s.z;
    m[2][1] = u.z;
    m[2][2] = f.z;
    m[2][3] = 0.0f;
    m[3][0] = 0.0f;
    m[3][1] = 0.0f;
    m[3][2] = 0.0f;
    m[3][3] = 1.0f;
    translateMatrix(m, -eyeX, -eyeY, -eyeZ);
}

void KNMVPManager::setFrustum(float left, float right, float bottom, float top, float nearZ,
                              float farZ) {
    setIdentityMatrix(mProjection);
    getFrustumMatrix(mProjection, left, right, bottom, top, nearZ, farZ);
}

void KNMVPManager::setPerspective(float fovy, float aspect, float nearZ, float farZ) {
    setIdentityMatrix(mProjection);
    getPerspectiveMatrix(mProjection, fovy, aspect, nearZ, farZ);
}

void KNMVPManager::setOrtho(float left, float right, float bottom, float top, float nearZ,
                            float farZ) {
    setIdentityMatrix(mProjection);
    getOrthoMatrix(mProjection, left, right, bottom, top, nearZ, farZ);
}

void KNMVPManager::setLookAt(float eyeX, float eyeY, float eyeZ, float centreX, float centreY,
                             float centreZ, float upX, float upY, float upZ) {
    setIdentityMatrix(mView);
    getLookAtMatrix(mView, eyeX, eyeY, eyeZ, centreX, centreY, centreZ, upX, upY, upZ);
    mEye = {eyeX, eyeY, eyeZ};
    mCentre = {centreX, centreY, centreZ};
}

void KNMVPManager::setLookAt(const Vector& eye, const Vector& centre, const Vector& up) {
    // By value first: the arguments may be this manager's own vectors.
    setLookAt(eye.x, eye.y, eye.z, centre.x, centre.y, centre.z, up.x, up.y, up.z);
}

void KNMVPManager::setTranslate(float x, float y, float z) {
    mTranslate[0] = x;
    mTranslate[1] = y;
    mTranslate[2] = z;
    rebuildModel();
}

void KNMVPManager::setScale(float x, float y, float z) {
    mScale[0] = x;
    mScale[1] = y;
    mScale[2] = z;
    rebuildModel();
}

void KNMVPManager::setRotate(float angle, float x, float y, float z) {
    mRotate[0] = angle;
    mRotate[1] = x;
    mRotate[2] = y;
    mRotate[3] = z;
    rebuildModel();
}

void KNMVPManager::rebuildModel() {
    setIdentityMatrix(mModel);
    translateMatrix(mModel, mTranslate[0], mTranslate[1], mTranslate[2]);
    rotateMatrix(mModel, mRotate[0], mRotate[1], mRotate[2], mRotate[3]);
    scaleMatrix(mModel, mScale[0], mScale[1], mScale[2]);
}

void KNMVPManager::setModelMatrix(const float* m) {
    if (m == nullptr) {
        qam::logErrorOnce(this, "KNMVPManager::setModelMatrix: null matrix, model kept");
        return;
    }
    std::memmove(mModel.m, m, sizeof mModel.m);
}

void KNMVPManager::setModelTransform(const Matrix& m) {
    if (&m != &mModel) {
        mModel = m;
    }
}

KNMVPManager::Matrix& KNMVPManager::getMVMatrix() {
    multiplyMatrix(mMV, mModel, mView);
    return mMV;
}

KNMVPManager::Matrix& KNMVPManager::getMVPMatrix() {
    multiplyMatrix(mMVP, getMVMatrix(), mProjection);
    return mMVP;
}

KNMVPManager::Matrix& KNMVPManager::getViewProjMatrix() {
    setIdentityMatrix(mViewProjection);
    multiplyMatrix(mViewProjection, mView, mProjection);
    return mViewProjection;
}

KNMVPManager::Matrix& KNMVPManager::getITModelMatrix() {
    setIdentityMatrix(mITModel);
    const float a = mModel[0][0], b = mModel[0][1], c = mModel[0][2];
    const float d = mModel[1][0], e = mModel[1][1], f = mModel[1][2];
    const float g = mModel[2][0], h = mModel[2][1], i = mModel[2][2];
    const float det = a * (e * i - f * h) + b * (f * g - d * i) + c * (d * h - e * g);
    if (std::fabs(det) <= kSingularDeterminant) {
        for (int column = 0; column < 3; ++column) {
            for (int row = 0; row < 3; ++row) {
                mITModel[column][row] = 0.0f;
            }
        }
        return mITModel;
    }
    const float r = 1.0f / det;
    mITModel[0][0] = (e * i - f * h) * r;
    mITModel[0][1] = (f * g - d * i) * r;
    mITModel[0][2] = (d * h - e * g) * r;
    mITModel[1][0] = (c * h - b * i) * r;
    mITModel[1][1] = (a * i - c * g) * r;
    mITModel[1][2] = (b * g - a * h) * r;
    mITModel[2][0] = (b * f - c * e) * r;
    mITModel[2][1] = (c * d - a * f) * r;
    mITModel[2][2] = (a * e - b * d) * r;
    return mITModel;
}

void KNMVPManager::setCameraPosition(const Vector& eye) {
    mEye = eye;
}

KNMVPManager::Vector KNMVPManager::getCameraPosition() const {
    return mEye;
}

KNMVPManager::Vector KNMVPManager::getCameraCentre() const {
    return mCentre;
}

KNMVPManager::Vector KNMVPManager::getCameraUp() const {
    return mUp;
}

KNMVPManager::Matrix& KNMVPManager::getPRJMatrix() {
    return mProjection;
}

KNMVPManager::Matrix& KNMVPManager::getModelMatrix() {
    return mModel;
}

KNMVPManager::Matrix& KNMVPManager::getViewMatrix() {
    return mView;
}

}  // namespace Kinetra
