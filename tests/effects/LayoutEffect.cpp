// A test effect that leans on the binary contract the way effect libraries built elsewhere do:
// its animation class is its own, lined up with the manager's calls by vtable slot only, and
// its vi::Renderer and KNIRenderer subclasses add fields right after the library's data (into
// the KNIRenderer's tail padding on 64-bit). The left half of the screen is the renderer's
// colour, the right half the layer's; layoutEffectReport() tells what the animation saw and
// whether the added fields kept their values.
#include <GLES2/gl2.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "Common/Effect/AnimationManager.h"
#include "Common/Effect/Effect.h"
#include "Common/Renderer/Base/Renderer.h"
#include "Common/Renderer/Base/ShaderProgram.h"
#include "Kinetra/Core/KNIRenderer.h"
#include "Kinetra/Core/KNMesh.h"

namespace {

constexpr uint32_t kTag = 0x7A6C1E55;
const char* const kVertex = "attribute vec4 aPosition; void main() { gl_Position = aPosition; }";
const char* const kFragment =
    "precision mediump float; uniform vec4 uColor; void main() { gl_FragColor = uColor; }";

int gUpdates = 0;
int gStops = 0;
bool gTagsKept = true;
std::string gReport;

// Not a vi::IAnimation: three leading slots (the destructor's two and start), then the three
// the manager calls. It runs for three frames.
class FrameCountdown {
  public:
    virtual ~FrameCountdown() = default;
    virtual void start(float) { mFramesLeft = 3; }
    virtual void update(float) {
        ++gUpdates;
        --mFramesLeft;
    }
    virtual bool isRunning() { return mFramesLeft > 0; }
    virtual void stop() { ++gStops; }

  private:
    int mFramesLeft = 0;
};

struct TaggedRenderer : vi::Renderer {
    TaggedRenderer(vi::ShaderProgram& program, vi::Drawable& drawable)
        : vi::Renderer(program, drawable) {}
    uint32_t mTag = kTag;
};

// The right half of the screen in green.
class TaggedLayer : public Kinetra::KNIRenderer {
  public:
    uint32_t mTag = kTag;
    Kinetra::KNMesh mQuad;

    void initRender(float, float) override {
        createShaderProgram(kVertex, kFragment);
        mQuad.vertex = {{0, -1, 0}, {1, -1, 0}, {0, 1, 0}, {1, 1, 0}};
        setMesh(&mQuad);
        setColor(0, 1, 0, 1);
        setDrawArraysWithOption(GL_TRIANGLE_STRIP);
    }
    void drawRender() override {
        setShaderArrayMeshVertex("aPosition");
        setShaderUnformColor("uColor");
    }
};

struct Animations {
    vi::AnimationManager<Animations> mManager;
    FrameCountdown mCountdown;
};

class LayoutEffect : private Animations, public vi::Effect {
  public:
    LayoutEffect() : Effect(&mManager) {
        makeCurrent();
        mProgram = vi::ShaderProgram::addProgram(new vi::ShaderProgram(kVertex, kFragment, 0));
        mDrawable.mMode = GL_TRIANGLE_STRIP;
        mDrawable.mDimension = 2;
        mDrawable.mPositions2 = {{-1, -1}, {1, -1}, {-1, 1}, {1, 1}};
        mRenderer = new TaggedRenderer(*mProgram, mDrawable);
        mRenderer->addAttribute("aPosition", mDrawable.mPositions2.data(), 2, true);
        mRenderer->addUniform("uColor", &mRed, vi::Uniform::kVec4, 1);
        mManager.addAnimation(reinterpret_cast<vi::IAnimation*>(&mCountdown));
        mCountdown.start(0);
    }
    ~LayoutEffect() override {
        delete mRenderer;
        mProgram->destroy();
    }

    void initPortrait() override { mLayer.initialize(mScreenSizeF.x, mScreenSizeF.y); }
    void initLandscape() override { initPortrait(); }
    // init follows, and initialises the layer again.
    void onContextLost() override { mLayer.contextChanged(); }
    bool draw() override {
        mRenderer->draw();
        glBindBuffer(GL_ARRAY_BUFFER, 0);  // the layer's arrays are client memory
        mLayer.draw();
        gTagsKept = gTagsKept && mRenderer->mTag == kTag && mLayer.mTag == kTag;
        return false;
    }

  private:
    vi::ShaderProgram* mProgram;
    vi::Drawable mDrawable;
    TaggedRenderer* mRenderer;
    TaggedLayer mLayer;
    float mRed[4] = {1, 0, 0, 1};
};

}  // namespace

extern "C" {

__attribute__((visibility("default"))) vi::Effect* createScene() {
    gUpdates = gStops = 0;
    gTagsKept = true;
    return new LayoutEffect();
}

// "updates U stops S tags kept" (or "overwritten" once a frame found an added field changed).
__attribute__((visibility("default"))) const char* layoutEffectReport() {
    char text[96];
    snprintf(text, sizeof text, "updates %d stops %d tags %s", gUpdates, gStops,
             gTagsKept ? "kept" : "overwritten");
    gReport = text;
    return gReport.c_str();
}
}
