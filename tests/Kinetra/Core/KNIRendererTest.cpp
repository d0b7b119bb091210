#include "Kinetra/Core/KNIRenderer.h"

#include "Kinetra/Core/KNMesh.h"
#include "tests/Kinetra/Core/CoreTestSupport.h"

namespace {

using Kinetra::KNIRenderer;
using Kinetra::KNMesh;

const char* const kVertex = R"(uniform mat4 uMVPMatrix;
attribute vec4 aPosition; attribute vec2 aTexUV; varying vec2 vTexUV;
void main() { vTexUV = aTexUV; gl_Position = uMVPMatrix * aPosition; })";
// uTextureMix 0: the renderer colour; 1: red from uTexA, green from uTexB. Blue gains
// uBlue.x * uBlue.y, the colour gains uExtra[1]; both are 0 unless a test sets them.
const char* const kFragment = R"(precision mediump float;
uniform vec4 uColor; uniform sampler2D uTexA; uniform sampler2D uTexB; uniform float uTextureMix;
uniform vec2 uBlue; uniform vec4 uExtra[2]; varying vec2 vTexUV;
void main() {
    vec4 textured = vec4(texture2D(uTexA, vTexUV).r, texture2D(uTexB, vTexUV).g, 0.0, 1.0);
    gl_FragColor = mix(uColor, textured, uTextureMix) + vec4(0, 0, uBlue.x * uBlue.y, 0) + uExtra[1];
})";

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
    unsigned int textures[2] = {0, 0};         // none: the renderer colour
    std::function<void(QuadRenderer&)> extra;  // more setter calls in drawRender

    void initRender(float width, float height) override {
        createShaderProgram(kVertex, kFragment);
        setOrthogonalCameraView(0, width, 0, height, -1, 1);
        setMesh(&mesh);
    }
    void drawRender() override {
        setShaderArrayMeshVertex("aPosition");
        setShaderArrayMeshUV("aTexUV");
        setShaderUniformMVPMatrix("uMVPMatrix");
        setShaderUnformColor("uColor");
        if (textures[0] != 0) {
            setShaderUnifromTexture("uTexA", textures[0]);
            setShaderUnifromTexture("uTexB", textures[1]);
        }
        setShaderUniformValue("uTextureMix", textures[0] != 0 ? 1.0f : 0.0f);
        if (extra) {
            extra(*this);
        }
    }
    GLuint program() { return getShaderManager()->getProgram(); }
    float uniform(const char* name, int index = 0) {  // samplers read as floats too
        float values[16] = {};
        glGetUniformfv(program(), glGetUniformLocation(program(), name), values);
        return values[index];
    }
};

class KNIRendererTest : public CoreTest {
  protected:
    void SetUp() override {
        CoreTest::SetUp();
        renderer.initialize(kWidth, kHeight);
        ASSERT_NE(renderer.program(), 0u);
        renderer.setColor(1.0f, 0.5f, 0.0f, 1.0f);
    }
    void fullStrip() {
        setQuad(renderer.mesh, 0, 0, 64, 64);
        renderer.setDrawElementsWithOption(GL_TRIANGLE_STRIP);
    }
    // Clears, draws and tells whether each of the pixels shows the renderer's orange.
    std::vector<bool> orangeAt(std::initializer_list<std::pair<int, int>> pixels) {
        glClear(GL_COLOR_BUFFER_BIT);
        renderer.draw();
        std::vector<bool> shown;
        for (auto [x, y] : pixels) {
            EXPECT_TRUE(pixel(x, y) == kBlack || qam::test::pixelNear(pixel(x, y), kOrange, 1));
            shown.push_back(pixel(x, y) != kBlack);
        }
        return shown;
    }
    QuadRenderer renderer;
};

using Shown = std::vector<bool>;

TEST_F(KNIRendererTest, ModelScalesRotatesClockwiseThenTranslatesUnlessGivenForOneDraw) {
    renderer.setOrthogonalCameraView(-32, 32, -32, 32, -1, 1);
    renderer.setDrawElementsWithOption(GL_TRIANGLE_STRIP);
    setQuad(renderer.mesh, 0, 0, 32, 16);
    renderer.setRotate(90, 0, 0, 1);
    // (0..32, 0..16) turned clockwise: x 0..16, y -32..0, pixels x 32..48, y 0..32.
    EXPECT_EQ(orangeAt({{40, 10}, {40, 50}, {10, 40}}), (Shown{true, false, false}));
    renderer.setScale(0.5f, 1, 1);  // scaled first: x 0..16 before turning
    EXPECT_EQ(orangeAt({{40, 8}, {40, 24}}), (Shown{false, true}));
    renderer.setTranslate(-32, 0, 0);  // translated last
    EXPECT_EQ(orangeAt({{8, 24}, {40, 24}}), (Shown{true, false}));

    float moved[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 16, 0, 0, 1};
    renderer.convertModelMatrix(moved);
    EXPECT_EQ(orangeAt({{56, 40}, {8, 24}}), (Shown{true, false}));
    EXPECT_EQ(orangeAt({{56, 40}, {8, 24}}), (Shown{false, true}));  // rebuilt afterwards
}

TEST_F(KNIRendererTest, TextureUnitsCountFromZeroEveryDraw) {
    fullStrip();
    renderer.textures[0] = upload("a", rgba({kRed}), 1, 1);
    renderer.textures[1] = upload("b", rgba({kGreen}), 1, 1);
    for (int frame = 0; frame < 2; ++frame) {
        SCOPED_TRACE(frame);
        renderer.draw();
        EXPECT_PIXEL_NEAR(pixel(32, 32), 0xFFFF00FFu, 1);
        EXPECT_EQ(std::pair(renderer.uniform("uTexA"), renderer.uniform("uTexB")),
                  std::pair(0.0f, 1.0f));
    }
}

TEST_F(KNIRendererTest, DrawSetsDepthAndBlendAndCleansUpItsAttributes) {
    fullStrip();
    glEnable(GL_DEPTH_TEST);
    renderer.setColor(1, 0, 0, 0.5f);
    GLCallCounter calls;
    renderer.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0x80000040u, 1);  // source alpha over black, alpha too
    EXPECT_EQ(calls.count("glDisableVertexAttribArray"), 2);
    EXPECT_EQ(std::pair(glIsEnabled(GL_BLEND), glIsEnabled(GL_DEPTH_TEST)),  // blending left on
              std::pair(GLboolean{GL_TRUE}, GLboolean{GL_FALSE}));

    renderer.setDepthTest(true);
    renderer.setBlendOption(GL_ONE, GL_ZERO, GL_ZERO, GL_ONE);
    glClear(GL_COLOR_BUFFER_BIT);
    renderer.draw();
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0xFF000000u, 1);  // red as drawn, alpha kept from below
    glDisable(GL_DEPTH_TEST);
    renderer.setVisible(false);  // an invisible layer makes no GL call
    GLCallCounter hidden;
    renderer.draw();
    EXPECT_EQ(hidden.total(), 0);
}

TEST_F(KNIRendererTest, DrawsTrianglesUntilToldAndCustomDrawsHoldForOneDraw) {
    setQuad(renderer.mesh, 0, 0, 32, 64);
    // Arrays, GL_TRIANGLES: the first three vertices, the lower-left half.
    EXPECT_EQ(orangeAt({{4, 4}, {28, 60}, {50, 10}}), (Shown{true, false, false}));
    renderer.setDrawElementsWithOption(GL_TRIANGLE_STRIP);
    EXPECT_EQ(orangeAt({{4, 4}, {28, 60}, {50, 10}}), (Shown{true, true, false}));
    // Two triangles, the left one first; custom draws keep their mode afterwards.
    renderer.mesh.vertex = {{0, 0, 0}, {20, 0, 0}, {0, 20, 0}, {44, 0, 0}, {64, 0, 0}, {64, 20, 0}};
    renderer.mesh.uv.assign(6, {0, 0, 0});
    renderer.mesh.index = {0, 1, 2};
    renderer.setCustomDrawArrays(3, GL_TRIANGLES);
    EXPECT_EQ(orangeAt({{4, 4}, {60, 4}}), (Shown{true, false}));
    EXPECT_EQ(orangeAt({{4, 4}, {60, 4}}), (Shown{true, true}));  // the mesh: six vertices
    unsigned short right[] = {3, 4, 5};
    renderer.setCustomDrawElement(right, 3, GL_TRIANGLES);
    EXPECT_EQ(orangeAt({{4, 4}, {60, 4}}), (Shown{false, true}));
    EXPECT_EQ(orangeAt({{4, 4}, {60, 4}}), (Shown{true, false}));  // the mesh's own indices
}

// With buffers bound, index and attribute pointers are offsets into them, null being 0.
TEST_F(KNIRendererTest, CustomIndicesAndArrayVectorsReadBoundBuffersFromTheirOffsets) {
    renderer.mesh.vertex = {{0, 0, 0}, {20, 0, 0}, {0, 20, 0}, {44, 0, 0}, {64, 0, 0}, {64, 20, 0}};
    renderer.mesh.uv.assign(6, {0, 0, 0});
    const unsigned short indices[] = {0, 1, 2, 3, 4, 5};
    const float raised[] = {0, 40, 0, 20, 40, 0, 0, 60, 0};  // the left triangle, 40 higher
    GLuint buffers[2] = {0, 0};
    glGenBuffers(2, buffers);
    glBindBuffer(GL_ARRAY_BUFFER, buffers[1]);
    glBufferData(GL_ARRAY_BUFFER, sizeof raised, raised, GL_STATIC_DRAW);
    glBindBuffer(GL_ARRAY_BUFFER, 0);  // the mesh arrays come from client memory
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, buffers[0]);
    glBufferData(GL_ELEMENT_ARRAY_BUFFER, sizeof indices, indices, GL_STATIC_DRAW);
    auto* const second = reinterpret_cast<unsigned short*>(3 * sizeof(unsigned short));
    renderer.setCustomDrawElement(second, 3, GL_TRIANGLES);
    EXPECT_EQ(orangeAt({{4, 4}, {60, 4}}), (Shown{false, true}));
    renderer.extra = [&](QuadRenderer& r) {  // positions from the array buffer instead
        glBindBuffer(GL_ARRAY_BUFFER, buffers[1]);
        r.setShaderArrayVector("aPosition", nullptr, 3);
        glBindBuffer(GL_ARRAY_BUFFER, 0);
    };
    renderer.setCustomDrawElement(nullptr, 3, GL_TRIANGLES);
    EXPECT_EQ(orangeAt({{4, 4}, {4, 44}}), (Shown{false, true}));
    glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
    glDeleteBuffers(2, buffers);
}

TEST_F(KNIRendererTest, UniformSettersSendTheirValues) {
    fullStrip();
    renderer.setColor(0, 0, 0, 1);
    float blue[2] = {0.5f, 1.0f};
    float extra[8] = {9, 9, 9, 9, 0, 0.25f, 0, 0};
    renderer.extra = [&](QuadRenderer& r) {
        r.setVec2UniformValue("uBlue", blue);
        r.setShaderUniformVector("uExtra", extra, 4, 2);
    };
    renderer.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 32), 0x004080FFu, 1);
    // One and two components, outside a draw.
    glUseProgram(renderer.program());
    float values[4] = {0.1f, 0.2f, 0.3f, 0.4f};
    renderer.setShaderUniformVector("uTextureMix", values, 1, 1);
    renderer.setShaderUniformVector("uBlue", values + 2, 2, 1);
    expectFloats({renderer.uniform("uTextureMix"), renderer.uniform("uBlue", 0),
                  renderer.uniform("uBlue", 1)},
                 {0.1f, 0.3f, 0.4f});
}

TEST_F(KNIRendererTest, BadInputAndMissingPiecesAreSkippedAndLoggedOncePerCause) {
    setQuad(renderer.mesh, 0, 0, 64, 64);
    KNIRenderer bare;  // no program: setters do nothing, silently, whatever the name
    LogCapture log;
    GLCallCounter calls;
    bare.setShaderArrayMeshVertex(nullptr);
    bare.setShaderUnifromTexture("uTexA", 1);
    EXPECT_EQ(calls.total(), 0);
    renderer.extra = [](QuadRenderer& r) {
        r.setShaderArrayMeshColor("aColor");  // empty arrays are skipped silently
        r.setShaderArrayMeshVertex(nullptr);  // names and vectors GL would read are checked
        r.setVec2UniformValue("uBlue", nullptr);
        r.setShaderUniformMVPMatrix(nullptr);
        r.setShaderUnifromTexture(nullptr, 1);
    };
    renderer.draw();
    renderer.draw();                                     // not every frame
    EXPECT_EQ(calls.count("glVertexAttribPointer"), 4);  // position and UV of the renderer
    EXPECT_EQ(log.messages().size(), 2u);                // a null name, a null vector
    renderer.extra = nullptr;
    renderer.convertModelMatrix(nullptr);
    renderer.createShaderProgram(nullptr, "");
    EXPECT_EQ(log.messages().size(), 4u);
    EXPECT_NE(renderer.program(), 0u);

    // Draws that would read past the shortest bound array (4 UVs for 5 positions) are
    // skipped, as is one without a mesh.
    GLCallCounter draws;
    renderer.mesh.vertex.push_back({0, 0, 0});
    renderer.mesh.index = {0, 1, 2, 4};
    renderer.setDrawElementsWithOption(GL_TRIANGLE_STRIP);
    renderer.draw();
    renderer.setCustomDrawArrays(5, GL_TRIANGLES);
    renderer.draw();
    KNIRenderer meshless;
    meshless.initialize(kWidth, kHeight);
    meshless.draw();
    EXPECT_EQ(std::pair(draws.count("glDrawElements"), draws.count("glDrawArrays")),
              std::pair(0, 0));
    EXPECT_EQ(log.messages().size(), 6u);
}

TEST_F(KNIRendererTest, ALostContextIsForgottenAndRebuiltAfresh) {
    renderer.setTranslate(100, 0, 0);
    renderer.setScale(0, 0, 0);
    renderer.setBlendOption(GL_ZERO, GL_ZERO);
    loseContext();
    renderer.contextChanged();
    EXPECT_EQ(renderer.program(), 0u);
    // Starts afresh: white, no transform, blending by source alpha.
    renderer.initialize(kWidth, kHeight);
    fullStrip();
    renderer.draw();
    EXPECT_PIXEL_NEAR(pixel(32, 32), kWhite, 1);
}

TEST(KNIRendererCamera, MovesAlongItsAxes) {
    KNIRenderer renderer;
    renderer.setLookAt(0, 0, 1, 0, 0, 0, 0, 1, 0);
    const Kinetra::KNMVPManager& mvp = *renderer.getMVPManager();
    auto expectCamera = [&](Floats expected) {  // the eye, then the centre
        const auto eye = mvp.getCameraPosition(), centre = mvp.getCameraCentre();
        expectFloats({eye.x, eye.y, eye.z, centre.x, centre.y, centre.z}, expected);
    };
    renderer.MoveCameraX(2);
    expectCamera({2, 0, 1, 2, 0, 0});
    renderer.MoveCameraY(2);
    expectCamera({2, 2, 1, 2, 2, 0});
    renderer.MoveCameraZ(0.5f);
    expectCamera({2, 2, 0.5f, 2, 2, 0});
}

// reset() empties a mesh for rebuilding, all but auxA, auxB and custom.
TEST(KNMesh, ResetEmptiesAllButAuxAAuxBAndCustom) {
    Kinetra::KNMesh mesh;
    mesh.vertex = mesh.normal = mesh.height = mesh.tangent = mesh.auxA = mesh.uv = mesh.auxC =
        mesh.auxD = mesh.auxE = {{1, 2, 3}};
    mesh.aux2D = {{1, 2}};
    mesh.color.assign(1, {1, 1, 1, 1});
    mesh.index = {0};
    mesh.auxB = mesh.custom = {1.0f};
    mesh.reset();
    EXPECT_EQ((std::vector<size_t>{mesh.vertex.size(), mesh.aux2D.size(), mesh.normal.size(),
                                   mesh.height.size(), mesh.tangent.size(), mesh.uv.size(),
                                   mesh.color.size(), mesh.index.size(), mesh.auxC.size(),
                                   mesh.auxD.size(), mesh.auxE.size(), mesh.auxA.size(),
                                   mesh.auxB.size(), mesh.custom.size()}),
              (std::vector<size_t>{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1}));
}

}  // namespace
