#include "Kinetra/Core/KNISceneComponent.h"

#include <GLES2/gl2.h>

#include "Common/Platform/Log.h"

namespace Kinetra {

KNISceneComponent::KNISceneComponent()
    : mWidth(0), mHeight(0), mReserved(0), mVisibility(1), mFrozen(false) {}

KNISceneComponent::~KNISceneComponent() {
    qam::forgetLoggedOnce(this);
}

template <typename Call>
void KNISceneComponent::forEachLayer(Filter filter, Call call) {
    // Index and size are read afresh each round: the call may grow or shrink mLayers.
    for (size_t i = 0; i < mLayers.size(); ++i) {
        const LayerEntry entry = mLayers[i];
        if (entry.kind != kSceneLayer) {
            continue;
        }
        auto* child = static_cast<KNISceneComponent*>(entry.layer);
        if (child == nullptr) {  // added as it came; there is nothing to call
            qam::logErrorOnce(this, "KNISceneComponent: null scene layer skipped");
            continue;
        }
        if (filter != Filter::kAll && child->mVisibility != 1) {
            continue;
        }
        if (filter == Filter::kVisibleNotFrozen && child->mFrozen) {
            continue;
        }
        call(*child);
    }
}

void KNISceneComponent::prepareSurface(int width, int height) {
    mWidth = width;
    mHeight = height;
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    glViewport(0, 0, width, height);
}

void KNISceneComponent::onInitScene(int width, int height) {
    prepareSurface(width, height);
    initScene(width, height);
    forEachLayer(Filter::kAll, [&](KNISceneComponent& child) { child.onInitScene(width, height); });
}

void KNISceneComponent::onSurfaceChanged(int width, int height) {
    prepareSurface(width, height);
    changeSurface(width, height);
    forEachLayer(Filter::kAll,
                 [&](KNISceneComponent& child) { child.onSurfaceChanged(width, height); });
}

void KNISceneComponent::clearGLBuffer() {
    glClearColor(0, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
}

// The name is passed on as given, null included: what it means is the hooks' business.
void KNISceneComponent::onSetTextureEvent(const char* name) {
    setTexture(name);
    forEachLayer(Filter::kAll, [&](KNISceneComponent& child) { child.onSetTextureEvent(name); });
}

void KNISceneComponent::onSetTextureColorEvent(const char* name) {
    setTextureColor(name);
    forEachLayer(Filter::kVisible,
                 [&](KNISceneComponent& child) { child.onSetTextureColorEvent(name); });
}

void KNISceneComponent::addSceneLayer(KNISceneComponent* layer) {
    mLayers.push_back({kSceneLayer, layer});
}

void KNISceneComponent::addMaskLayer(int kind, void* layer) {
    if (kind == kSceneLayer) {
        qam::logErrorOnce(this,
                          "KNISceneComponent::addMaskLayer: kind 0 is for scene layers, dropped");
        return;
    }
    mLayers.push_back({kind, layer});
}

void KNISceneComponent::removeMaskLayer(void* layer) {
    for (auto entry = mLayers.begin(); entry != mLayers.end(); ++entry) {
        if (entry->layer == layer) {
            mLayers.erase(entry);
            return;
        }
    }
}

void KNISceneComponent::onUpdateScene() {
    updateScene();
    forEachLayer(Filter::kVisibleNotFrozen,
                 [](KNISceneComponent& child) { child.onUpdateScene(); });
}

void KNISceneComponent::onDrawScene() {
    drawScene();
    forEachLayer(Filter::kVisible, [](KNISceneComponent& child) { child.onDrawScene(); });
}

void KNISceneComponent::onResetScene() {
    resetScene();
    forEachLayer(Filter::kVisible, [](KNISceneComponent& child) { child.onResetScene(); });
}

void KNISceneComponent::setForceScene() {
    forEachLayer(Filter::kVisible, [](KNISceneComponent& child) { child.setForceScene(); });
}

void KNISceneComponent::onKeyEvent(int key) {
    keyEvent(key);
    forEachLayer(Filter::kVisible, [&](KNISceneComponent& child) { child.onKeyEvent(key); });
}

void KNISceneComponent::onCustomEvent(int id, float value) {
    customEvent(id, value);
    forEachLayer(Filter::kVisible,
                 [&](KNISceneComponent& child) { child.onCustomEvent(id, value); });
}

void KNISceneComponent::onTouchEvent(int a, int b, int c, int* xs, int* ys) {
    if (a == 0) {
        if (xs != nullptr && ys != nullptr) {
            touchDown(c, xs[0], ys[0]);
        } else {  // no first position to read; the rest of the event goes on
            qam::logErrorOnce(this,
                              "KNISceneComponent::onTouchEvent: touch down without "
                              "positions, touchDown skipped");
        }
    }
    touchEvent(c, a, b, xs, ys);
    forEachLayer(Filter::kVisibleNotFrozen,
                 [&](KNISceneComponent& child) { child.onTouchEvent(a, b, c, xs, ys); });
}

void KNISceneComponent::onHoverEvent(int a, int b, int c) {
    hoverEvent(a, b, c);
    forEachLayer(Filter::kVisible, [&](KNISceneComponent& child) { child.onHoverEvent(a, b, c); });
}

void KNISceneComponent::onSensorEvent(int type, float x, float y, float z) {
    sensorEvent(type, x, y, z);
    forEachLayer(Filter::kVisible,
                 [&](KNISceneComponent& child) { child.onSensorEvent(type, x, y, z); });
}

int KNISceneComponent::isEmpty() {
    int result = isEmptyScene();
    forEachLayer(Filter::kVisible, [&](KNISceneComponent& child) {
        if (result == 0) {
            result = child.isEmpty();
        }
    });
    return result;
}

// Derived scenes override what they need.
void KNISceneComponent::initScene(int, int) {}
void KNISceneComponent::changeSurface(int, int) {}
void KNISceneComponent::spareHook() {}
void KNISceneComponent::updateScene() {}
void KNISceneComponent::drawScene() {}
void KNISceneComponent::keyEvent(int) {}
void KNISceneComponent::customEvent(int, float) {}
void KNISceneComponent::touchDown(int, int, int) {}
void KNISceneComponent::hoverEvent(int, int, int) {}
void KNISceneComponent::touchEvent(int, int, int, int*, int*) {}
void KNISceneComponent::sensorEvent(int, float, float, float) {}
void KNISceneComponent::setTexture(const char*) {}
void KNISceneComponent::setTextureColor(const char*) {}
void KNISceneComponent::resetScene() {}
int KNISceneComponent::isEmptyScene() {
    return 0;
}

void KNISceneComponent::setVisibility(int visibility) {
    mVisibility = visibility;
}

int KNISceneComponent::getVisibility() const {
    return mVisibility;
}

void KNISceneComponent::setFrozen(bool frozen) {
    mFrozen = frozen;
}

bool KNISceneComponent::isFrozen() const {
    return mFrozen;
}

}  // namespace Kinetra
