// The native methods of com.korvane.android.visualeffect.lock.common.Native: each unpacks its
// Java arguments and calls the host.
#include <jni.h>

#include <string>
#include <vector>

#include "Common/Native/Host.h"
#include "Common/Native/JavaArguments.h"
#include "Common/Platform/Log.h"

using qam::jni::JavaByteArray;
using qam::jni::JavaEffectSlot;
using qam::jni::JavaFloatArray;
using qam::jni::JavaIntArray;
using qam::jni::JavaString;
using vi::Host;

#define NATIVE_METHOD(Result, name)     \
    extern "C" JNIEXPORT Result JNICALL \
        Java_com_korvane_android_visualeffect_lock_common_Native_##name

NATIVE_METHOD(void, init)(JNIEnv* env, jobject self, jint width, jint height, jboolean recycle) {
    JavaEffectSlot slot(env, self);
    Host::init(slot, width, height, recycle == JNI_TRUE);
}

NATIVE_METHOD(jobjectArray, loadEffect)(JNIEnv* env, jobject self, jstring path) {
    JavaEffectSlot slot(env, self);
    JavaString libraryPath(env, path);
    std::vector<std::string> names;
    if (!Host::loadEffect(slot, libraryPath.get(), names)) {
        return nullptr;
    }
    jclass stringClass = env->FindClass("java/lang/String");
    jstring empty = env->NewStringUTF("");
    jobjectArray result = env->NewObjectArray(static_cast<jsize>(names.size()), stringClass, empty);
    for (size_t i = 0; i < names.size(); ++i) {
        jstring name = env->NewStringUTF(names[i].c_str());
        env->SetObjectArrayElement(result, static_cast<jsize>(i), name);
        env->DeleteLocalRef(name);
    }
    env->DeleteLocalRef(empty);
    env->DeleteLocalRef(stringClass);
    return result;
}

NATIVE_METHOD(void, destroy)(JNIEnv* env, jobject self) {
    JavaEffectSlot slot(env, self);
    Host::destroy(slot);
}

NATIVE_METHOD(void, pauseAnimation)(JNIEnv*, jobject) {
    Host::pauseAnimation();
}

NATIVE_METHOD(void, resumeAnimation)(JNIEnv*, jobject) {
    Host::resumeAnimation();
}

NATIVE_METHOD(void, loadTexture)
(JNIEnv* env, jobject self, jstring name, jintArray pixels, jint width, jint height) {
    JavaEffectSlot slot(env, self);
    JavaString textureName(env, name);
    JavaIntArray colours(env, pixels);
    Host::loadTexture(slot, textureName.get(), colours.get(), colours.size(), width, height);
}

NATIVE_METHOD(void, loadModel)(JNIEnv* env, jobject self, jstring name, jbyteArray data) {
    JavaEffectSlot slot(env, self);
    JavaString modelName(env, name);
    JavaByteArray bytes(env, data);
    Host::loadModel(slot, modelName.get(), bytes.get(), bytes.size());
}

NATIVE_METHOD(jboolean, draw)(JNIEnv* env, jobject self) {
    JavaEffectSlot slot(env, self);
    return Host::draw(slot) ? JNI_TRUE : JNI_FALSE;
}

NATIVE_METHOD(void, drawBgOnly)(JNIEnv* env, jobject self, jint width, jint height) {
    JavaEffectSlot slot(env, self);
    Host::drawBgOnly(slot, width, height);
}

NATIVE_METHOD(void, onTouch)(JNIEnv* env, jobject self, jint x, jint y, jint action) {
    JavaEffectSlot slot(env, self);
    Host::onTouch(slot, x, y, action);
}

NATIVE_METHOD(void, clear)(JNIEnv* env, jobject self) {
    JavaEffectSlot slot(env, self);
    Host::clear(slot);
}

NATIVE_METHOD(void, showUnlock)(JNIEnv* env, jobject self) {
    JavaEffectSlot slot(env, self);
    Host::showUnlock(slot);
}

NATIVE_METHOD(void, showAffordance)(JNIEnv* env, jobject self, jint x, jint y) {
    JavaEffectSlot slot(env, self);
    Host::showAffordance(slot, x, y);
}

NATIVE_METHOD(void, setParameters)(JNIEnv* env, jobject self, jintArray keys, jfloatArray values) {
    JavaEffectSlot slot(env, self);
    JavaIntArray keyArray(env, keys);
    JavaFloatArray valueArray(env, values);
    // A missing array, or fewer values than keys, would be read past its end.
    if (keys == nullptr || values == nullptr) {
        qam::logErrorOnce(slot.get(), "setParameters: keys or values missing, ignored");
        return;
    }
    if (valueArray.size() < keyArray.size()) {
        qam::logErrorOnce(slot.get(), "setParameters: %zu values for %zu keys, ignored",
                          valueArray.size(), keyArray.size());
        return;
    }
    Host::setParameters(slot, keyArray.get(), valueArray.get(), keyArray.size());
}
