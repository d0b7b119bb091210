// Renders one frame through the library's shader program and texture classes into a PNG:
// proof that the library, Mesa's headless EGL and the PNG output work on this machine.
#include <GLES2/gl2.h>

#include <cstdio>
#include <vector>

#include "Common/Platform/HeadlessContext.h"
#include "Common/Renderer/Base/ShaderProgram.h"
#include "Common/Renderer/Base/Texture.h"
#include "embedded/examples/smoke/Glow.frag.h"
#include "embedded/examples/smoke/Glow.vert.h"
#include "examples/common/Png.h"

int main(int argc, char** argv) {
    const char* out = argc > 1 ? argv[1] : "smoke.png";
    constexpr int kSize = 512;
    qam::HeadlessContext context(kSize, kSize);

    // A diagonal blue-to-violet gradient, 64 x 64 texels.
    constexpr unsigned kTexels = 64;
    std::vector<unsigned char> gradient(kTexels * kTexels * 4);
    for (unsigned y = 0; y < kTexels; ++y) {
        for (unsigned x = 0; x < kTexels; ++x) {
            unsigned char* texel = &gradient[(y * kTexels + x) * 4];
            texel[0] = static_cast<unsigned char>(40 + x * 2);
            texel[1] = static_cast<unsigned char>(20 + y);
            texel[2] = static_cast<unsigned char>(120 + y * 2);
            texel[3] = 255;
        }
    }
    vi::Texture texture(gradient.data(), kTexels, kTexels, true, false, false, true, false, 4,
                        false);
    texture.allocate();
    vi::ShaderProgram* program = vi::ShaderProgram::addProgram(
        new vi::ShaderProgram(qam::embedded::Glow_vert, qam::embedded::Glow_frag, 0));

    static const float kQuad[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    glUseProgram(program->mProgram);
    texture.bind(glGetUniformLocation(program->mProgram, "uGradient"), 0);
    const GLint position = glGetAttribLocation(program->mProgram, "aPosition");
    glEnableVertexAttribArray(position);
    glVertexAttribPointer(position, 2, GL_FLOAT, GL_FALSE, 0, kQuad);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    glDisableVertexAttribArray(position);

    const bool written = qam::writePng(out, qam::readFramebuffer(kSize, kSize));
    program->destroy();
    if (!written) {
        return 1;
    }
    printf("%s\n", out);
    return 0;
}
