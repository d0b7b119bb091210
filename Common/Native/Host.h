#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Common/Platform/Export.h"

namespace vi {

class Effect;

// Where one Java instance keeps its effect: the Java object's mEffectId field through JNI,
// or a plain pointer (HostInstance) for tools and tests that host effects from C++.
class TALVEQAM_EXPORT EffectSlot {
  public:
    virtual Effect* get() = 0;
    virtual void set(Effect* effect) = 0;

  protected:
    ~EffectSlot() = default;
};

class TALVEQAM_EXPORT HostInstance : public EffectSlot {
  public:
    Effect* get() override { return mEffect; }
    void set(Effect* effect) override { mEffect = effect; }

  private:
    Effect* mEffect = nullptr;
};

// The entry points of the Java class Native, one call each, on the instance `slot`. The JNI
// functions only unpack Java arguments and call these; the host mutex is taken here.
class TALVEQAM_EXPORT Host {
  public:
    static void init(EffectSlot& slot, int width, int height, bool recycle);
    // Opens the effect library at `path` and replaces the slot's effect by a new one from its
    // "createScene". False (the old effect kept) when the library or symbol is missing or
    // createScene returns null; otherwise `resourceNames` receives the effect's resources.
    static bool loadEffect(EffectSlot& slot, const char* path,
                           std::vector<std::string>& resourceNames);
    static void destroy(EffectSlot& slot);
    static void pauseAnimation();
    static void resumeAnimation();

    // `pixels`: width x height ARGB colours, converted in place to RGBA byte order (and
    // opaque for "bg"), as the caller's array is left. Null removes the texture.
    static void loadTexture(EffectSlot& slot, const char* name, int32_t* pixels, size_t pixelCount,
                            int width, int height);
    // `data` null removes the model.
    static void loadModel(EffectSlot& slot, const char* name, const void* data, size_t length);

    // One frame; true when the effect wants another.
    static bool draw(EffectSlot& slot);
    static void drawBgOnly(EffectSlot& slot, int width, int height);
    static void onTouch(EffectSlot& slot, int x, int y, int action);
    static void clear(EffectSlot& slot);
    static void showUnlock(EffectSlot& slot);
    static void showAffordance(EffectSlot& slot, int x, int y);
    static void setParameters(EffectSlot& slot, const int32_t* keys, const float* values,
                              size_t count);
};

}  // namespace vi
