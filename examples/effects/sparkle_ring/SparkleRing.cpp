// An unlock sparkle ring: a small ring of glints follows the finger; unlock throws it outward
// over the screen while the picture fades out.
//
// Per frame while lit: the ring's shape is stamped into one frame-buffer object, the
// brilliant radial layer paints outward directions masked by it into a second, the brilliant
// advect layer smears them into streaks in a third, stars along the ring go into a fourth,
// and the brilliant ring layer composes all of it with the background on the screen.
#include <GLES2/gl2.h>

#include <algorithm>
#include <cmath>

#include "Common/Effect/AnimationManager.h"
#include "Common/Effect/Effect.h"
#include "Kinetra/Core/KNFBO.h"
#include "Kinetra/Layers/KNDrawBrilliantAdvect.h"
#include "Kinetra/Layers/KNDrawBrilliantRadial.h"
#include "Kinetra/Layers/KNDrawBrilliantRing.h"
#include "examples/effects/common/BackgroundLink.h"
#include "examples/effects/common/NamedTextures.h"
#include "examples/effects/common/SampleImage.h"
#include "examples/effects/common/SpriteLayer.h"
#include "examples/effects/common/SurfaceSize.h"
#include "examples/effects/common/Tween.h"
#include "examples/effects/sparkle_ring/SparkleImages.h"

namespace {

using Kinetra::KNFBO;
using qam::samples::Tween;

const char* const kBand = "sparkle.band";
const char* const kGlints = "sparkle.glints";
const char* const kStar = "sparkle.star";
const char* const kDark = "sparkle.dark";

constexpr float kTwoPi = 6.28318531f;
// Ring radius under the finger and stars around it, as fractions of the screen width.
constexpr float kTouchRadius = 0.16f;
constexpr float kStarSize = 0.16f;
constexpr int kStars = 10;
constexpr float kTurnPerSecond = 0.6f;  // radians the stars travel round the ring
constexpr float kGlowInSeconds = 0.25f;
constexpr float kGlowOutSeconds = 0.4f;
constexpr float kUnlockSeconds = 1.1f;
// The ring's radial disc reaches this far beyond the band, which sits at 80 % of the stamp.
constexpr float kDiscOverBand = 1.5f;

float easeOut(float t) {
    return 1 - (1 - t) * (1 - t);
}

// The manager and its animations outlive the vi::Effect base, which stops them all as it goes.
struct SparkleAnimations {
    vi::AnimationManager<SparkleAnimations> mAnimations;
    Tween mGlow{0, 1, kGlowInSeconds};
    Tween mUnlock{0, 1, kUnlockSeconds, easeOut};
};

class SparkleRing : private SparkleAnimations, public vi::Effect {
  public:
    SparkleRing() : Effect(&mAnimations) {
        makeCurrent();
        mResourceNames = {"bg"};
        mAnimations.addAnimation(&mGlow);
        mAnimations.addAnimation(&mUnlock);
        mImages.add(kBand, qam::samples::sparkleBand(128), GL_CLAMP_TO_EDGE, GL_LINEAR);
        mImages.add(kGlints, qam::samples::sparkleGlints(128), GL_REPEAT, GL_LINEAR);
        mImages.add(kStar, qam::samples::sparkleStar(64), GL_CLAMP_TO_EDGE, GL_LINEAR);
        mImages.add(kDark, qam::samples::sparkleDark(), GL_CLAMP_TO_EDGE, GL_NEAREST);
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
        mUnlock.stop();
        mUnlocking = false;
        mTouching = true;
        mFinger = position * mScreenSizeF;
        fadeGlow(1, kGlowInSeconds);
    }
    void onTouchMove(const glm::vec2& position) override {
        if (mTouching) {
            mFinger = position * mScreenSizeF;
        }
    }
    void onTouchUp(const glm::vec2& position) override {
        if (mTouching) {
            mFinger = position * mScreenSizeF;
            mTouching = false;
            fadeGlow(0, kGlowOutSeconds);
        }
    }
    void onClear() override {
        mTouching = false;
        mUnlock.stop();
        mUnlocking = false;
        fadeGlow(0, kGlowOutSeconds);
    }
    void onShowUnlock() override {
        if (!mTouching && mGlow.value() <= 0.0f) {
            // No finger: the ring starts from the middle of the screen.
            mFinger = 0.5f * mScreenSizeF;
        }
        mTouching = false;
        mGlow.stop();
        mUnlock.start(vi::IAnimationManager::mNow);
        mUnlocking = true;
    }

    bool draw() override {
        if (mBuilt && mBuiltFor != mEglContext) {
            forget();  // the host rebuilds only its own objects before a frame
        }
        if (!mBuilt) {
            build();
        }
        if (mBackgroundLink.refresh(*this) || mBackgroundChanged) {
            mBackgroundChanged = false;
            // The ring crops the background to the screen when it builds its quad.
            mRing.setSize(width(), height());
        }
        const bool lit = mUnlocking || mGlow.value() > 0.0f;
        if (lit) {
            const float glow = mUnlocking ? 1.0f : mGlow.value();
            const float radius = ringRadius();
            stampShape(radius, glow);
            paintDirections(radius);
            smear();
            stampStars(radius, glow);
            mDark = false;
        } else if (!mDark) {
            darken();
        }
        compose();
        return mTouching || mGlow.isRunning() || mUnlock.isRunning();
    }

  private:
    float width() const { return qam::samples::surfaceSize(mScreenSizeF).x; }
    float height() const { return qam::samples::surfaceSize(mScreenSizeF).y; }

    void fadeGlow(float to, float seconds) {
        const float from = mGlow.value();
        mGlow = Tween(from, to, seconds);
        mGlow.start(vi::IAnimationManager::mNow);
    }

    float ringRadius() const {
        const float start = kTouchRadius * width();
        if (!mUnlocking) {
            return start;
        }
        // Out past the farthest corner.
        const float far = std::hypot(std::max(mFinger.x, width() - mFinger.x),
                                     std::max(mFinger.y, height() - mFinger.y));
        return start + (1.1f * far - start) * mUnlock.value();
    }

    void build() {
        if (mBuilt && mBuiltFor != mEglContext) {
            forget();
        }
        const float w = width();
        const float h = height();
        for (KNFBO& fbo : mTargets) {
            fbo.destroyFBOSurface();
            fbo.createFBOSurface(static_cast<unsigned>(w), static_cast<unsigned>(h));
        }
        mImages.upload();

        mSprite.initialize(w, h);
        mRadial.initialize(w, h);
        mRadial.setAlphaShapeTextureID(mShape.getFBOTexture());
        mRadial.setPatternTextureID(mImages.id(kGlints));
        mAdvect.initialize(w, h);
        // Intensity as grey on an opaque target.
        mAdvect.setBlendOption(GL_ONE, GL_ZERO, GL_ZERO, GL_ONE);
        mAdvect.setRadialTextureID(mDirections.getFBOTexture());
        mRing.initialize(w, h);
        mRing.setSize(w, h);
        mRing.setBlendOption(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA, GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
        mRing.setShineTextureID(mStreaks.getFBOTexture());
        mRing.setDiamondTextureID(mStars.getFBOTexture());
        mRing.setAlphaTextureID(mShape.getFBOTexture());
        mRing.setBlurTextureID(mImages.id(kDark));

        mBackgroundLink.forget();
        mBackgroundChanged = true;
        mDark = false;
        mBuilt = true;
        mBuiltFor = mEglContext;
    }

    void forget() {
        for (KNFBO& fbo : mTargets) {
            fbo.contextChanged();
        }
        mSprite.contextChanged();
        mRadial.contextChanged();
        mAdvect.contextChanged();
        mRing.contextChanged();
        mImages.contextChanged();
        mBackgroundLink.forget();
        mBuilt = false;
    }

    // The band, upside down: the radial and ring layers read it with v = 0 at the top.
    void stampShape(float radius, float glow) {
        mShape.bindFBOSurface();
        mShape.setClearColor(0, 0, 0, 0);
        mShape.clearFBOSurface();
        mSprite.setBlendOption(GL_ONE, GL_ONE);
        mSprite.setTextureAlpha(true);
        mSprite.setTextureID(mImages.id(kBand));
        mSprite.setColor(glow, glow, glow, glow);
        mSprite.setSquare(mFinger.x, height() - mFinger.y, radius / 0.8f * 2);
        mSprite.draw();
    }

    void paintDirections(float radius) {
        mDirections.bindFBOSurface();
        mDirections.setClearColor(0.5f, 0.5f, 0, 1);
        mDirections.clearFBOSurface();
        const float disc = 2 * radius * kDiscOverBand;
        mRadial.setSize(disc, disc);
        mRadial.setPosition(mFinger.x, mFinger.y, 0);
        mRadial.draw();
    }

    void smear() {
        mStreaks.bindFBOSurface();
        mStreaks.setClearColor(0, 0, 0, 1);
        mStreaks.clearFBOSurface();
        mAdvect.draw();
    }

    // Stars travelling round the ring, each twinkling at its own pace; added up.
    void stampStars(float radius, float glow) {
        mStars.bindFBOSurface();
        mStars.setClearColor(0, 0, 0, 1);
        mStars.clearFBOSurface();
        mSprite.setBlendOption(GL_ONE, GL_ONE, GL_ZERO, GL_ONE);
        mSprite.setTextureAlpha(true);
        mSprite.setTextureID(mImages.id(kStar));
        const float now = vi::IAnimationManager::mNow;
        for (int i = 0; i < kStars; ++i) {
            const float angle = kTwoPi * i / kStars + kTurnPerSecond * now;
            const float twinkle = 0.6f + 0.4f * std::sin(now * 5 + i * 2.1f);
            const float light = glow * twinkle;
            mSprite.setColor(light, light, light, 1);
            mSprite.setSquare(mFinger.x + radius * std::cos(angle),
                              mFinger.y + radius * std::sin(angle), kStarSize * width() * twinkle);
            mSprite.draw();
        }
    }

    // Nothing lit: every input of the ring layer dark once, then the background alone.
    void darken() {
        mShape.bindFBOSurface();
        mShape.setClearColor(0, 0, 0, 0);
        mShape.clearFBOSurface();
        for (KNFBO* fbo : {&mStreaks, &mStars}) {
            fbo->bindFBOSurface();
            fbo->setClearColor(0, 0, 0, 1);
            fbo->clearFBOSurface();
        }
        mDark = true;
    }

    void compose() {
        mStars.unbindFBOSurface(static_cast<unsigned>(width()), static_cast<unsigned>(height()));
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT);
        // The picture fades out over the last 40 % of the unlock.
        const float shown =
            mUnlocking ? 1 - qam::samples::smoothstep(0.6f, 1.0f, mUnlock.progress()) : 1.0f;
        mRing.setBackgroundTextureID(mBackgroundLink.id());
        mRing.setAlpha(shown);
        mRing.draw();
    }

    qam::samples::NamedTextures mImages;
    qam::samples::BackgroundLink mBackgroundLink;
    KNFBO mTargets[4];
    KNFBO& mShape = mTargets[0];
    KNFBO& mDirections = mTargets[1];
    KNFBO& mStreaks = mTargets[2];
    KNFBO& mStars = mTargets[3];
    qam::samples::SpriteLayer mSprite;
    Kinetra::KNDrawBrilliantRadial mRadial;
    Kinetra::KNDrawBrilliantAdvect mAdvect;
    Kinetra::KNDrawBrilliantRing mRing;

    bool mBuilt = false;
    void* mBuiltFor = nullptr;
    bool mBackgroundChanged = true;
    bool mDark = false;  // the ring's inputs hold nothing lit
    bool mTouching = false;
    bool mUnlocking = false;
    glm::vec2 mFinger{0.0f, 0.0f};
};

}  // namespace

extern "C" __attribute__((visibility("default"))) vi::Effect* createScene() {
    return new SparkleRing();
}
