#pragma once

// The one fixture and the helpers of the Kinetra/Core tests.

#include <GLES2/gl2.h>

#include <functional>
#include <string>
#include <vector>

#include "Kinetra/Core/KNShaderManager.h"
#include "Kinetra/Core/KNTextureManager.h"
#include "tests/support/GLCallCounter.h"
#include "tests/support/GLTest.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TextureQuad.h"

using qam::test::GLCallCounter;
using qam::test::LogCapture;
using Floats = std::vector<float>;

constexpr uint32_t kBlack = 0x00000000u, kRed = 0xFF0000FFu, kGreen = 0x00FF00FFu,
                   kBlue = 0x0000FFFFu, kWhite = 0xFFFFFFFFu, kOrange = 0xFF8000FFu;

// RGBA bytes of 0xRRGGBBAA pixels, in the order given (bottom row first).
inline std::vector<unsigned char> rgba(std::initializer_list<uint32_t> pixels) {
    std::vector<unsigned char> bytes;
    for (uint32_t p : pixels) {
        bytes.insert(bytes.end(),
                     {static_cast<unsigned char>(p >> 24), static_cast<unsigned char>(p >> 16),
                      static_cast<unsigned char>(p >> 8), static_cast<unsigned char>(p)});
    }
    return bytes;
}

inline unsigned upload(const char* name, std::vector<unsigned char> pixels, int width, int height) {
    return Kinetra::KNTextureManager::getInstancePtr()->setTexture(name, pixels.data(), width,
                                                                   height);
}

// The u and v of the first four texture coordinates, in turn.
inline Floats flatUV(const std::vector<Kinetra::KNVector3D<float>>& uv) {
    Floats out;
    for (size_t i = 0; i < 4 && i < uv.size(); ++i) {
        out.insert(out.end(), {uv[i].x, uv[i].y});
    }
    return out;
}

inline void expectFloats(const Floats& actual, const Floats& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < actual.size(); ++i) {
        EXPECT_FLOAT_EQ(actual[i], expected[i]) << "at " << i;
    }
}

// Quads in clip space at the depth uDepth, in uColor.
constexpr const char* kQuadVertex =
    "attribute vec2 aPosition;\nuniform float uDepth;\n"
    "void main() { gl_Position = vec4(aPosition, uDepth, 1.0); }\n";
constexpr const char* kSolid =
    "precision mediump float;\nuniform vec4 uColor;\nvoid main() { gl_FragColor = uColor; }\n";

class CoreTest : public qam::test::GLTest {
  protected:
    void SetUp() override {
        GLTest::SetUp();
        while (glGetError() != GL_NO_ERROR) {  // e.g. a stale program name deleted again
        }
        glDisable(GL_BLEND);  // renderers leave it on, and another texture unit active
        glActiveTexture(GL_TEXTURE0);
    }
    // The texture manager is one per process: each test starts without it.
    void TearDown() override { Kinetra::KNTextureManager::ReleaseInstance(); }

    static GLint get(GLenum what) {
        GLint value = -1;
        glGetIntegerv(what, &value);
        return value;
    }
    static GLint texParameter(GLenum name) {
        GLint value = 0;
        glGetTexParameteriv(GL_TEXTURE_2D, name, &value);
        return value;
    }
    static std::vector<GLint> viewport() {
        std::vector<GLint> v(4);
        glGetIntegerv(GL_VIEWPORT, v.data());
        return v;
    }
    // Paints `colour` over x in [left, right] of clip space at `depth` with `fragment`, whose
    // sampler uTexture reads unit 0.
    static void paint(uint32_t colour, float left = -1, float right = 1, float depth = 0,
                      const char* fragment = kSolid) {
        Kinetra::KNShaderManager shader;
        shader.createProgram(kQuadVertex, fragment);
        glUseProgram(shader.getProgram());
        glUniform4f(shader.getUniformLoc("uColor"), (colour >> 24) / 255.0f,
                    (colour >> 16 & 0xFF) / 255.0f, (colour >> 8 & 0xFF) / 255.0f,
                    (colour & 0xFF) / 255.0f);
        glUniform1f(shader.getUniformLoc("uDepth"), depth);
        const float corners[] = {left, -1, right, -1, left, 1, right, 1};
        const auto position = static_cast<GLuint>(shader.getAttributeLoc("aPosition"));
        glBindBuffer(GL_ARRAY_BUFFER, 0);
        glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, 0, corners);
        glEnableVertexAttribArray(position);
        glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
        glDisableVertexAttribArray(position);
        glUseProgram(0);
    }
    // Draws `texture` over the viewport: texel v = 0 at the bottom row.
    static void show(GLuint texture) {
        qam::test::TextureQuad quad;
        quad.use();
        glBindTexture(GL_TEXTURE_2D, texture);  // on unit 0, the sampler's default
        quad.draw();
    }
};
