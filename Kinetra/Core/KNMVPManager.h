#pragma once

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNMatrix4x4.h"
#include "Kinetra/Core/KNVector.h"

namespace Kinetra {

// One layer's model, view and projection matrices, the parameters the model and view are
// built from, and the products its shaders receive. Products are recomputed on every call.
//
// Builders change the matrix given first. All but setIdentityMatrix combine into it by
// multiplyMatrix, so in OpenGL's column-vector reading the new transform applies first.
// Degenerate input (zero axis, invalid frustum, zero ortho extent) leaves it unchanged.
class TALVEQAM_EXPORT KNMVPManager {
  public:
    using Matrix = KNMatrix4x4<float>;
    using Vector = KNVector3D<float>;

    KNMVPManager();
    virtual ~KNMVPManager();

    static void setIdentityMatrix(Matrix& m);
    // r[i][j] = sum over k of a[i][k] * b[k][j]; r may be a or b. In OpenGL's reading r = b·a.
    static void multiplyMatrix(Matrix& r, const Matrix& a, const Matrix& b);
    static void translateMatrix(Matrix& m, float x, float y, float z);
    static void scaleMatrix(Matrix& m, float x, float y, float z);
    // Degrees; a positive angle turns clockwise about the axis (x goes to -y about +z).
    static void rotateMatrix(Matrix& m, float angle, float x, float y, float z);
    static void getFrustumMatrix(Matrix& m, float left, float right, float bottom, float top,
                                 float nearZ, float farZ);
    // fovy is the full vertical angle in degrees.
    static void getPerspectiveMatrix(Matrix& m, float fovy, float aspect, float nearZ, float farZ);
    static void getOrthoMatrix(Matrix& m, float left, float right, float bottom, float top,
                               float nearZ, float farZ);
    // Overwrites m (not combined) and stores the orthonormalised up vector as this manager's.
    void getLookAtMatrix(Matrix& m, float eyeX, float eyeY, float eyeZ, float centreX,
                         float centreY, float centreZ, float upX, float upY, float upZ);

    void setFrustum(float left, float right, float bottom, float top, float nearZ, float farZ);
    void setPerspective(float fovy, float aspect, float nearZ, float farZ);
    void setOrtho(float left, float right, float bottom, float top, float nearZ, float farZ);
    void setLookAt(float eyeX, float eyeY, float eyeZ, float centreX, float centreY, float centreZ,
                   float upX, float upY, float upZ);
    void setLookAt(const Vector& eye, const Vector& centre, const Vector& up);

    // Each stores its parameters and rebuilds the model: scale, then rotate, then translate.
    void setTranslate(float x, float y, float z);
    void setScale(float x, float y, float z);
    void setRotate(float angle, float x, float y, float z);
    // Sixteen floats taken as they stand.
    void setModelMatrix(const float* m);
    void setModelTransform(const Matrix& m);

    void setCameraPosition(const Vector& eye);
    Vector getCameraPosition() const;
    // The centre given to setLookAt and the up vector its builder orthonormalised.
    Vector getCameraCentre() const;
    Vector getCameraUp() const;

    Matrix& getPRJMatrix();
    Matrix& getModelMatrix();
    Matrix& getViewMatrix();
    Matrix& getMVMatrix();
    // projection · view · model in OpenGL's reading.
    Matrix& getMVPMatrix();
    Matrix& getViewProjMatrix();
    // Transpose of the inverse of the model's upper 3 x 3, for normals; zero when singular.
    Matrix& getITModelMatrix();

  private:
    void rebuildModel();

    Matrix mMVP;
    Matrix mMV;
    Matrix mViewProjection;
    Matrix mView;
    Matrix mProjection;
    Matrix mModel;
    Matrix mITModel;
    float mTranslate[3];
    float mScale[3];
    float mRotate[4];  // degrees, then the axis
    Vector mEye;
    Vector mUp;
    Vector mCentre;
};

}  // namespace Kinetra
