// A touch watercolour: the finger lays pigment on the background, which blooms outward from
// under it, swirls a little and dries into a stain. clear washes the painting away, unlock
// lets it bloom over the whole screen while it fades out.
//
// Every 60th of a second of the clock: a radial colour brush paints the flow field under the
// finger into one frame-buffer object, a radial colour brush colour the pigment into another,
// and the advect brush carries the previous painting along the field into the next of two
// paintings in ping-pong. Every frame the painting is composed over the background on the
// screen.
#include <GLES2/gl2.h>
#include <GLES2/gl2ext.h>

#include <algorithm>
#include <cmath>
#include <cstring>

#include "Common/Effect/AnimationManager.h"
#include "Common/Effect/Effect.h"
#include "Kinetra/Core/KNDrawBackground.h"
#include "Kinetra/Core/KNFBO.h"
#include "Kinetra/Core/KNInterpolator.h"
#include "Kinetra/Layers/KNDrawAdvectColorBrush.h"
#include "Kinetra/Layers/KNDrawRadialColorBrush.h"
#include "Kinetra/Layers/KNDrawRadialColorBrushColor.h"
#include "examples/effects/common/BackgroundLink.h"
#include "examples/effects/common/ClockSteps.h"
#include "examples/effects/common/NamedTextures.h"
#include "examples/effects/common/SpriteLayer.h"
#include "examples/effects/common/SurfaceSize.h"
#include "examples/effects/common/Tween.h"
#include "examples/effects/watercolour/WatercolourImages.h"

namespace {

using Kinetra::KNFBO;
using qam::samples::Tween;

const char* const kBlot = "watercolour.blot";
const char* const kWash = "watercolour.wash";
const char* const kPigments = "watercolour.pigments";
const char* const kFlow = "watercolour.flow";

// Sizes as fractions of the screen width.
constexpr float kPigmentSize = 0.24f;
constexpr float kFieldSize = 0.75f;
// The field's strength under the finger: about 0.7 % of the width a step outward.
constexpr float kFlowStep = 0.35f;
constexpr float kBloomSeconds = 0.8f;  // the flow dying down after the finger lifts
constexpr float kClearSeconds = 0.5f;
constexpr float kExitSeconds = 0.9f;
// Steps taken after the last change while the paint drifts back towards the background, by
// then about 3 % of the way off it.
constexpr int kDryingSteps = 450;

// The manager and its animations outlive the vi::Effect base, which stops them all as it goes.
struct WatercolourAnimations {
    vi::AnimationManager<WatercolourAnimations> mAnimations;
    Tween mBloom{1, 0, kBloomSeconds};
    Tween mWash{1, 0, kClearSeconds, Kinetra::SineInOut50::getInterpolation};
    Tween mExit{0, 1, kExitSeconds, Kinetra::SineInOut50::getInterpolation};
    qam::samples::ClockSteps mSteps;
};

class Watercolour : private WatercolourAnimations, public vi::Effect {
  public:
    Watercolour() : Effect(&mAnimations) {
        makeCurrent();
        mResourceNames = {"bg"};
        // Each step moves the tweens to its own time before it reads them. The steps go first,
        // so that a frame's earlier ones find the tweens where the last frame left them.
        mAnimations.addAnimation(&mSteps);
        mAnimations.addAnimation(&mBloom);
        mAnimations.addAnimation(&mWash);
        mAnimations.addAnimation(&mExit);
        mSteps.setStep([this](float now) {
            for (Tween* tween : {&mBloom, &mWash, &mExit}) {
                tween->update(now);
            }
            prepare();
            step();
        });
        mImages.add(kBlot, qam::samples::watercolourBlot(128), GL_CLAMP_TO_EDGE, GL_LINEAR);
        mImages.add(kWash, qam::samples::watercolourWash(64), GL_CLAMP_TO_EDGE, GL_LINEAR);
        mImages.add(kPigments, qam::samples::watercolourPigments(64, 112), GL_CLAMP_TO_EDGE,
                    GL_LINEAR);
        mImages.add(kFlow, qam::samples::watercolourFlow(64), GL_REPEAT, GL_LINEAR);
    }

    void initPortrait() override { build(); }
    void initLandscape() override { build(); }
    void onContextLost() override {
        if (mBuilt) {
            forget();
        }
    }
    void onTextureChanged() override { mBackgroundChanged = true; }

    void onTouchDown(const glm::vec2& position) override {
        if (mWashing) {
            // A new stroke finishes the wash at once rather than fading it.
            mWash.stop();
            mWashing = false;
            mPaintStale = true;
        }
        mExit.stop();
        mLeaving = false;
        mBloom.stop();
        mTouching = true;
        moveTo(position);
    }
    void onTouchMove(const glm::vec2& position) override {
        if (mTouching) {
            moveTo(position);
        }
    }
    void onTouchUp(const glm::vec2& position) override {
        if (mTouching) {
            moveTo(position);
            mTouching = false;
            mBloom.start(vi::IAnimationManager::mNow);
        }
    }
    void onClear() override {
        mTouching = false;
        mBloom.stop();
        mExit.stop();
        mLeaving = false;
        mWash.start(vi::IAnimationManager::mNow);
        mWashing = true;
    }
    void onShowUnlock() override {
        if (!mTouched) {
            mFinger = 0.5f * mScreenSizeF;
        }
        mTouching = false;
        mBloom.stop();
        mExit.start(vi::IAnimationManager::mNow);
        mLeaving = true;
    }

    bool draw() override {
        prepare();
        mSteps.run(vi::IAnimationManager::mNow);
        compose();
        if (mLeaving) {
            return mExit.isRunning();
        }
        return mDrying > 0 || mWashing;
    }

  private:
    void moveTo(const glm::vec2& position) {
        // Events are normalised with the origin at the bottom left, as the layers draw.
        mFinger = position * mScreenSizeF;
        mTouched = true;
        mDrying = kDryingSteps;
    }

    // Every GL object built, the background handed over, the paint ready to step.
    void prepare() {
        if (mBuilt && mBuiltFor != mEglContext) {
            forget();  // the host rebuilds only its own objects before a frame
        }
        if (!mBuilt) {
            build();
        }
        refreshBackground();
        if (mWashing && !mWash.isRunning()) {
            // The painting has faded out: start again from the bare background.
            mWashing = false;
            mPaintStale = true;
            mDrying = 0;
        }
        if (mPaintStale) {
            resetPaint();
        }
    }

    // A 60th of a second of the paint.
    void step() {
        const bool flowing = paintField();
        const bool pigment = paintPigment();
        advect();
        if (flowing || pigment) {
            mDrying = kDryingSteps;
        } else if (mDrying > 0) {
            --mDrying;
        }
    }

    float width() const { return qam::samples::surfaceSize(mScreenSizeF).x; }
    float height() const { return qam::samples::surfaceSize(mScreenSizeF).y; }

    // Every GL object for the screen size: frame-buffer objects, layers, images.
    void build() {
        if (mBuilt && mBuiltFor != mEglContext) {
            forget();
        }
        const float w = width();
        const float h = height();
        // The painting changes by fractions of an 8-bit level a step: with 8-bit targets it
        // would band and stop short of the background. Half floats where the GPU renders them.
        const char* extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
        const bool halfFloat = extensions != nullptr &&
                               strstr(extensions, "GL_EXT_color_buffer_half_float") != nullptr &&
                               strstr(extensions, "GL_OES_texture_half_float_linear") != nullptr;
        for (KNFBO& paint : mPaint) {
            paint.setFBOTextureDataType(halfFloat ? GL_HALF_FLOAT_OES : GL_UNSIGNED_BYTE);
        }
        for (KNFBO* fbo : {&mField, &mPigment, &mPaint[0], &mPaint[1], &mBackdrop}) {
            fbo->destroyFBOSurface();
            fbo->createFBOSurface(static_cast<unsigned>(w), static_cast<unsigned>(h));
        }
        mImages.upload();

        mFieldBrush.initialize(w, h);
        mFieldBrush.setRectAlign(1);
        // Equal pixel speeds across and up the screen.
        mFieldBrush.setRatio(1, w / h);
        mFieldBrush.setMaskTexture(kWash);

        mPigmentBrush.initialize(w, h);
        mPigmentBrush.setRectAlign(1);
        mPigmentBrush.setSize(kPigmentSize * w, kPigmentSize * w);
        mPigmentBrush.setResolutionRatio(1);
        mPigmentBrush.setMaskTexture(kBlot);
        mPigmentBrush.setColorTexture(kPigments);
        // Colour where the blot covers, its alpha as coverage, over a transparent target.
        mPigmentBrush.setBlendOption(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE,
                                     GL_ONE_MINUS_SRC_ALPHA);

        mAdvect.initialize(w, h, 0);

        mBackground.initialize(w, h);
        mBackground.setBlendOption(GL_ONE, GL_ZERO);
        mSprite.initialize(w, h);
        // The painting over the background, its alpha the background's.
        mSprite.setBlendOption(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ZERO, GL_ONE);
        mSprite.setTextureAlpha(false);

        mBackgroundLink.forget();
        mBackgroundChanged = true;
        mBuilt = true;
        mBuiltFor = mEglContext;
    }

    // The context that owned our GL objects is gone: forget their names, build again later.
    void forget() {
        for (KNFBO* fbo : {&mField, &mPigment, &mPaint[0], &mPaint[1], &mBackdrop}) {
            fbo->contextChanged();
        }
        mFieldBrush.contextChanged();
        mPigmentBrush.contextChanged();
        mAdvect.contextChanged();
        // KNDrawBackground keeps its program name through its own contextChanged(); the
        // base forgets it.
        mBackground.KNIRenderer::contextChanged();
        mSprite.contextChanged();
        mImages.contextChanged();
        mBackgroundLink.forget();
        mBuilt = false;
    }

    // The background cropped to the screen, kept in a frame-buffer object: the colour the
    // paint drifts back to.
    void refreshBackground() {
        if (!mBackgroundLink.refresh(*this) && !mBackgroundChanged) {
            return;
        }
        mBackgroundChanged = false;
        mBackground.setTextureID(mBackgroundLink.id());
        mBackground.setColor(1, 1, 1, 1);
        mBackdrop.bindFBOSurface();
        mBackground.draw();
        mPaintStale = true;
    }

    void resetPaint() {
        mBackground.setColor(1, 1, 1, 1);
        for (KNFBO& paint : mPaint) {
            paint.bindFBOSurface();
            mBackground.draw();
        }
        mPaintStale = false;
    }

    // The flow: still everywhere (alpha 1, no strength), pushing outward around the finger
    // while it is down, dying down after it lifts, and over the whole screen on unlock.
    bool paintField() {
        mField.bindFBOSurface();
        mField.setClearColor(0.5f, 0.5f, 0.0f, 1.0f);
        mField.clearFBOSurface();
        float strength = mTouching ? 1.0f : mBloom.isRunning() ? mBloom.value() : 0.0f;
        float size = kFieldSize * width();
        if (mLeaving && mExit.isRunning()) {
            strength = 1.0f;
            size *= 1.0f + 4.0f * mExit.value();
        }
        if (strength <= 0.0f) {
            return false;
        }
        mFieldBrush.setTimeStep(kFlowStep * strength);
        mFieldBrush.setSize(size, size);
        mFieldBrush.setPosition(mFinger.x, mFinger.y, 0);
        mFieldBrush.draw();
        return true;
    }

    bool paintPigment() {
        mPigment.bindFBOSurface();
        mPigment.setClearColor(0, 0, 0, 0);
        mPigment.clearFBOSurface();
        if (!mTouching) {
            return false;
        }
        mPigmentBrush.setPosition(mFinger.x, mFinger.y, 0);
        mPigmentBrush.draw();
        return true;
    }

    void advect() {
        KNFBO& previous = mPaint[mCurrent];
        mCurrent = 1 - mCurrent;
        KNFBO& next = mPaint[mCurrent];
        next.bindFBOSurface();
        mAdvect.setFBOID(previous.getFBOTexture());
        mAdvect.setVelocityRadialTextureID(mImages.id(kFlow), mField.getFBOTexture(),
                                           mPigment.getFBOTexture());
        mAdvect.changePatternColorTextureID(mBackdrop.getFBOTexture());
        mAdvect.setBackgroundTextureID(mBackdrop.getFBOTexture());
        mAdvect.draw();
        // The brush blends by the alpha it writes, below 1 on the rim of fresh pigment: keep
        // the painting opaque, or the next step would blend it away further.
        glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_TRUE);
        next.setClearColor(0, 0, 0, 1);
        next.clearFBOSurface();
        glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    }

    // The background, then the painting over it; both fade out on unlock (to a transparent
    // surface, colours premultiplied), the painting alone while it is washed away.
    void compose() {
        mPaint[mCurrent].unbindFBOSurface(static_cast<unsigned>(width()),
                                          static_cast<unsigned>(height()));
        const float shown = mLeaving ? std::clamp(1.0f - mExit.value(), 0.0f, 1.0f) : 1.0f;
        const float painting = mWashing ? std::clamp(mWash.value(), 0.0f, 1.0f) : 1.0f;
        mBackground.setColor(shown, shown, shown, shown);
        mBackground.draw();
        mSprite.setTextureID(mPaint[mCurrent].getFBOTexture());
        mSprite.setColor(shown, shown, shown, painting);
        mSprite.draw();
    }

    qam::samples::NamedTextures mImages;
    qam::samples::BackgroundLink mBackgroundLink;
    KNFBO mField;
    KNFBO mPigment;
    KNFBO mPaint[2];
    KNFBO mBackdrop;
    Kinetra::KNDrawRadialColorBrush mFieldBrush;
    Kinetra::KNDrawRadialColorBrushColor mPigmentBrush;
    Kinetra::KNDrawAdvectColorBrush mAdvect;
    Kinetra::KNDrawBackground mBackground;
    qam::samples::SpriteLayer mSprite;

    bool mBuilt = false;
    void* mBuiltFor = nullptr;
    bool mBackgroundChanged = true;
    bool mPaintStale = true;
    int mCurrent = 0;
    bool mTouching = false;
    bool mTouched = false;  // mFinger holds a touch
    glm::vec2 mFinger{0.0f, 0.0f};
    bool mWashing = false;
    bool mLeaving = false;
    int mDrying = 0;
};

}  // namespace

extern "C" __attribute__((visibility("default"))) vi::Effect* createScene() {
    return new Watercolour();
}
