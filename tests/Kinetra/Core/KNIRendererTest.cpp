#include "Kinetra/Core/KNIRenderer.h"

#include <GLES2/gl2.h>

#include <cstring>
#include <fstream>
#include <functional>
#include <sstream>
#include <string>

#include "Kinetra/Core/KNMesh.h"
#include "Kinetra/Core/KNShaderManager.h"
#include "tests/support/GLCallCounter.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"

namespace {

using Kinetra::KNIRenderer;
using Kinetra::KNMesh;
using qam::test::GLCallCounter;
using qam::test::GLTest;
using qam::test::LogCapture;

constexpr uint32_t kBlack = 0x00000000u;
constexpr uint32_t kOrange = 0xFF8000FFu;

// A shader file kept beside this test.
std::string shaderFile(const char* name) {
    std::string path = __FILE__;
    path = path.substr(0, path.rfind('/') + 1) + name;
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// Bottom-left, bottom-right, top-left, top-right, with UVs and the strip indices 0..3.
void setQuad(KNMesh& mesh, float x0, float y0, float x1, float y1) {
    mesh.reset();
    mesh.vertex = {{x0, y0, 0}, {x1, y0, 0}, {x0, y1, 0}, {x1, y1, 0}};
    mesh.uv = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}};
    mesh.index = {0, 1, 2, 3};
}

// The smallest derived renderer: a mesh in pixel coordinates, in the renderer colour or in
// red and green taken from two textures.
class QuadRenderer : public KNIRenderer {
  public:
    KNMesh mesh;
    bool textured = false;
    unsigned int textureA = 0;
    unsigned int textureB = 0;
    std::function<void(QuadRenderer&)> extra;  // more setter calls in drawRender

    void initRender(float width, float height) override {
        createShaderProgram(shaderFile("KNIRendererTest.vert").c_str(),
                            shaderFile("KNIRendererTest.frag").c_str());
        setOrthogonalCameraView(0, width, 0, height, -1, 1);
        setMesh(&mesh);
    }

    void drawRender() override {
        setShaderArrayMeshVertex("aPosition");
        setShaderArrayMeshUV("aTexUV");
        setShaderUniformMVPMatrix("uMVPMatrix");
        setShaderUnformColor("uColor");
        if (textured) {
            setShaderUnifromTexture("uTexA", textureA);
            setShaderUnifromTexture("uTexB", textureB);
        }
        setShaderUniformValue("uTextureMix", textured ? 1.0f : 0.0f);
        if (extra) {
            extra(*this);
        }
    }

    GLuint program() { return getShaderManager()->getProgram(); }
};

class KNIRendererTest : public GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        renderer.initialize(kWidth, kHeight);
        ASSERT_NE(renderer.program(), 0u);
        renderer.setColor(1.0f, 0.5f, 0.0f, 1.0f);
    }

    void clear() {
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
    }

    static GLuint texture(uint8_t r, uint8_t g, uint8_t b) {
        const uint8_t rgba[4] = {r, g, b, 255};
        GLuint name = 0;
        glGenTextures(1, &name);
        glBindTexture(GL_TEXTURE_2D, name);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 1, 1, 0, GL_RGBA, GL_UNSIGNED_BYTE, rgba);
        return name;
    }

    QuadRenderer renderer;
};

TEST_F(KNIRendererTest, DrawsItsMeshAsTrianglesUntilToldOtherwise) {
    setQuad(renderer.mesh, 0, 0, 32, 64);
    // Defaults: arrays, GL_TRIANGLES: the first three vertices, the lower-left half.
    renderer.draw();
    EXPECT_PIXEL_NEAR(pixel(4, 4), kOrange, 1);
    EXPECT_EQ(pixel(28, 60), kBlack);
    EXPECT_EQ(pixel(50, 10), kBlack);

    clear();
    renderer.setDrawElementsWithOption(GL_TRIANGLE_STRIP);
    renderer.draw();
    EXPECT_PIXEL_NEAR(pixel(4, 4), kOrange, 1);
    EXPECT_PIXEL_NEAR(pixel(28, 60), kOrange, 1);
    EXPECT_EQ(pixel(50, 10), kBlack);
}

TEST_F(KNIRendererTest, ModelScalesRotatesClockwiseThenTranslates) {
    renderer.setOrthogonalCameraView(-32, 32, -32, 32, -1, 1);
    renderer.setDrawElementsWithOption(GL_TRIANGLE_STRIP);
    setQuad(renderer.mesh, 0, 0, 32, 16);
    renderer.setRotate(90, 0, 0, 1);
    renderer.draw();
    // (0..32, 0..16) turned clockwise: x 0..16, y -32..0, pixels x 32..48, y 0..32.
    EXPECT_PIXEL_NEAR(pixel(40, 10), kOrange, 1);
    EXPECT_EQ(pixel(40, 50), kBlack);
    EXPECT_EQ(pixel(10, 40), kBlack);

    clear();
    renderer.setScale(0.5f, 1, 1);  // scaled first: x 0..16 before turning
    renderer.draw();
    EXPECT_EQ(pixel(40, 8), kBlack);
    EXPECT_PIXEL_NEAR(pixel(40, 24), kOrange, 1);

    clear();
    renderer.setTranslate(-32, 0, 0);  // translated last
    renderer.draw();
    EXPECT_PIXEL_NEAR(pixel(8, 24), kOrange, 1);
    EXPECT_EQ(pixel(40, 24), kBlack);
}

TEST_F(KNIRendererTest, AGivenModelMatrixHoldsForOneDraw) {
    renderer.setDrawElementsWithOption(GL_TRIANGLE_STRIP);
    setQuad(renderer.mesh, 0, 0, 32, 64);
    float moved[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 32, 0, 0, 1};
    renderer.convertModelMatrix(moved);
    renderer.draw();
    EXPECT_EQ(pixel(10, 10), kBlack);
    EXPECT_PIXEL_NEAR(pixel(50, 10), kOrange, 1);

    clear();
    renderer.draw();  // rebuilt from translate, rotate and scale
    EXPECT_PIXEL_NEAR(pixel(10, 10), kOrange, 1);
    EXPECT_EQ(pixel(50, 10), kBlack);
}

TEST_F(KNIRendererTest, TextureUnitsCountFromZeroEveryDraw) {
    setQuad(renderer.mesh, 0, 0, 64, 64);
    renderer.setDrawElementsWithOption(GL_TRIANGLE_STRIP);
    renderer.textured = true;
    renderer.textureA = texture(255, 0, 0);
    renderer.textureB = texture(0, 255, 0);
    const GLuint program = renderer.program();
    for (int frame = 0; frame < 2; ++frame) {
        clear();
        GLCallCounter calls;
        renderer.draw();
        EXPECT_PIXEL_NEAR(pixel(32, 32), 0xFFFF00FFu, 1);
        GLint unitA = -1, unitB = -1, active = 0;
        glGetUniformiv(program, glGetUniformLocation(program, "uTexA"), &unitA);
        glGetUniformiv(program, glGetUniformLocation(program, "uTexB"), &unitB);
        glGetIntegerv(GL_ACTIVE_TEXTURE, &active);
        EXPECT_EQ(unitA, 0) << "frame " << frame;
        EXPECT_EQ(unitB, 1) << "frame " << frame;
        EXPECT_EQ(active, GL_TEXTURE1) << "frame " << frame;
        EXPECT_EQ(calls.count("glActiveTexture"), 2);
    }
    glDeleteTextures(1, &renderer.textureA);
    glDeleteTextures(1, &renderer.textureB);
}

TEST_F(KNIRendererTest, DrawSetsDepthAndBlendAndCleansUpItsAttributes) {
    setQuad(renderer.mesh, 0, 0, 64, 64);
    renderer.setDrawElementsWithOption(GL_TRIANGLE_STRIP);
    renderer.setColor(1, 0, 0, 0.5f);
    GLCallCounter calls;
    renderer.draw();
    // Source alpha over black: red 0.5, alpha 0.5 * 0.5.
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0x80000040u, 1);
    EXPECT_EQ(calls.count("glEnableVertexAttribArray"), 2);
    EXPECT_EQ(calls.count("glDisableVertexAttribArray"), 2);
    const GLuint program = renderer.program();
    GLint enabled = 1;
    glGetVertexAttribiv(glGetAttribLocation(program, "aPosition"), GL_VERTEX_ATTRIB_ARRAY_ENABLED,
                        &enabled);
    EXPECT_EQ(enabled, 0);
    EXPECT_TRUE(glIsEnabled(GL_BLEND));  // left on
    EXPECT_FALSE(glIsEnabled(GL_DEPTH_TEST));
    GLint source = 0;
    glGetIntegerv(GL_BLEND_SRC_ALPHA, &source);
    EXPECT_EQ(source, GL_SRC_ALPHA);

    renderer.setDepthTest(true);
    renderer.setBlendOption(GL_ONE, GL_ZERO, GL_ZERO, GL_ONE);
    clear();
    renderer.draw();
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0xFF000000u, 1);  // red as drawn, alpha kept from below
    glDisable(GL_DEPTH_TEST);
}

TEST_F(KNIRendererTest, AnInvisibleLayerMakesNoGLCall) {
    setQuad(renderer.mesh, 0, 0, 64, 64);
    renderer.setVisible(false);
    EXPECT_FALSE(renderer.getVisible());
    GLCallCounter calls;
    renderer.draw();
    EXPECT_EQ(calls.total(), 0);
    EXPECT_EQ(pixel(32, 32), kBlack);
}

TEST_F(KNIRendererTest, CustomDrawsHoldForOneDrawAndKeepTheirMode) {
    // Two triangles: the left one first, then the right one.
    renderer.mesh.vertex = {{0, 0, 0}, {20, 0, 0}, {0, 20, 0}, {44, 0, 0}, {64, 0, 0}, {64, 20, 0}};
    renderer.mesh.uv.assign(6, {0, 0, 0});
    renderer.mesh.index = {0, 1, 2};
    renderer.setCustomDrawArrays(3, GL_TRIANGLES);
    renderer.draw();
    EXPECT_PIXEL_NEAR(pixel(4, 4), kOrange, 1);
    EXPECT_EQ(pixel(60, 4), kBlack);

    clear();
    renderer.draw();  // the mesh: six vertices as arrays
    EXPECT_PIXEL_NEAR(pixel(4, 4), kOrange, 1);
    EXPECT_PIXEL_NEAR(pixel(60, 4), kOrange, 1);

    unsigned short right[] = {3, 4, 5};
    renderer.setCustomDrawElement(right, 3, GL_TRIANGLES);
    clear();
    renderer.draw();
    EXPECT_EQ(pixel(4, 4), kBlack);
    EXPECT_PIXEL_NEAR(pixel(60, 4), kOrange, 1);

    clear();
    renderer.draw();  // elements now: the mesh's own indices, the left triangle
    EXPECT_PIXEL_NEAR(pixel(4, 4), kOrange, 1);
    EXPECT_EQ(pixel(60, 4), kBlack);
}

TEST_F(KNIRendererTest, UniformSettersSendTheirValues) {
    setQuad(renderer.mesh, 0, 0, 64, 64);
    renderer.setDrawElementsWithOption(GL_TRIANGLE_STRIP);
    renderer.setColor(0, 0, 0, 1);
    float blue[2] = {0.5f, 1.0f};
    float extra[8] = {9, 9, 9, 9, 0, 0.25f, 0, 0};
    renderer.extra = [&](QuadRenderer& r) {
        r.setVec2UniformValue("uBlue", blue);
        r.setShaderUniformVector("uExtra", extra, 4, 2);
    };
    renderer.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0x004080FFu, 1);

    const GLuint program = renderer.program();
    float matrix[16];
    glGetUniformfv(program, glGetUniformLocation(program, "uMVPMatrix"), matrix);
    EXPECT_EQ(std::memcmp(matrix, renderer.getMVPMatrix().data(), sizeof matrix), 0);

    // One to four components; anything else is logged and sends nothing.
    glUseProgram(program);
    float values[4] = {0.1f, 0.2f, 0.3f, 0.4f};
    renderer.setShaderUniformVector("uTextureMix", values, 1, 1);
    float read[4] = {};
    glGetUniformfv(program, glGetUniformLocation(program, "uTextureMix"), read);
    EXPECT_FLOAT_EQ(read[0], 0.1f);
    renderer.setShaderUniformVector("uBlue", values + 2, 2, 1);
    glGetUniformfv(program, glGetUniformLocation(program, "uBlue"), read);
    EXPECT_FLOAT_EQ(read[1], 0.4f);
    LogCapture log;
    renderer.setShaderUniformVector("uBlue", values, 5, 1);
    renderer.setShaderUniformVector("uBlue", nullptr, 2, 1);
    EXPECT_EQ(log.messages().size(), 2u);
    glGetUniformfv(program, glGetUniformLocation(program, "uBlue"), read);
    EXPECT_FLOAT_EQ(read[0], 0.3f);
}

TEST_F(KNIRendererTest, WithoutAProgramOrMeshArraysSettersDoNothing) {
    KNIRenderer bare;
    KNMesh mesh;
    bare.initialize(kWidth, kHeight);
    bare.setMesh(&mesh);
    EXPECT_EQ(bare.getMesh(), &mesh);
    setQuad(mesh, 0, 0, 64, 64);
    LogCapture log;
    GLCallCounter calls;
    bare.setShaderArrayMeshVertex("aPosition");
    bare.setShaderUniformMVPMatrix("uMVPMatrix");
    bare.setShaderUnifromTexture("uTexA", 1);
    bare.draw();
    EXPECT_TRUE(log.messages().empty());
    EXPECT_EQ(calls.count("glVertexAttribPointer"), 0);
    EXPECT_EQ(calls.count("glActiveTexture"), 0);
    EXPECT_EQ(calls.count("glUseProgram"), 1);

    // Empty arrays are skipped silently; the draw then reads no vertex.
    GLCallCounter emptyCalls;
    renderer.mesh.reset();
    renderer.extra = [](QuadRenderer& r) {
        r.setShaderArrayMeshColor("aColor");
        r.setShaderArrayMeshNormal("aNormal");
        r.setShaderArrayMeshCustom("aCustom");
    };
    renderer.draw();
    EXPECT_EQ(emptyCalls.count("glVertexAttribPointer"), 0);
    EXPECT_EQ(emptyCalls.count("glDrawArrays"), 1);
    EXPECT_TRUE(log.messages().empty());
}

TEST_F(KNIRendererTest, BadInputIsLoggedOnceAndDropped) {
    setQuad(renderer.mesh, 0, 0, 64, 64);
    LogCapture log;
    renderer.extra = [](QuadRenderer& r) {
        r.setShaderArrayMeshVertex(nullptr);
        r.setShaderArrayMeshUV(nullptr);
        r.setShaderArrayVector("aTexUV", nullptr, 2);
        r.setShaderUniformMVPMatrix(nullptr);
        r.setShaderUnifromTexture(nullptr, 1);
        r.setShaderUniformValue(nullptr, 1);
        r.setVec2UniformValue("uBlue", nullptr);
        r.setShaderUnformColor(nullptr);
    };
    renderer.draw();
    EXPECT_EQ(log.messages().size(), 8u);

    renderer.extra = nullptr;
    renderer.convertModelMatrix(nullptr);
    renderer.setCustomDrawElement(nullptr, 3, GL_TRIANGLES);
    renderer.createShaderProgram(nullptr, "");
    EXPECT_EQ(log.messages().size(), 11u);
    EXPECT_NE(renderer.program(), 0u);

    // Draws that would read past the bound arrays are skipped.
    GLCallCounter calls;
    renderer.mesh.index = {0, 1, 2, 7};
    renderer.setDrawElementsWithOption(GL_TRIANGLE_STRIP);
    renderer.draw();
    renderer.setCustomDrawArrays(6, GL_TRIANGLES);
    renderer.draw();
    EXPECT_EQ(calls.count("glDrawElements") + calls.count("glDrawArrays"), 0);
    EXPECT_EQ(log.messages().size(), 13u);
    EXPECT_EQ(pixel(32, 32), kBlack);

    KNIRenderer meshless;
    meshless.initialize(kWidth, kHeight);
    meshless.draw();
    EXPECT_EQ(log.messages().size(), 14u);
}

TEST_F(KNIRendererTest, ALostContextIsForgottenAndRebuilt) {
    loseContext();
    renderer.contextChanged();
    EXPECT_EQ(renderer.program(), 0u);
    renderer.initialize(kWidth, kHeight);
    ASSERT_NE(renderer.program(), 0u);
    setQuad(renderer.mesh, 0, 0, 64, 64);
    renderer.setColor(1, 0.5f, 0, 1);
    renderer.setDrawElementsWithOption(GL_TRIANGLE_STRIP);
    renderer.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 32), kOrange, 1);
}

// ---- without GL -----------------------------------------------------------------------------

// initialize starts the transform and the colour afresh and takes a 720 x 1280 screen,
// whatever was set before; visibility is left as it was.
TEST(KNIRendererState, InitializeStartsAfresh) {
    KNIRenderer renderer;
    renderer.setVisible(false);
    renderer.setColor(0, 0, 0, 0);
    renderer.setScale(3, 3, 3);
    renderer.setTranslate(1, 2, 3);
    renderer.setRotate(4, 5, 6, 7);
    renderer.setScreenSize(1, 2);
    renderer.initialize(100, 200);
    EXPECT_FALSE(renderer.getVisible());
    EXPECT_EQ(renderer.getScreenSize()[0], 720.0f);
    EXPECT_EQ(renderer.getScreenSize()[1], 1280.0f);
    EXPECT_EQ(renderer.getRenderSize()[1], 200.0f);
    EXPECT_EQ(renderer.getColor()[0], 1.0f);
    EXPECT_EQ(renderer.getRotate()[0], 0.0f);
    EXPECT_EQ(renderer.getScale()[2], 1.0f);
    EXPECT_EQ(renderer.getPosition()[1], 0.0f);
}

TEST(KNIRendererState, CameraMovesAlongItsAxes) {
    KNIRenderer renderer;
    renderer.setLookAt(0, 0, 1, 0, 0, 0, 0, 1, 0);
    const Kinetra::KNMVPManager& mvp = *renderer.getMVPManager();
    auto expectCamera = [&](float ex, float ey, float ez, float cx, float cy, float cz) {
        EXPECT_NEAR(mvp.getCameraPosition().x, ex, 1e-6);
        EXPECT_NEAR(mvp.getCameraPosition().y, ey, 1e-6);
        EXPECT_NEAR(mvp.getCameraPosition().z, ez, 1e-6);
        EXPECT_NEAR(mvp.getCameraCentre().x, cx, 1e-6);
        EXPECT_NEAR(mvp.getCameraCentre().y, cy, 1e-6);
        EXPECT_NEAR(mvp.getCameraCentre().z, cz, 1e-6);
    };
    renderer.MoveCameraX(2);
    expectCamera(2, 0, 1, 2, 0, 0);
    renderer.MoveCameraY(2);
    expectCamera(2, 2, 1, 2, 2, 0);
    renderer.MoveCameraZ(0.5f);
    expectCamera(2, 2, 0.5f, 2, 2, 0);
    const Kinetra::KNMVPManager::Matrix view = renderer.getViewMatrix();
    renderer.MoveCameraX(0);
    renderer.MoveCameraY(0);
    renderer.MoveCameraZ(0);
    expectCamera(2, 2, 0.5f, 2, 2, 0);
    EXPECT_EQ(std::memcmp(view.data(), renderer.getViewMatrix().data(), sizeof view.m), 0);
    EXPECT_NEAR(renderer.getViewMatrix()[3][2], -0.5f, 1e-6);

    // The eye on the centre moves along +X.
    renderer.setLookAt(1, 1, 1, 1, 1, 1, 0, 1, 0);
    renderer.MoveCameraZ(3);
    expectCamera(4, 1, 1, 1, 1, 1);
}

}  // namespace
