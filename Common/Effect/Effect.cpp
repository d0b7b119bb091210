#include "Common/Effect/Effect.h"

#include <EGL/egl.h>
#include <GLES2/gl2.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>

#include "Common/Effect/Timer.h"
#include "Common/Platform/Log.h"
#include "Common/Registries/Registries.h"
#include "Common/Renderer/Base/Drawable.h"
#include "Common/Renderer/Base/RenderableTexture.h"
#include "Common/Renderer/Base/Renderer.h"
#include "Common/Renderer/Base/ShaderProgram.h"
#include "Common/Renderer/Base/Texture.h"

namespace vi {
namespace {

enum Phase { kDown = 0, kUp = 1, kMove = 2 };

using TouchHook = void (Effect::*)(const glm::vec2&);
const TouchHook kTouchHooks[3][3] = {
    {&Effect::onTouchDown, &Effect::onTouchUp, &Effect::onTouchMove},
    {&Effect::onSecondTouchDown, &Effect::onSecondTouchUp, &Effect::onSecondTouchMove},
    {&Effect::onThirdTouchDown, &Effect::onThirdTouchUp, &Effect::onThirdTouchMove},
};

}  // namespace

unsigned char Effect::mErrorTextureBuffer[16] = {0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0xFF,
                                                 0xFF, 0xFF, 0x00, 0x00, 0xFF, 0x00, 0x00, 0x00};

Effect::Effect(IAnimationManager* animationManager)
    : mTextures(nullptr),
      mScreenSize(0, 0),
      mScreenSizeF(0.0f, 0.0f),
      mInvScreenSize(0.0f, 0.0f),
      mAspect(0.0f),
      mAspectScale(0.0f, 0.0f),
      mTouchStart(0.0f),
      mTouchCurrent(0.0f),
      mSecondTouchStart(0.0f),
      mSecondTouchCurrent(0.0f),
      mThirdTouchStart(0.0f),
      mThirdTouchCurrent(0.0f),
      mIsTouched(false),
      mIsReady(false),
      mIsSecondTouched(false),
      mIsThirdTouched(false),
      mReserved(0),
      mIsLandscape(false),
      mAnimationManager(animationManager),
      mErrorTexture(nullptr),
      mBackgroundTexture(nullptr),
      mEglContext(eglGetCurrentContext()) {
    srand(static_cast<unsigned>(time(nullptr)));
    mTextures = &qam::registries::gTextureMap[mEglContext];
    // Textures loaded for an earlier effect on this context are this one's too.
    for (const auto& entry : *mTextures) {
        Texture* texture = entry.second;  // null: a removed texture's name
        if (texture != nullptr &&
            std::find(mTextureList.begin(), mTextureList.end(), texture) == mTextureList.end()) {
            mTextureList.push_back(texture);
        }
    }
    qam::registries::addLiveEffect(this);
}

Effect::~Effect() {
    qam::forgetLoggedOnce(this);
    qam::registries::removeLiveEffect(this);
    delete mErrorTexture;
    if (mAnimationManager != nullptr) {
        mAnimationManager->stopAll();
    }
    if (!mRenderers.empty()) {
        qam::logError("WARNING: Renderer leaked!!!!!!!");
    }
    if (!mShaders.empty()) {
        qam::logError("WARNING: Shader leaked!!!!!!!");
    }
    // Render objects made before another effect is entered (drawBgOnly's background, for one)
    // must not register in lists that die with this effect.
    static std::vector<Renderer*> sDetachedRenderers;
    static std::vector<Texture*> sDetachedTextures;
    static std::vector<ShaderProgram*> sDetachedShaders;
    if (Renderer::mAllRenderers == &mRenderers) {
        Renderer::mAllRenderers = &sDetachedRenderers;
    }
    if (Texture::mAllTextures == &mTextureList) {
        Texture::mAllTextures = &sDetachedTextures;
    }
    if (ShaderProgram::mAllShaders == &mShaders) {
        ShaderProgram::mAllShaders = &sDetachedShaders;
    }
}

void Effect::makeCurrent() {
    Renderer::mAllRenderers = &mRenderers;
    Texture::mAllTextures = &mTextureList;
    ShaderProgram::mAllShaders = &mShaders;
}

void Effect::setOrthoProjection() {
    const float width = static_cast<float>(mScreenSize.x);
    const float height = static_cast<float>(mScreenSize.y);
    glm::mat4& projection = *Drawable::mProjectionMatrix;
    projection = glm::mat4(0.0f);
    projection[0][0] = 2.0f / width;
    projection[1][1] = 2.0f / height;
    projection[2][2] = -0.001f;
    projection[3][0] = width / -width;
    projection[3][1] = height / -height;
    projection[3][3] = 1.0f;
    *Drawable::mViewMatrix = *Drawable::mIdentityMatrix;
}

void Effect::setPerspectiveProjection() {
    glm::mat4& projection = *Drawable::mProjectionMatrix;
    projection = glm::mat4(0.0f);
    projection[0][0] = 1.0f / (mAspect * 0.55785173f);
    projection[1][1] = 1.792591f;
    projection[2][2] = -1.0002f;
    projection[2][3] = -1.0f;
    projection[3][2] = -2.0002f;
    *Drawable::mViewMatrix = *Drawable::mIdentityMatrix;
}

void Effect::initEffect(int width, int height) {
    // Repeated inits leak the previous error texture, as they always have.
    mErrorTexture =
        new Texture(mErrorTextureBuffer, 2, 2, true, true, false, true, false, 4, false);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    mScreenSize = glm::ivec2(width, height);
    mScreenSizeF = glm::vec2(float(width), float(height));
    mInvScreenSize = glm::vec2(1.0f / float(width), 1.0f / float(height));
    mAspect = float(width) / float(height);
    mIsLandscape = !(mAspect < 1.0f);
    mAspectScale =
        mIsLandscape ? glm::vec2(mAspect, 1.0f) : glm::vec2(1.0f, float(height) / float(width));
    RenderableTexture::mCurrentFrameBufferPosition = glm::uvec2(0, 0);
    RenderableTexture::mCurrentFrameBufferSize = glm::uvec2(width, height);
    glViewport(0, 0, width, height);
    setOrthoProjection();
    if (mIsLandscape) {
        initLandscape();
    } else {
        initPortrait();
    }
    mIsReady = true;
}

void Effect::dispatchEvent(const EffectEvent& event) {
    const glm::vec2& position = event.mPosition;
    switch (event.mKind) {
        case EffectEvent::kClear:
        case EffectEvent::kShowAffordance:
            mIsTouched = mIsSecondTouched = mIsThirdTouched = false;
            onTouchUp(mTouchCurrent);
            onSecondTouchUp(mSecondTouchCurrent);
            onThirdTouchUp(mThirdTouchCurrent);
            onClear();
            Timer::restart();
            if (event.mKind == EffectEvent::kShowAffordance) {
                onShowAffordance(position);
            }
            break;
        case EffectEvent::kShowUnlock:
            onShowUnlock();
            break;
        case 3:
        case 4:
        case 5:
        case 6:
        case 7:
        case 8:
        case 9:
        case 10:
        case 11: {
            // Kinds 3 to 11: pointer 0 to 2, each with down, up and move.
            const int pointer = (event.mKind - EffectEvent::kTouchDown) / 3;
            const int phase = (event.mKind - EffectEvent::kTouchDown) % 3;
            PointerTrack track = pointerTrack(pointer);
            if (phase != kMove) {
                *track.pressed = phase == kDown;
                *track.start = *track.current = position;
            } else if (*track.pressed) {
                *track.current = position;  // the start stays where the pointer went down
            }
            (this->*kTouchHooks[pointer][phase])(position);
            break;
        }
        case EffectEvent::kVector:
            onVectorEvent(event.mVector);
            break;
        case EffectEvent::kIntA:
            onIntEventA(event.mInteger);
            break;
        case EffectEvent::kIntB:
            onIntEventB(event.mInteger);
            break;
        case EffectEvent::kSetParameter:
            setParameter(event.mKey, event.mValue);
            break;
        default:
            break;  // unknown kinds are ignored
    }
}

Effect::PointerTrack Effect::pointerTrack(int pointer) {
    switch (pointer) {
        case 0:
            return {&mIsTouched, &mTouchStart, &mTouchCurrent};
        case 1:
            return {&mIsSecondTouched, &mSecondTouchStart, &mSecondTouchCurrent};
        default:
            return {&mIsThirdTouched, &mThirdTouchStart, &mThirdTouchCurrent};
    }
}

}  // namespace vi
