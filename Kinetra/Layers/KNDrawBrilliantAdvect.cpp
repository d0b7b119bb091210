#include "Kinetra/Layers/KNDrawBrilliantAdvect.h"

#include <GLES2/gl2.h>

#include "Kinetra/Layers/Implementation/BrilliantQuad.h"
#include "embedded/Kinetra/Layers/KNDrawBrilliantAdvect.frag.h"
#include "embedded/Kinetra/Layers/KNDrawBrilliantAdvect.vert.h"

namespace Kinetra {

namespace {

// Tap distances along the streak and their weights; the centre tap weighs nothing and the
// weights add up to 2.4, so a long streak saturates.
const float kOffset[8] = {0, 1, 2, 3, 4, 5, 6, 7};
const float kWeight[8] = {0.0f, 0.5f, 0.5f, 0.4f, 0.4f, 0.3f, 0.2f, 0.1f};

}  // namespace

KNDrawBrilliantAdvect::KNDrawBrilliantAdvect() {
    mMesh.reset();
    // Before initialize a draw finds an empty mesh rather than none.
    setMesh(&mMesh);
}

KNDrawBrilliantAdvect::~KNDrawBrilliantAdvect() = default;

void KNDrawBrilliantAdvect::contextChanged() {
    KNIRenderer::contextChanged();
}

void KNDrawBrilliantAdvect::initRender(float width, float height) {
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    createRectTextureShader();
    createRectVertex(width, height);
}

void KNDrawBrilliantAdvect::createRectTextureShader() {
    createShaderProgram(qam::embedded::KNDrawBrilliantAdvect_vert,
                        qam::embedded::KNDrawBrilliantAdvect_frag);
}

void KNDrawBrilliantAdvect::createRectVertex(float width, float height) {
    qam::buildBrilliantQuad(mMesh, 0, 0, width, height);
    qam::writeBaseUV(mMesh.uv);
    setMesh(&mMesh);
}

void KNDrawBrilliantAdvect::resizeSurface(float width, float height) {
    setOrthogonalCameraView(0, width, 0, height, -5000, 5000);
    createRectVertex(width, height);
}

void KNDrawBrilliantAdvect::drawRender() {
    setShaderArrayMeshVertex("aPosition");
    setShaderUniformMVPMatrix("uMVPMatrix");
    setShaderArrayMeshUV("aTexUV");
    setShaderUnifromTexture("uRadialVelocity", mRadialTextureId);
    // glUniform1fv only reads the tables.
    setShaderUniformVector("offset", const_cast<float*>(kOffset), 1, 8);
    setShaderUniformVector("weight", const_cast<float*>(kWeight), 1, 8);
    setDrawElementsWithOption(GL_TRIANGLE_STRIP);
}

}  // namespace Kinetra
