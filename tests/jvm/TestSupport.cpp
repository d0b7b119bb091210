// Natives of the Java class TestSupport, for the JVM tests.
#include <GLES2/gl2.h>
#include <jni.h>

#include <memory>
#include <string>
#include <vector>

#include "Common/Platform/HeadlessContext.h"
#include "tests/effects/RecordingEffect.h"
#include "tests/support/LogCapture.h"

namespace {

std::unique_ptr<qam::HeadlessContext> gContext;
std::unique_ptr<qam::test::LogCapture> gLog;

jobjectArray toJava(JNIEnv* env, const std::vector<std::string>& lines) {
    jclass stringClass = env->FindClass("java/lang/String");
    jobjectArray array =
        env->NewObjectArray(static_cast<jsize>(lines.size()), stringClass, nullptr);
    for (size_t i = 0; i < lines.size(); ++i) {
        jstring line = env->NewStringUTF(lines[i].c_str());
        env->SetObjectArrayElement(array, static_cast<jsize>(i), line);
        env->DeleteLocalRef(line);
    }
    return array;
}

}  // namespace

#define TEST_METHOD(Result, name) extern "C" JNIEXPORT Result JNICALL Java_TestSupport_##name

TEST_METHOD(void, makeCurrent)(JNIEnv*, jclass, jint width, jint height) {
    if (!gContext) {
        gContext = std::make_unique<qam::HeadlessContext>(width, height);
    } else {
        gContext->resize(width, height);
    }
    gContext->makeCurrent();
}

TEST_METHOD(void, loseContext)(JNIEnv*, jclass) {
    gContext->replaceContext();
}

TEST_METHOD(void, clearScreen)(JNIEnv*, jclass) {
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glClearColor(0, 0, 0, 0);
    glClear(GL_COLOR_BUFFER_BIT);
}

TEST_METHOD(jint, readPixel)(JNIEnv*, jclass, jint x, jint y) {
    return static_cast<jint>(gContext->readPixel(x, y));
}

TEST_METHOD(void, startLog)(JNIEnv*, jclass) {
    gLog.reset();  // a capture left open by a failed test gives stderr back first
    gLog = std::make_unique<qam::test::LogCapture>();
}

TEST_METHOD(jobjectArray, stopLog)(JNIEnv* env, jclass) {
    std::vector<std::string> messages = gLog ? gLog->messages() : std::vector<std::string>{};
    gLog.reset();
    return toJava(env, messages);
}

TEST_METHOD(jobjectArray, takeCalls)(JNIEnv* env, jclass) {
    std::vector<std::string> lines;
    const std::string all = recordingEffectCalls();
    size_t begin = 0;
    for (size_t end; (end = all.find('\n', begin)) != std::string::npos; begin = end + 1) {
        lines.push_back(all.substr(begin, end - begin));
    }
    recordingEffectReset();
    return toJava(env, lines);
}
