#pragma once

#include <cstdint>
#include <vector>

#include "Common/Platform/Export.h"

namespace Kinetra {

// The root of every scene. An effect library derives its scene from this class and overrides
// the hooks it needs; the owner drives the tree through the non-virtual entry points, each of
// which runs the scene's own hook and then passes the call on, depth first, to the child layers
// in the order they were added. Children are not owned.
class TALVEQAM_EXPORT KNISceneComponent {
  public:
    KNISceneComponent();
    virtual ~KNISceneComponent();

    // Store the size, clear to opaque black, set the viewport, run the hook, then every child.
    void onInitScene(int width, int height);
    void onSurfaceChanged(int width, int height);
    // Clears colour, depth and stencil to opaque black; no hook, no children.
    void clearGLBuffer();

    void onSetTextureEvent(const char* name);
    void onSetTextureColorEvent(const char* name);

    // Appends a scene layer; the same layer added twice gets every call twice.
    void addSceneLayer(KNISceneComponent* layer);
    // Removes the first entry of any kind that holds `layer`; the others keep their order.
    void removeMaskLayer(void* layer);

    // Only 1 counts as visible.
    void setVisibility(int visibility);
    int getVisibility() const;
    // A frozen child is still drawn but neither updated nor touched.
    void setFrozen(bool frozen);
    bool isFrozen() const;

    void onUpdateScene();
    void onDrawScene();
    void onResetScene();
    // Walks the visible children and does nothing else.
    void setForceScene();
    void onKeyEvent(int key);
    void onCustomEvent(int id, float value);
    // A first argument of 0 also calls touchDown(c, xs[0], ys[0]); the hook touchEvent gets
    // (c, a, b, xs, ys), the children the arguments as received.
    void onTouchEvent(int a, int b, int c, int* xs, int* ys);
    void onHoverEvent(int a, int b, int c);
    void onSensorEvent(int type, float x, float y, float z);
    // The first non-zero isEmptyScene() of this scene and its visible children, else 0.
    int isEmpty();

  protected:
    // Entry kinds: scene layers are dispatched to, every other kind is skipped.
    static constexpr int32_t kSceneLayer = 0;

    // Places an entry that every dispatch skips; `kind` must not be kSceneLayer.
    void addMaskLayer(int kind, void* layer);

    // The hooks, in the order derived scenes line up with; all empty here.
    virtual void initScene(int width, int height);
    virtual void changeSurface(int width, int height);
    virtual void spareHook();  // never called by the framework
    virtual void updateScene();
    virtual void drawScene();
    virtual void keyEvent(int key);
    virtual void customEvent(int id, float value);
    virtual void touchDown(int c, int x, int y);
    virtual void hoverEvent(int a, int b, int c);
    virtual void touchEvent(int c, int a, int b, int* xs, int* ys);
    virtual void sensorEvent(int type, float x, float y, float z);
    virtual void setTexture(const char* name);
    virtual void setTextureColor(const char* name);
    virtual void resetScene();
    virtual int isEmptyScene();

  private:
    struct LayerEntry {
        int32_t kind;
        void* layer;
    };
    enum class Filter { kAll, kVisible, kVisibleNotFrozen };

    // Calls `call` on every scene layer that passes `filter`. The list is read again after
    // each call, so a child may add or remove entries of its parent meanwhile.
    template <typename Call>
    void forEachLayer(Filter filter, Call call);
    void prepareSurface(int width, int height);

    std::vector<LayerEntry> mLayers;

  protected:
    int32_t mWidth;
    int32_t mHeight;
    int32_t mReserved;  // free for derived scenes
    int32_t mVisibility;
    bool mFrozen;
};

}  // namespace Kinetra
