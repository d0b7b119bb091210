#pragma once

#include <jni.h>

#include <cstddef>

#include "Common/Native/Host.h"

namespace qam::jni {

// The Java object's mEffectId field as the host's effect slot. The field id is looked up on
// first use and kept for the life of the process.
class JavaEffectSlot : public vi::EffectSlot {
  public:
    JavaEffectSlot(JNIEnv* env, jobject object) : mEnv(env), mObject(object) {}
    vi::Effect* get() override;
    void set(vi::Effect* effect) override;

  private:
    jfieldID field();

    JNIEnv* mEnv;
    jobject mObject;
};

// A Java string's UTF-8 characters while in scope; null for a null string.
class JavaString {
  public:
    JavaString(JNIEnv* env, jstring string);
    ~JavaString();
    JavaString(const JavaString&) = delete;
    JavaString& operator=(const JavaString&) = delete;
    const char* get() const { return mChars; }

  private:
    JNIEnv* mEnv;
    jstring mString;
    const char* mChars;
};

// The elements of a Java primitive array while in scope, released with mode 0 (copied back).
template <typename Array, typename Element>
class JavaArray {
  public:
    JavaArray(JNIEnv* env, Array array);
    ~JavaArray();
    JavaArray(const JavaArray&) = delete;
    JavaArray& operator=(const JavaArray&) = delete;
    Element* get() const { return mElements; }
    size_t size() const { return mSize; }

  private:
    JNIEnv* mEnv;
    Array mArray;
    Element* mElements;
    size_t mSize;
};

using JavaIntArray = JavaArray<jintArray, jint>;
using JavaFloatArray = JavaArray<jfloatArray, jfloat>;
using JavaByteArray = JavaArray<jbyteArray, jbyte>;

}  // namespace qam::jni
