#pragma once

// The whole screen in one colour, drawn with the render core as an effect library draws: the
// part of the test effects that shows. Made once the effect is current, so that the program is
// listed in it.
#include <GLES2/gl2.h>

#include "Common/Renderer/Base/Renderer.h"
#include "Common/Renderer/Base/ShaderProgram.h"

class FlatColour {
  public:
    FlatColour() {
        mProgram = vi::ShaderProgram::addProgram(new vi::ShaderProgram(
            "attribute vec2 aPosition; void main() { gl_Position = vec4(aPosition, 0.0, 1.0); }",
            "precision mediump float; uniform vec4 uColor; void main() { gl_FragColor = uColor; }",
            0));
        mDrawable.mMode = GL_TRIANGLE_STRIP;
        mDrawable.mDimension = 2;
        mDrawable.mPositions2 = {{-1, -1}, {1, -1}, {-1, 1}, {1, 1}};
        mRenderer = new vi::Renderer(*mProgram, mDrawable);
        mRenderer->addAttribute("aPosition", mDrawable.mPositions2.data(), 2, true);
        mRenderer->addUniform("uColor", &mColor, vi::Uniform::kVec4, 1);
    }
    ~FlatColour() {
        delete mRenderer;
        mProgram->destroy();
    }
    FlatColour(const FlatColour&) = delete;
    FlatColour& operator=(const FlatColour&) = delete;

    void draw() { mRenderer->draw(); }

    glm::vec4 mColor{0.0f, 0.0f, 0.0f, 1.0f};  // red, green, blue, alpha

  private:
    vi::ShaderProgram* mProgram;
    vi::Drawable mDrawable;
    vi::Renderer* mRenderer;
};
