#include "Common/Native/JavaArguments.h"

namespace qam::jni {
namespace {

jint* elements(JNIEnv* env, jintArray array) {
    return env->GetIntArrayElements(array, nullptr);
}
jfloat* elements(JNIEnv* env, jfloatArray array) {
    return env->GetFloatArrayElements(array, nullptr);
}
jbyte* elements(JNIEnv* env, jbyteArray array) {
    return env->GetByteArrayElements(array, nullptr);
}
void release(JNIEnv* env, jintArray array, jint* data) {
    env->ReleaseIntArrayElements(array, data, 0);
}
void release(JNIEnv* env, jfloatArray array, jfloat* data) {
    env->ReleaseFloatArrayElements(array, data, 0);
}
void release(JNIEnv* env, jbyteArray array, jbyte* data) {
    env->ReleaseByteArrayElements(array, data, 0);
}

}  // namespace

jfieldID JavaEffectSlot::field() {
    static jfieldID effectIdField = nullptr;  // gEffectIdField
    if (effectIdField == nullptr) {
        jclass type = mEnv->GetObjectClass(mObject);
        effectIdField = mEnv->GetFieldID(type, "mEffectId", "J");
        mEnv->DeleteLocalRef(type);
    }
    return effectIdField;
}

vi::Effect* JavaEffectSlot::get() {
    return reinterpret_cast<vi::Effect*>(
        static_cast<intptr_t>(mEnv->GetLongField(mObject, field())));
}

void JavaEffectSlot::set(vi::Effect* effect) {
    mEnv->SetLongField(mObject, field(), static_cast<jlong>(reinterpret_cast<intptr_t>(effect)));
}

JavaString::JavaString(JNIEnv* env, jstring string)
    : mEnv(env),
      mString(string),
      mChars(string != nullptr ? env->GetStringUTFChars(string, nullptr) : nullptr) {}

JavaString::~JavaString() {
    if (mChars != nullptr) {
        mEnv->ReleaseStringUTFChars(mString, mChars);
    }
}

template <typename Array, typename Element>
JavaArray<Array, Element>::JavaArray(JNIEnv* env, Array array)
    : mEnv(env),
      mArray(array),
      mElements(array != nullptr ? elements(env, array) : nullptr),
      mSize(array != nullptr ? static_cast<size_t>(env->GetArrayLength(array)) : 0) {}

template <typename Array, typename Element>
JavaArray<Array, Element>::~JavaArray() {
    if (mElements != nullptr) {
        release(mEnv, mArray, mElements);
    }
}

template class JavaArray<jintArray, jint>;
template class JavaArray<jfloatArray, jfloat>;
template class JavaArray<jbyteArray, jbyte>;

}  // namespace qam::jni
