// Ripples on the background as on water: a touch sends out a ring wave that pushes the
// picture outward as it passes and leaves it to settle; a held finger sends one after another,
// unlock a last, strong one.
//
// Every 60th of a second of the clock: the radial water brush paints each wave front's outward
// push into one frame-buffer object, and the background advect water brush carries the previous
// picture along it into the next of two pictures in ping-pong (settling 3 % a step towards the
// background). Every frame the mix water brush shows that picture over the background where
// waves have passed, slightly brighter and more saturated, like wet paint.
#include <GLES2/gl2.h>
#include <GLES2/gl2ext.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "Common/Effect/AnimationManager.h"
#include "Common/Effect/Effect.h"
#include "Kinetra/Core/KNFBO.h"
#include "Kinetra/Layers/KNDrawBGAdvectWaterBrush.h"
#include "Kinetra/Layers/KNDrawMixWaterBrush.h"
#include "Kinetra/Layers/KNDrawRadialWaterBrush.h"
#include "examples/effects/common/BackgroundLink.h"
#include "examples/effects/common/ClockSteps.h"
#include "examples/effects/common/NamedTextures.h"
#include "examples/effects/common/SpriteLayer.h"
#include "examples/effects/common/SurfaceSize.h"
#include "examples/effects/ripple/RippleImages.h"

namespace {

using Kinetra::KNFBO;
using qam::samples::ClockSteps;

const char* const kFront = "ripple.front";
const char* const kWater = "ripple.water";
const char* const kStill = "ripple.still";

// Speeds and sizes as fractions of the screen width.
constexpr float kStartRadius = 0.04f;
constexpr float kSpeed = 0.8f;  // of the radius, a second
constexpr float kUnlockSpeed = 1.6f;
constexpr float kLifeSeconds = 1.6f;
constexpr float kRainSeconds = 0.45f;  // between waves from a held finger
constexpr float kPush = 12.0f;         // the advect brush's radial scalar: up to 2.3 % a step
constexpr size_t kMostWaves = 6;
// Water that waves pass over looks brighter and more saturated: fully on the fronts, by
// this share behind them.
constexpr float kWetBrightness = 1.12f;
constexpr float kWetSaturation = 1.15f;
constexpr float kWaterShine = 0.5f;

struct Wave {
    glm::vec2 centre;  // pixels, origin bottom left
    float born;        // clock time
    float speed;
};

// The manager and the steps outlive the vi::Effect base, which stops all animations as it
// goes; the waves keep their own time.
struct RippleAnimations {
    vi::AnimationManager<RippleAnimations> mAnimations;
    ClockSteps mSteps;
};

class Ripple : private RippleAnimations, public vi::Effect {
  public:
    Ripple() : Effect(&mAnimations) {
        makeCurrent();
        mResourceNames = {"bg"};
        mAnimations.addAnimation(&mSteps);
        mSteps.setStep([this](float now) {
            prepare();
            step(now);
        });
        mImages.add(kFront, qam::samples::rippleFront(128), GL_CLAMP_TO_EDGE, GL_LINEAR);
        mImages.add(kWater, qam::samples::rippleWater(64), GL_CLAMP_TO_EDGE, GL_LINEAR);
        mImages.add(kStill, qam::samples::rippleStill(), GL_CLAMP_TO_EDGE, GL_NEAREST);
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
        mTouching = true;
        mFinger = position * mScreenSizeF;
        send(kSpeed, ClockSteps::stepAt(vi::IAnimationManager::mNow));
    }
    void onTouchMove(const glm::vec2& position) override {
        if (mTouching) {
            mFinger = position * mScreenSizeF;
        }
    }
    void onTouchUp(const glm::vec2&) override { mTouching = false; }
    void onClear() override {
        mTouching = false;
        mWaves.clear();
        mStale = true;
    }
    void onShowUnlock() override {
        if (!mTouching && mWaves.empty()) {
            mFinger = 0.5f * mScreenSizeF;
        }
        mTouching = false;
        send(kUnlockSpeed, ClockSteps::stepAt(vi::IAnimationManager::mNow));
    }

    bool draw() override {
        prepare();
        mSteps.run(vi::IAnimationManager::mNow);
        compose();
        return mTouching || !mWaves.empty();
    }

  private:
    float width() const { return qam::samples::surfaceSize(mScreenSizeF).x; }
    float height() const { return qam::samples::surfaceSize(mScreenSizeF).y; }

    // Every GL object built, the background handed over, the water ready to step.
    void prepare() {
        if (mBuilt && mBuiltFor != mEglContext) {
            forget();  // the host rebuilds only its own objects before a frame
        }
        if (!mBuilt) {
            build();
        }
        // Waves sent before the clock restarted lie in its future, where they would stay
        // unfaded for long.
        const float step = ClockSteps::stepAt(vi::IAnimationManager::mNow);
        mWaves.erase(std::remove_if(mWaves.begin(), mWaves.end(),
                                    [step](const Wave& wave) { return wave.born > step; }),
                     mWaves.end());
        if (mBackgroundLink.refresh(*this) || mBackgroundChanged) {
            mBackgroundChanged = false;
            // Both water brushes fit the background when handed it by name.
            mAdvect.setBGTexture("bg", true);
            mMix.setBGTexture("bg", true);
            mStale = true;
        }
        if (mStale) {
            settle();
        }
    }

    // A wave from the finger, starting with the step at clock time `born`.
    void send(float speed, float born) {
        if (mWaves.size() == kMostWaves) {
            mWaves.erase(mWaves.begin());
        }
        mWaves.push_back({mFinger, born, speed});
    }

    // A 60th of a second of the water at clock time `now`.
    void step(float now) {
        if (mTouching && (mWaves.empty() || now - mWaves.back().born >= kRainSeconds)) {
            send(kSpeed, now);
        }
        const bool waving = !mWaves.empty();
        mWaves.erase(
            std::remove_if(mWaves.begin(), mWaves.end(),
                           [now](const Wave& wave) { return now - wave.born >= kLifeSeconds; }),
            mWaves.end());
        paintFronts(now);
        advect();
        if (waving && mWaves.empty()) {
            // The last front has faded out, and with it the water shown: start calm again.
            settle();
        }
    }

    void build() {
        if (mBuilt && mBuiltFor != mEglContext) {
            forget();
        }
        const float w = width();
        const float h = height();
        // The picture settles by 3 % of what is left a step: 8 bits would stop it short.
        const char* extensions = reinterpret_cast<const char*>(glGetString(GL_EXTENSIONS));
        const bool halfFloat = extensions != nullptr &&
                               strstr(extensions, "GL_EXT_color_buffer_half_float") != nullptr &&
                               strstr(extensions, "GL_OES_texture_half_float_linear") != nullptr;
        for (KNFBO& picture : mPicture) {
            picture.setFBOTextureDataType(halfFloat ? GL_HALF_FLOAT_OES : GL_UNSIGNED_BYTE);
        }
        for (KNFBO* fbo : {&mField, &mWet, &mPicture[0], &mPicture[1]}) {
            fbo->destroyFBOSurface();
            fbo->createFBOSurface(static_cast<unsigned>(w), static_cast<unsigned>(h));
        }
        mImages.upload();

        mFront.initialize(w, h);
        mFront.setRectAlign(1);
        mFront.setRatio(1, w / h);  // equal pixel speeds across and up
        mFront.setMaskTexture(kFront);
        mFront.setGraphTexture(kFront);
        // Blend the push in, keeping the field everywhere (alpha 1).
        mFront.setBlendOption(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);

        mAdvect.initialize(w, h, 0);
        mAdvect.setNoiseVectorScalar(0);
        mAdvect.setRadialVectorScalar(kPush);
        mMix.initialize(w, h, 0);
        mMix.setBrightness(kWetBrightness);
        mMix.setSaturation(kWetSaturation);

        mSprite.initialize(w, h);
        // Only the alpha counts: the mix brush's share of the wet picture.
        mSprite.setBlendOption(GL_ONE, GL_ONE);

        mBackgroundLink.forget();
        mBackgroundChanged = true;
        mBuilt = true;
        mBuiltFor = mEglContext;
    }

    void forget() {
        for (KNFBO* fbo : {&mField, &mWet, &mPicture[0], &mPicture[1]}) {
            fbo->contextChanged();
        }
        mFront.contextChanged();
        mAdvect.contextChanged();
        mMix.contextChanged();
        mSprite.contextChanged();
        mImages.contextChanged();
        mBackgroundLink.forget();
        mBuilt = false;
    }

    // The background advect brush keeps the picture upside down (it reads the background
    // bottom-up) and the mix brush turns it back: waves go in mirrored.
    glm::vec2 mirrored(const glm::vec2& p) const { return {p.x, height() - p.y}; }

    // Calm water: both pictures the background, as the advect brush gives it where no field is,
    // and none of it shown.
    void settle() {
        for (KNFBO* fbo : {&mField, &mWet}) {
            fbo->bindFBOSurface();
            fbo->setClearColor(0, 0, 0, 0);
            fbo->clearFBOSurface();
        }
        for (KNFBO& picture : mPicture) {
            picture.bindFBOSurface();
            mAdvect.setVelocityRadialTextureID(mImages.id(kStill), mField.getFBOTexture());
            mAdvect.draw();
        }
        mStale = false;
    }

    // Every front pushes outward where it is; behind it the water is left to settle.
    void paintFronts(float now) {
        mField.bindFBOSurface();
        mField.setClearColor(0.5f, 0.5f, 0.0f, 1.0f);
        mField.clearFBOSurface();
        mWet.bindFBOSurface();
        mWet.setClearColor(0, 0, 0, 0);
        mWet.clearFBOSurface();
        for (const Wave& wave : mWaves) {
            const float age = now - wave.born;
            const float radius = (kStartRadius + wave.speed * age) * width();
            const float fade = (1 - age / kLifeSeconds) * (1 - age / kLifeSeconds);
            const glm::vec2 at = mirrored(wave.centre);
            mField.bindFBOSurface();
            mFront.setTimeStep(fade);
            // The front sits at 80 % of the stamp's half size.
            mFront.setSize(2.5f * radius, 2.5f * radius);
            mFront.setPosition(at.x, at.y, 0);
            mFront.draw();
            // The water behind the front, and the front itself brighter still.
            mWet.bindFBOSurface();
            mSprite.setSquare(at.x, at.y, 2.5f * radius);
            mSprite.setTextureID(mImages.id(kWater));
            mSprite.setColor(1, 1, 1, kWaterShine * fade);
            mSprite.draw();
            mSprite.setTextureID(mImages.id(kFront));
            mSprite.setColor(1, 1, 1, fade);
            mSprite.draw();
        }
    }

    void advect() {
        KNFBO& previous = mPicture[mCurrent];
        mCurrent = 1 - mCurrent;
        mPicture[mCurrent].bindFBOSurface();
        mAdvect.setFBOID(previous.getFBOTexture());
        mAdvect.setVelocityRadialTextureID(mImages.id(kStill), mField.getFBOTexture());
        mAdvect.draw();
    }

    void compose() {
        mPicture[mCurrent].unbindFBOSurface(static_cast<unsigned>(width()),
                                            static_cast<unsigned>(height()));
        mMix.setAlphaDensityTextureID(mWet.getFBOTexture(), mPicture[mCurrent].getFBOTexture());
        mMix.draw();
    }

    qam::samples::NamedTextures mImages;
    qam::samples::BackgroundLink mBackgroundLink;
    KNFBO mField;
    KNFBO mWet;
    KNFBO mPicture[2];
    Kinetra::KNDrawRadialWaterBrush mFront;
    Kinetra::KNDrawBGAdvectWaterBrush mAdvect;
    Kinetra::KNDrawMixWaterBrush mMix;
    qam::samples::SpriteLayer mSprite;

    bool mBuilt = false;
    void* mBuiltFor = nullptr;
    bool mBackgroundChanged = true;
    bool mStale = true;  // the pictures must start again from the background
    int mCurrent = 0;
    bool mTouching = false;
    glm::vec2 mFinger{0.0f, 0.0f};
    std::vector<Wave> mWaves;
};

}  // namespace

extern "C" __attribute__((visibility("default"))) vi::Effect* createScene() {
    return new Ripple();
}
