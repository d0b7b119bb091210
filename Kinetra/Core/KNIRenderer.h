#pragma once

#include <cstddef>
#include <vector>

#include "Common/Platform/Export.h"
#include "Kinetra/Core/KNMVPManager.h"

namespace Kinetra {

class KNMesh;
class KNShaderManager;

// Base of every draw class. A derived class builds its program and mesh in initRender() and
// binds attributes and uniforms in drawRender(); draw() wraps that with the model matrix,
// depth and blend state, the draw call and the clean-up of attribute state. Owns its shader
// and matrix managers, not its mesh. GL thread only.
//
// Attribute and uniform setters look locations up by name on every call and do nothing
// without a linked program; attribute setters also skip an empty mesh array.
class TALVEQAM_EXPORT KNIRenderer {
  public:
    KNIRenderer();
    virtual ~KNIRenderer();
    KNIRenderer(const KNIRenderer&) = delete;
    KNIRenderer& operator=(const KNIRenderer&) = delete;

    // The program's context is gone: forget its name without deleting it.
    virtual void contextChanged();
    virtual void initRender(float width, float height);
    virtual void drawRender();

    // Defaults, the matrix manager, then initRender(width, height).
    void initialize(float width, float height);
    void setScreenSize(float width, float height);
    // Width and height: 720 x 1280 unless set; the size given to initialize.
    const float* getScreenSize() const;
    const float* getRenderSize() const;
    void setMesh(KNMesh* mesh);
    KNMesh* getMesh();
    void createShaderProgram(const char* vertexSource, const char* fragmentSource);
    // Null until createShaderProgram / the first camera call or initialize.
    KNShaderManager* getShaderManager();
    KNMVPManager* getMVPManager();

    void setOrthogonalCameraView(float left, float right, float bottom, float top, float nearZ,
                                 float farZ);
    void setPerspectiveCameraView(float fovy, float aspect, float nearZ, float farZ);
    void setFrustumCameraView(float left, float right, float bottom, float top, float nearZ,
                              float farZ);
    void setLookAt(float eyeX, float eyeY, float eyeZ, float centerX, float centerY, float centerZ,
                   float upX, float upY, float upZ);
    // Pan sideways, pan along up, move the eye towards the centre. 0 changes nothing.
    void MoveCameraX(float d);
    void MoveCameraY(float d);
    void MoveCameraZ(float d);

    void setShaderArrayMeshVertex(const char* attributeName);
    // The vertex array read as pairs of floats.
    void setShaderArrayMeshVertex2D(const char* attributeName);
    void setShaderArrayMeshNormal(const char* attributeName);
    void setShaderArrayMeshHeight(const char* attributeName);
    void setShaderArrayMeshTangent(const char* attributeName);
    void setShaderArrayMeshUV(const char* attributeName);
    void setShaderArrayMeshColor(const char* attributeName);
    void setShaderArrayMeshCustom(const char* attributeName);
    // `data` must stay alive until the draw; with an array buffer bound it is an offset.
    void setShaderArrayVector(const char* attributeName, float* data, unsigned int components);

    void setShaderUniformMVPMatrix(const char* name);
    void setShaderUniformMVMatrix(const char* name);
    void setShaderUniformMMatrix(const char* name);
    void setShaderUniformITMMatrix(const char* name);
    // Binds to the next texture unit; units start from 0 again after each draw.
    void setShaderUnifromTexture(const char* name, unsigned int textureId);
    void setShaderUniformCubeMapTexture(const char* name, unsigned int textureId);
    void setShaderUniformValue(const char* name, float value);
    void setVec2UniformValue(const char* name, float* v);
    // glUniform1fv .. glUniform4fv by `components`.
    void setShaderUniformVector(const char* name, float* v, unsigned int components,
                                unsigned int count);
    void setShaderUnformColor(const char* name);

    void setDrawElementsWithOption(unsigned int mode);
    void setDrawArraysWithOption(unsigned int mode);
    // The next draw uses these instead of the mesh; the mode and kind stay for later draws.
    // With an element-array buffer bound, `indices` is an offset into it.
    void setCustomDrawElement(unsigned short* indices, unsigned int count, unsigned int mode);
    void setCustomDrawArrays(unsigned int count, unsigned int mode);
    void runMeshDraw();
    void runCustomDraw();

    void setColor(float r, float g, float b, float a);
    float* getColor();
    void setTranslate(float x, float y, float z);
    float* getPosition();
    // Degrees, then the axis.
    void setRotate(float angle, float x, float y, float z);
    float* getRotate();
    void setScale(float x, float y, float z);
    float* getScale();
    // The next draw uses these 16 floats as the model matrix.
    void convertModelMatrix(float* m);
    KNMVPManager::Matrix& getViewMatrix();
    KNMVPManager::Matrix& getMVPMatrix();

    void setVisible(bool visible);
    bool getVisible() const;
    void setDepthTest(bool depthTest);
    bool getDepthTest() const;
    void setBlendOption(const unsigned int& src, const unsigned int& dst);
    void setBlendOption(const unsigned int& srcRGB, const unsigned int& dstRGB,
                        const unsigned int& srcAlpha, const unsigned int& dstAlpha);

    // Rebuilds the model matrix from translate, rotate and scale unless one was given.
    void updateMVPMtrix();
    // Disables the attributes enabled since the last draw; texture units from 0 again.
    void resetShaderParameters();

    // One frame of the layer.
    void draw();

  private:
    KNMVPManager& mvp();
    // True when there is a linked program and `name` is not null (logged once otherwise).
    bool ready(const char* name, const char* caller);
    // ready(), and a mesh to read from (logged once when missing).
    bool meshReady(const char* name, const char* caller);
    // `floats` floats read `size` at a time; nothing when there is not one element.
    void bindMeshArray(const char* name, unsigned int size, const float* data, std::size_t floats);
    void bindAttribute(const char* name, unsigned int size, const void* data,
                       unsigned int elements);
    void bindTexture(const char* name, unsigned int target, unsigned int textureId);
    void setMatrixUniform(const char* name, const KNMVPManager::Matrix& matrix);
    // False (logged once) when the draw would read past a bound mesh array.
    bool withinBoundArrays(const char* caller, unsigned int vertices, const unsigned short* indices,
                           unsigned int indexCount);

    KNMesh* mMesh;
    KNMVPManager* mMVP;
    KNShaderManager* mShader;
    float mColor[4];
    float mRotate[4];
    float mTranslate[3];
    float mScale[3];
    float mScreenSize[2];
    float mRenderSize[2];
    unsigned int mTextureUnit;
    bool mModelMatrixGiven;
    bool mDrawArrays;
    unsigned int mDrawMode;
    // Truth values held in 32 bits, as effect libraries built elsewhere lay them out.
    int mVisible;
    unsigned int mBlend[4];  // source and destination RGB, source and destination alpha
    int mDepthTest;
    std::vector<unsigned int> mEnabledAttributes;
    unsigned short* mCustomIndices;
    unsigned int mCustomIndexCount;
    unsigned int mCustomVertexCount;
    int mCustomDrawPending;
};

}  // namespace Kinetra
