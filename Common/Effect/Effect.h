#pragma once

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <map>
#include <string>
#include <vector>

#include "Common/Effect/IAnimationManager.h"
#include "Common/Platform/Export.h"
#include "Common/Renderer/Base/ModelObject.h"

namespace vi {

class Renderer;
class ShaderProgram;
class Texture;

// The base of every visual effect and the whole native context of one Java instance. An
// effect library derives from it and returns a new one from its "createScene"; the host then
// drives it only through the hooks below, from inside its entry points.
class TALVEQAM_EXPORT Effect {
  public:
    // One queued input, delivered by the host at the start of the next frame.
    struct EffectEvent {
        enum Kind : int {
            kClear = 0,
            kShowAffordance = 1,
            kShowUnlock = 2,
            kTouchDown = 3,  // + 3 per further pointer: 6 and 9
            kTouchUp = 4,
            kTouchMove = 5,
            kVector = 12,
            kIntA = 13,
            kIntB = 14,
            kSetParameter = 15,
        };

        glm::vec2 mPosition;  // normalised, origin bottom-left
        glm::vec3 mVector;
        int mInteger;
        int mKey;
        float mValue;
        int mKind;
    };

    using TextureMap = std::map<std::string, Texture*>;

    explicit Effect(IAnimationManager* animationManager);
    Effect(const Effect&) = delete;
    Effect& operator=(const Effect&) = delete;

    // The hooks, in slot order. All but the three pure ones do nothing here; they are defined
    // in the library, so a derived effect's vtable finds them there.
    virtual void onClear();
    virtual void onShowAffordance(const glm::vec2& position);
    virtual void onShowUnlock();
    virtual void onTextureChanged();
    virtual void initPortrait() = 0;
    virtual void initLandscape() = 0;
    // Draws one frame; true asks for another.
    virtual bool draw() = 0;
    virtual void onTouchDown(const glm::vec2&);
    virtual void onTouchUp(const glm::vec2&);
    virtual void onTouchMove(const glm::vec2&);
    virtual void onSecondTouchDown(const glm::vec2&);
    virtual void onSecondTouchUp(const glm::vec2&);
    virtual void onSecondTouchMove(const glm::vec2&);
    virtual void onThirdTouchDown(const glm::vec2&);
    virtual void onThirdTouchUp(const glm::vec2&);
    virtual void onThirdTouchMove(const glm::vec2&);
    virtual void onIntEventA(int);
    virtual void onIntEventB(int);
    virtual void onVectorEvent(const glm::vec3&);
    virtual void setParameter(int key, float value);
    virtual void onContextLost();
    // Releases the error texture and reports renderers and shaders the derived effect left.
    virtual ~Effect();
    // Pixel-space orthographic camera: (0, 0) to (width, height).
    virtual void setOrthoProjection();
    // Perspective camera of about 58.31 degrees vertically, near 1, far 10001.
    virtual void setPerspectiveProjection();

    // Points the render-core registries at this effect's lists, so render objects made from
    // now on belong to it. Call it in the constructor before creating any.
    void makeCurrent();
    // Readies the effect for a surface of `width` x `height` pixels.
    void initEffect(int width, int height);
    // Runs the hook of one event, updating the pointer tracks.
    void dispatchEvent(const EffectEvent& event);

    TextureMap* mTextures;
    std::map<std::string, ModelObject*> mModels;
    glm::ivec2 mScreenSize;
    glm::vec2 mScreenSizeF;
    glm::vec2 mInvScreenSize;
    float mAspect;
    glm::vec2 mAspectScale;
    glm::vec2 mTouchStart;
    glm::vec2 mTouchCurrent;
    glm::vec2 mSecondTouchStart;
    glm::vec2 mSecondTouchCurrent;
    glm::vec2 mThirdTouchStart;
    glm::vec2 mThirdTouchCurrent;
    bool mIsTouched;
    bool mIsReady;
    bool mIsSecondTouched;
    bool mIsThirdTouched;
    int mReserved;
    bool mIsLandscape;
    IAnimationManager* mAnimationManager;
    ModelObject mModel;
    Texture* mErrorTexture;
    Texture* mBackgroundTexture;
    std::vector<std::string> mResourceNames;
    void* mEglContext;
    std::vector<Renderer*> mRenderers;
    std::vector<Texture*> mTextureList;
    std::vector<ShaderProgram*> mShaders;
    std::vector<EffectEvent> mEvents;

    // The 2 x 2 RGBA texels of the error texture.
    static unsigned char mErrorTextureBuffer[16];

  private:
    struct PointerTrack {
        bool* pressed;
        glm::vec2* start;
        glm::vec2* current;
    };
    PointerTrack pointerTrack(int pointer);
};

}  // namespace vi
