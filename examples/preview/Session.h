#pragma once

#include <string>
#include <vector>

#include "Common/Native/Host.h"
#include "examples/common/Png.h"
#include "examples/preview/Script.h"

namespace qam::preview {

// One hosted effect, driven through the same entry points as the JNI functions call, on
// whatever GL context is current.
class Session {
  public:
    Session() = default;
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Whether `path` is an effect library the loader can open; false with the reason in `error`.
    static bool isEffectLibrary(const std::string& path, std::string& error);
    // Opens the library and creates its effect; false with the reason in `error`.
    bool loadEffect(const std::string& path, std::string& error);
    const std::vector<std::string>& resourceNames() const { return mResourceNames; }

    void init(int width, int height);
    // Hands `image` over as Java does: ARGB ints, row by row.
    void loadTexture(const std::string& name, const Image& image);
    void loadModel(const std::string& name, const std::vector<unsigned char>& bytes);

    // `x`, `y` in pixels from the top left.
    void touch(int x, int y, int action);
    void showUnlock();
    void showAffordance(int x, int y);
    void clear();
    void pause();
    void resume();
    bool paused() const { return mPaused; }
    void setParameter(int key, float value);
    void apply(const ScriptEvent& event);

    // One frame; true when the effect wants another.
    bool draw();

  private:
    vi::HostInstance mSlot;
    std::vector<std::string> mResourceNames;
    // What was handed over, to take back at the end as Java does when it lets go.
    std::vector<std::string> mTextures;
    std::vector<std::string> mModels;
    int mWidth = 0;
    int mHeight = 0;
    bool mPaused = false;
};

}  // namespace qam::preview
