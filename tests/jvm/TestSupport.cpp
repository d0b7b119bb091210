// Natives of the Java class TestSupport, for the JVM test.
#include <jni.h>

#include <memory>
#include <string>

#include "Common/Platform/HeadlessContext.h"
#include "tests/effects/RecordingEffect.h"
#include "tests/support/LogCapture.h"

static std::unique_ptr<qam::HeadlessContext> gContext;
static std::unique_ptr<qam::test::LogCapture> gLog;

#define TEST_METHOD(Result, name) extern "C" JNIEXPORT Result JNICALL Java_TestSupport_##name

TEST_METHOD(void, makeCurrent)(JNIEnv*, jclass, jint width, jint height) {
    gContext = std::make_unique<qam::HeadlessContext>(width, height);
    gContext->makeCurrent();
}

TEST_METHOD(void, loseContext)(JNIEnv*, jclass) {
    gContext->replaceContext();
}

TEST_METHOD(jint, readPixel)(JNIEnv*, jclass, jint x, jint y) {
    return static_cast<jint>(gContext->readPixel(x, y));
}

TEST_METHOD(void, startLog)(JNIEnv*, jclass) {
    gLog.reset();  // a capture left open by a failed scenario gives stderr back first
    gLog = std::make_unique<qam::test::LogCapture>();
}

TEST_METHOD(jstring, stopLog)(JNIEnv* env, jclass) {
    std::string lines;
    for (const std::string& message : gLog->messages()) {
        lines += message + "\n";
    }
    gLog.reset();
    return env->NewStringUTF(lines.c_str());
}

TEST_METHOD(jstring, takeCalls)(JNIEnv* env, jclass) {
    jstring calls = env->NewStringUTF(recordingEffectCalls());
    recordingEffectReset();
    return calls;
}
