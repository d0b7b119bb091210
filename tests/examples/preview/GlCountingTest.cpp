#include <GLES2/gl2.h>
#include <GLES2/gl2ext.h>
#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "Common/Platform/HeadlessContext.h"
#include "examples/preview/GlCounting.h"
#include "examples/preview/RunStats.h"
#include "tests/examples/preview/ToolRun.h"

namespace qam::preview {
namespace {

using test::readFile;

void expectCounts(const GlCounts& actual, const GlCounts& expected) {
    for (const GlCounter& counter : kGlCounters) {
        EXPECT_EQ(actual.*counter.field, expected.*counter.field) << counter.name;
    }
}

GLuint whiteProgram() {
    const GLuint program = glCreateProgram();
    for (const char* source : {"attribute vec4 position; void main() { gl_Position = position; }",
                               "void main() { gl_FragColor = vec4(1.0); }"}) {
        const GLuint shader =
            glCreateShader(source[0] == 'a' ? GL_VERTEX_SHADER : GL_FRAGMENT_SHADER);
        glShaderSource(shader, 1, &source, nullptr);
        glCompileShader(shader);
        glAttachShader(program, shader);
    }
    glBindAttribLocation(program, 0, "position");
    glLinkProgram(program);
    return program;
}

TEST(GlCountingTest, CountsEachKindOfWorkOnlyWhileStarted) {
    HeadlessContext context(64, 32);  // current, the viewport over all of it
    const GLuint first = whiteProgram(), second = whiteProgram();
    const GLfloat quad[] = {-1, -1, 1, -1, -1, 1, 1, 1};
    glVertexAttribPointer(0, 2, GL_FLOAT, GL_FALSE, 0, quad);
    glEnableVertexAttribArray(0);
    glUseProgram(first);
    glClear(GL_COLOR_BUFFER_BIT);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);
    expectCounts(takeGlCounts(), {});

    startGlCounting(64, 32);
    glUseProgram(first);  // already in use
    glUseProgram(second);
    glUseProgram(first);
    const uint8_t pixels[64] = {};
    glBindTexture(GL_TEXTURE_2D, 1);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 4, 2, 0, GL_RGBA, GL_UNSIGNED_BYTE, pixels);
    glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 0, 2, 2, GL_RGBA, GL_UNSIGNED_SHORT_4_4_4_4, pixels);
    glBindTexture(GL_TEXTURE_2D, 2);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGB, 3, 3, 0, GL_RGB, GL_UNSIGNED_BYTE, pixels);
    glCompressedTexImage2D(GL_TEXTURE_2D, 0, GL_ETC1_RGB8_OES, 4, 4, 0, 8, pixels);
    glBindTexture(GL_TEXTURE_2D, 3);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, 32, 16, 0, GL_RGBA, GL_UNSIGNED_BYTE, nullptr);
    glBindFramebuffer(GL_FRAMEBUFFER, 1);
    glFramebufferTexture2D(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_TEXTURE_2D, 3, 0);
    glViewport(0, 0, 32, 16);
    glClear(GL_COLOR_BUFFER_BIT);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);  // full screen
    glViewport(0, 0, 16, 16);
    glDrawArrays(GL_TRIANGLE_STRIP, 0, 4);  // half
    glBindRenderbuffer(GL_RENDERBUFFER, 1);
    glRenderbufferStorage(GL_RENDERBUFFER, GL_RGB565, 8, 8);
    glFramebufferRenderbuffer(GL_FRAMEBUFFER, GL_COLOR_ATTACHMENT0, GL_RENDERBUFFER, 1);
    glDrawArrays(GL_TRIANGLE_FAN, 0, 4);  // full screen: the viewport covers 8 x 8
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glViewport(0, 0, 64, 32);
    glClear(GL_COLOR_BUFFER_BIT);
    glDrawArrays(GL_TRIANGLES, 0, 3);
    const GLushort indices[] = {0, 1, 2, 2, 1, 3};
    glDrawElements(GL_TRIANGLES, 6, GL_UNSIGNED_SHORT, indices);  // full screen
    // Draw calls, vertices, program switches, texture binds, upload bytes, framebuffer binds,
    // clears, full-screen passes.
    expectCounts(takeGlCounts(), {5, 21, 2, 3, 32 + 8 + 27 + 8, 2, 2, 3});
    expectCounts(takeGlCounts(), {});
    EXPECT_EQ(context.readPixel(60, 28), 0xFFFFFFFFu);  // only the last draw covers it
}

TEST(RunStatsTest, FrameTimesAreNearestRankPercentiles) {
    // {frames, median, 95th percentile} of frames taking `frames`, `frames` - 1, ... 1 ms.
    const int cases[][3] = {{0, 0, 0}, {1, 1, 1}, {2, 1, 2}, {4, 2, 4}, {20, 10, 19}, {21, 11, 20}};
    for (const auto& [frames, median, p95] : cases) {
        RunStats stats;
        for (int ms = frames; ms > 0; --ms) {
            stats.addFrame({}, ms / 1000.0);
        }
        const RunStats::FrameTimes times = stats.frameTimes();
        EXPECT_NEAR(times.medianMs, median, 1e-9) << frames;
        EXPECT_NEAR(times.p95Ms, p95, 1e-9) << frames;
        EXPECT_NEAR(times.maxMs, frames, 1e-9) << frames;
    }
}

TEST(RunStatsTest, ReportsSetupTotalsAndEveryFrame) {
    RunStats stats;
    stats.setSetup({0, 0, 0, 2, 4096});
    stats.addFrame({3, 12, 1, 0, 0, 0, 1, 1}, 0.004);
    stats.addFrame({5, 12, 1, 0, 0, 0, 1, 1}, 0.0025);
    const std::string path = testing::TempDir() + "stats.json";
    std::string error;
    ASSERT_TRUE(stats.writeJson(path, error)) << error;
    for (const char* part :
         {"\"frames\": 2,", "\"frameTimeMs\": {\"median\": 2.500, \"p95\": 4.000, \"max\": 4.000}",
          "\"setup\": {\"drawCalls\": 0, \"vertices\": 0, \"programSwitches\": 0, "
          "\"textureBinds\": 2, \"uploadBytes\": 4096,",
          "\"total\": {\"drawCalls\": 8, \"vertices\": 24, \"programSwitches\": 2,",
          "{\"frame\": 1, \"timeMs\": 2.500, \"drawCalls\": 5, \"vertices\": 12,"}) {
        EXPECT_NE(readFile(path).find(part), std::string::npos) << part << " in\n"
                                                                << readFile(path);
    }
    EXPECT_FALSE(stats.writeJson(testing::TempDir() + "missing/stats.json", error));
    FILE* table = fopen(path.c_str(), "w");
    stats.print(table);
    fclose(table);
    // Setup, total, mean and max per frame.
    EXPECT_TRUE(std::regex_search(readFile(path), std::regex("\ndrawCalls +0 +8 +4\\.0 +5\n")))
        << readFile(path);
}

}  // namespace
}  // namespace qam::preview
