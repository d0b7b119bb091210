#pragma once

#include <GLES2/gl2.h>

namespace qam::test {

// A program that draws a texture over the whole viewport: texel (u, v) lands at the same
// fraction of the viewport, v = 0 at the bottom row.
class TextureQuad {
  public:
    TextureQuad();
    ~TextureQuad();
    TextureQuad(const TextureQuad&) = delete;
    TextureQuad& operator=(const TextureQuad&) = delete;

    // Uses the program; bind the texture to sampler() before draw().
    void use() const;
    GLint sampler() const { return mSampler; }
    void draw() const;

  private:
    GLuint mProgram;
    GLint mSampler;
    GLint mPosition;
};

}  // namespace qam::test
