#include "tests/Kinetra/Layers/LayerTestSupport.h"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "Kinetra/Core/KNTextureManager.h"
#include "examples/common/Png.h"
#include "tests/support/LogCapture.h"

namespace qam::test {

std::vector<uint8_t> texels(int width, int height, const std::function<Texel(int x, int y)>& at) {
    std::vector<uint8_t> rgba(static_cast<size_t>(width) * height * 4);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Texel t = at(x, y);
            std::copy(t.begin(), t.end(), &rgba[(static_cast<size_t>(y) * width + x) * 4]);
        }
    }
    return rgba;
}

std::vector<uint8_t> redRamp() {
    return texels(64, 64, [](int x, int) { return Texel{static_cast<uint8_t>(4 * x), 0, 0, 255}; });
}

std::vector<uint8_t> disc() {
    return texels(128, 128, [](int x, int y) {
        const double r = std::hypot(x + 0.5 - 64, y + 0.5 - 64) / 128;
        const double a = std::clamp((0.47 - r) / 0.07, 0.0, 1.0);
        return Texel{255, 255, 255, static_cast<uint8_t>(std::lround(255 * a))};
    });
}

LayerTexture::LayerTexture(int width, int height, const std::vector<uint8_t>& rgba, GLenum filter) {
    glGenTextures(1, &mId);
    glBindTexture(GL_TEXTURE_2D, mId);
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, static_cast<GLint>(filter));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, static_cast<GLint>(filter));
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, width, height, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 rgba.data());
}

LayerTexture::LayerTexture(Texel colour) : LayerTexture(4, 4, [&](int, int) { return colour; }) {}

LayerTexture::~LayerTexture() {
    if (mId != 0) {
        glDeleteTextures(1, &mId);
    }
}

unsigned int namedTexture(const char* name, int width, int height, std::vector<uint8_t> rgba) {
    Kinetra::KNTextureManager* textures = Kinetra::KNTextureManager::getInstancePtr();
    textures->setTextureMagFilterOption(GL_NEAREST);
    return textures->setTexture(name, rgba.data(), width, height);
}

unsigned int namedTexture(const char* name, Texel colour) {
    return namedTexture(name, 1, 1, std::vector<uint8_t>(colour.begin(), colour.end()));
}

void registerBackground() {
    std::vector<uint8_t> rows = texels(96, 64, [](int, int y) {
        return Texel{60, static_cast<uint8_t>(4 * y), 200, 255};
    });
    Kinetra::KNTextureManager::getInstancePtr()->setTextureMagFilterOption(GL_LINEAR);
    Kinetra::KNTextureManager::getInstancePtr()->setTexture("bg", rows.data(), 96, 64);
}

std::unique_ptr<Kinetra::KNFBO> boundTarget(int width, int height, Texel clear) {
    auto target = std::make_unique<Kinetra::KNFBO>();
    target->setClearColor(static_cast<float>(unit(clear[0])), static_cast<float>(unit(clear[1])),
                          static_cast<float>(unit(clear[2])), static_cast<float>(unit(clear[3])));
    target->createFBOSurface(width, height);
    target->bindFBOSurface();
    return target;
}

SavedTarget::SavedTarget() {
    glGetIntegerv(GL_FRAMEBUFFER_BINDING, &mFramebuffer);
    glGetIntegerv(GL_VIEWPORT, mViewport);
}

void SavedTarget::restore() const {
    glBindFramebuffer(GL_FRAMEBUFFER, static_cast<GLuint>(mFramebuffer));
    glViewport(mViewport[0], mViewport[1], mViewport[2], mViewport[3]);
}

int byteOf(double v) {
    return static_cast<int>(std::lround(std::clamp(v, 0.0, 1.0) * 255.0));
}

void expectPoints(const std::vector<Kinetra::KNVector3D<float>>& actual,
                  std::initializer_list<std::pair<float, float>> expected) {
    ASSERT_EQ(actual.size(), expected.size());
    size_t i = 0;
    for (const auto& [x, y] : expected) {
        EXPECT_FLOAT_EQ(actual[i].x, x) << "entry " << i;
        EXPECT_FLOAT_EQ(actual[i].y, y) << "entry " << i;
        EXPECT_EQ(actual[i].z, 0.0f) << "entry " << i;
        ++i;
    }
}

GLuint boundTexture(GLenum unit) {
    glActiveTexture(GL_TEXTURE0 + unit);
    GLint name = 0;
    glGetIntegerv(GL_TEXTURE_BINDING_2D, &name);
    return static_cast<GLuint>(name);
}

float uniformFloat(GLuint program, const char* name) {
    float value = 0;
    glGetUniformfv(program, glGetUniformLocation(program, name), &value);
    return value;
}

void expectUniformSlots(Kinetra::KNShaderManager& shader,
                        std::initializer_list<const char*> names) {
    const GLuint program = shader.getProgram();
    int slot = 0;
    for (const char* name : names) {
        EXPECT_EQ(shader.getUniform(slot++), glGetUniformLocation(program, name)) << name;
    }
}

void expectSamplers(GLuint program, std::initializer_list<Sampler> samplers) {
    GLint unit = 0;
    for (const Sampler& s : samplers) {
        GLint value = -1;
        glGetUniformiv(program, glGetUniformLocation(program, s.name), &value);
        EXPECT_EQ(value, unit) << s.name;
        EXPECT_EQ(boundTexture(static_cast<GLenum>(unit)), s.texture) << s.name;
        ++unit;
    }
    glActiveTexture(GL_TEXTURE0);
}

void expectOneLogLineEach(std::initializer_list<std::function<void()>> calls) {
    LogCapture log;
    int i = 0;
    for (const auto& call : calls) {
        const size_t before = log.messages().size();
        call();
        EXPECT_EQ(log.messages().size(), before + 1) << "call " << i++;
    }
}

::testing::AssertionResult leaveLayerFrame(const std::string& className, int width, int height) {
    std::filesystem::create_directories(LAYER_FRAMES_DIR);
    const std::string path = std::string(LAYER_FRAMES_DIR) + "/" + className + ".png";
    const Image drawn = readFramebuffer(width, height);
    if (!writePng(path, drawn)) {
        return ::testing::AssertionFailure() << "no frame written for " << className;
    }
    Image image;
    if (!readPng(path, image)) {
        return ::testing::AssertionFailure() << path << " does not read back";
    }
    if (image.width != width || image.height != height || image.rgba != drawn.rgba) {
        return ::testing::AssertionFailure() << path << " differs from the framebuffer";
    }
    return ::testing::AssertionSuccess();
}

void LayerTest::SetUp() {
    GLTest::SetUp();
    Kinetra::KNTextureManager::ReleaseInstance();
}

void LayerTest::TearDown() {
    Kinetra::KNTextureManager::ReleaseInstance();
}

void TargetLayerTest::SetUp() {
    LayerTest::SetUp();
    mTarget = boundTarget(kWidth, kHeight);
}

}  // namespace qam::test
