#include "tests/support/Layout.h"

#include "Common/Effect/AnimationManager.h"
#include "Common/Effect/Effect.h"
#include "Common/Effect/EventHolder.h"
#include "Common/Effect/IAnimation.h"
#include "Common/Effect/IAnimationManager.h"

namespace {

using namespace qam::layout;
using vi::Effect;
using Event = vi::Effect::EffectEvent;
using Manager = vi::AnimationManager<vi::EventHolder>;

// Nine 32-bit words, copied as they are into the queue.
LAYOUT_FIELDS(Event, AT(mPosition, 0, 0), AT(mVector, 8, 8), AT(mInteger, 20, 20), AT(mKey, 24, 24),
              AT(mValue, 28, 28), AT(mKind, 32, 32));
LAYOUT_SIZE(Event, 36, 36, 4, 4);

// Effect libraries add their fields after ours and read these by offset.
LAYOUT_FIELDS(Effect, AT(mTextures, 8, 4), AT(mModels, 16, 8), AT(mScreenSize, 16 + kMap, 8 + kMap),
              AT(mScreenSizeF, 24 + kMap, 16 + kMap), AT(mInvScreenSize, 32 + kMap, 24 + kMap),
              AT(mAspect, 40 + kMap, 32 + kMap), AT(mAspectScale, 44 + kMap, 36 + kMap),
              AT(mTouchStart, 52 + kMap, 44 + kMap), AT(mTouchCurrent, 60 + kMap, 52 + kMap),
              AT(mSecondTouchStart, 68 + kMap, 60 + kMap),
              AT(mSecondTouchCurrent, 76 + kMap, 68 + kMap),
              AT(mThirdTouchStart, 84 + kMap, 76 + kMap),
              AT(mThirdTouchCurrent, 92 + kMap, 84 + kMap), AT(mIsTouched, 100 + kMap, 92 + kMap),
              AT(mIsReady, 101 + kMap, 93 + kMap), AT(mIsSecondTouched, 102 + kMap, 94 + kMap),
              AT(mIsThirdTouched, 103 + kMap, 95 + kMap), AT(mReserved, 104 + kMap, 96 + kMap),
              AT(mIsLandscape, 108 + kMap, 100 + kMap),
              AT(mAnimationManager, 112 + kMap, 104 + kMap), AT(mModel, 120 + kMap, 108 + kMap),
              AT(mErrorTexture, 144 + kMap, 120 + kMap),
              AT(mBackgroundTexture, 152 + kMap, 124 + kMap),
              AT(mResourceNames, 160 + kMap, 128 + kMap), AT(mEglContext, 184 + kMap, 140 + kMap),
              AT(mRenderers, 192 + kMap, 144 + kMap), AT(mTextureList, 216 + kMap, 156 + kMap),
              AT(mShaders, 240 + kMap, 168 + kMap), AT(mEvents, 264 + kMap, 180 + kMap));
LAYOUT_SIZE(Effect, 288 + kMap, 192 + kMap, 8, 4);
LAYOUT_END(Effect, 288 + kMap, 192 + kMap);

// Effect is the primary (dynamic) base, so it stays at offset 0 and the manager's base,
// declared first, follows it.
LAYOUT_FIELDS(vi::EventHolder, AT(mAnimations, 288 + kMap, 192 + kMap));
LAYOUT_SIZE(vi::EventHolder, 320 + kMap, 208 + kMap, 8, 4);

LAYOUT_FIELDS(Manager, AT(mAnimations, 8, 4));
LAYOUT_SIZE(Manager, 32, 16, 8, 4);

// Effect libraries implement both interfaces with fields of their own.
LAYOUT_SIZE(vi::IAnimationManager, 8, 4, 8, 4);
LAYOUT_END(vi::IAnimationManager, 8, 4);
LAYOUT_SIZE(vi::IAnimation, 8, 4, 8, 4);
LAYOUT_END(vi::IAnimation, 8, 4);

TEST(EffectLayout, VirtualOperationsSitInTheirSlots) {
    // The destructor takes slots 21 and 22.
    expectSlots({
        LAYOUT_SLOT(Effect, onClear, 0),
        LAYOUT_SLOT(Effect, onShowAffordance, 1),
        LAYOUT_SLOT(Effect, onShowUnlock, 2),
        LAYOUT_SLOT(Effect, onTextureChanged, 3),
        LAYOUT_SLOT(Effect, initPortrait, 4),
        LAYOUT_SLOT(Effect, initLandscape, 5),
        LAYOUT_SLOT(Effect, draw, 6),
        LAYOUT_SLOT(Effect, onTouchDown, 7),
        LAYOUT_SLOT(Effect, onTouchUp, 8),
        LAYOUT_SLOT(Effect, onTouchMove, 9),
        LAYOUT_SLOT(Effect, onSecondTouchDown, 10),
        LAYOUT_SLOT(Effect, onSecondTouchUp, 11),
        LAYOUT_SLOT(Effect, onSecondTouchMove, 12),
        LAYOUT_SLOT(Effect, onThirdTouchDown, 13),
        LAYOUT_SLOT(Effect, onThirdTouchUp, 14),
        LAYOUT_SLOT(Effect, onThirdTouchMove, 15),
        LAYOUT_SLOT(Effect, onIntEventA, 16),
        LAYOUT_SLOT(Effect, onIntEventB, 17),
        LAYOUT_SLOT(Effect, onVectorEvent, 18),
        LAYOUT_SLOT(Effect, setParameter, 19),
        LAYOUT_SLOT(Effect, onContextLost, 20),
        LAYOUT_SLOT(Effect, setOrthoProjection, 23),
        LAYOUT_SLOT(Effect, setPerspectiveProjection, 24),
        LAYOUT_SLOT(vi::IAnimationManager, isAnimating, 0),
        LAYOUT_SLOT(vi::IAnimationManager, stopAll, 1),
        LAYOUT_SLOT(vi::IAnimationManager, update, 2),
        // The manager calls these by slot after three the effect library defines.
        LAYOUT_SLOT(vi::IAnimation, update, 3),
        LAYOUT_SLOT(vi::IAnimation, isRunning, 4),
        LAYOUT_SLOT(vi::IAnimation, stop, 5),
    });
}

}  // namespace
