// A flat-colour effect: parameters 0 to 3 set red, green, blue and alpha, a touch swaps
// red and blue. Uses the render core and calls GL itself, as real effects do.
#include <GLES2/gl2.h>

#include <utility>

#include "Common/Effect/AnimationManager.h"
#include "Common/Effect/Effect.h"
#include "Common/Renderer/Base/Renderer.h"
#include "Common/Renderer/Base/ShaderProgram.h"

namespace {

const char* const kVertex =
    "attribute vec2 aPosition;\n"
    "void main() { gl_Position = vec4(aPosition, 0.0, 1.0); }\n";
const char* const kFragment =
    "precision mediump float;\n"
    "uniform vec4 uColor;\n"
    "void main() { gl_FragColor = uColor; }\n";

// The manager is built before the Effect base that keeps a pointer to it.
struct Animations {
    vi::AnimationManager<Animations> mAnimations;
};

class OutsideEffect : private Animations, public vi::Effect {
  public:
    OutsideEffect() : Effect(&mAnimations) {
        makeCurrent();
        mResourceNames = {"bg"};
        mProgram = vi::ShaderProgram::addProgram(new vi::ShaderProgram(kVertex, kFragment, 0));
        mDrawable.mMode = GL_TRIANGLE_STRIP;
        mDrawable.mDimension = 2;
        mDrawable.mPositions2 = {{-1, -1}, {1, -1}, {-1, 1}, {1, 1}};
        mRenderer = new vi::Renderer(*mProgram, mDrawable);
        mRenderer->addAttribute("aPosition", mDrawable.mPositions2.data(), 2, true);
        mRenderer->addUniform("uColor", &mColor, vi::Uniform::kVec4, 1);
    }
    ~OutsideEffect() override {
        delete mRenderer;
        mProgram->destroy();
    }

    void initPortrait() override {}
    void initLandscape() override {}
    void setParameter(int key, float value) override {
        if (key >= 0 && key < 4) {
            mColor[key] = value;
        }
    }
    void onTouchDown(const glm::vec2&) override { std::swap(mColor.r, mColor.b); }
    bool draw() override {
        glClearColor(0, 0, 0, 1);
        glClear(GL_COLOR_BUFFER_BIT);
        mRenderer->draw();
        return false;
    }

  private:
    vi::ShaderProgram* mProgram;
    vi::Drawable mDrawable;
    vi::Renderer* mRenderer;
    glm::vec4 mColor{0.0f, 0.0f, 0.0f, 1.0f};
};

}  // namespace

extern "C" __attribute__((visibility("default"))) vi::Effect* createScene() {
    return new OutsideEffect();
}
