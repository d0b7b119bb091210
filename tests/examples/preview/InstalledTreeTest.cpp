// cmake --install into a scratch prefix, then what an outside author does with it: compile
// against the installed headers, build an effect with find_package(TalveQam) and render it
// with the installed qam-preview.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/examples/preview/ToolRun.h"

namespace {

namespace fs = std::filesystem;
using qam::test::fileExists;
using qam::test::runTool;
using qam::test::ToolResult;

TEST(InstalledTreeTest, AnEffectBuiltOutsideAgainstTheInstalledPackageRendersInTheInstalledTool) {
    const std::string folder = qam::test::freshFolder();
    const std::string prefix = folder + "/prefix";
    ToolResult run = runTool({CMAKE_COMMAND, "--install", BUILD_DIR, "--prefix", prefix});
    ASSERT_EQ(run.status, 0) << run.out << run.err;

    const std::string include = prefix + "/include/talveqam/";
    for (const char* header :
         {"Common/Platform/Export.h", "Common/Platform/AssetManager.h",
          "Common/Platform/AssetDirectory.h", "Common/Effect/Effect.h", "Common/Native/Host.h",
          "Common/Renderer/Base/Renderer.h", "Kinetra/Core/KNIRenderer.h"}) {
        EXPECT_TRUE(fileExists(include + header)) << header;
    }
    for (const char* header : {"Common/Platform/Log.h", "Common/Platform/HeadlessContext.h",
                               "Common/Native/HostState.h", "Common/Native/HostLock.h"}) {
        EXPECT_FALSE(fileExists(include + header)) << header;
    }
    EXPECT_TRUE(fileExists(prefix + "/lib/libtalveQamCommon.so"));
    EXPECT_TRUE(fileExists(prefix + "/lib/cmake/TalveQam/TalveQamConfig.cmake"));
    EXPECT_TRUE(fileExists(prefix + "/share/java/talveqam-native.jar"));
    EXPECT_TRUE(fileExists(prefix + "/bin/qam-preview"));

    // Every installed header compiles with only the installed tree and glm.
    std::string everything;
    for (const auto& entry : fs::recursive_directory_iterator(include)) {
        if (entry.path().extension() == ".h") {
            everything +=
                "#include \"" + entry.path().lexically_relative(include).string() + "\"\n";
        }
    }
    qam::test::writeFile(folder + "/everything.cpp", everything);
    run = runTool({CXX_COMPILER, "-std=c++17", "-fsyntax-only", "-Wall", "-Wextra", "-Werror", "-I",
                   include, "-I", GLM_INCLUDE, folder + "/everything.cpp"});
    EXPECT_EQ(run.status, 0) << everything << run.err;

    const std::string build = folder + "/build";
    run =
        runTool({CMAKE_COMMAND, "-S", OUTSIDE_PROJECT, "-B", build, "-DCMAKE_PREFIX_PATH=" + prefix,
                 "-DCMAKE_CXX_COMPILER=" CXX_COMPILER, "-DCMAKE_BUILD_TYPE=Release"});
    ASSERT_EQ(run.status, 0) << run.out << run.err;
    run = runTool({CMAKE_COMMAND, "--build", build});
    ASSERT_EQ(run.status, 0) << run.out << run.err;

    qam::test::writeFile(folder + "/run.txt",
                         "0 param 0 0.2\n0 param 1 0.4\n0 param 2 1\n"
                         "1 touch down 5 5\n");
    run = runTool({prefix + "/bin/qam-preview", build + "/libqam_outside_effect.so", "--frames",
                   "2", "--size", "32x24", "--rate", "0", "--script", folder + "/run.txt", "--out",
                   folder + "/out"});
    ASSERT_EQ(run.status, 0) << run.out << run.err;
    qam::Image first;
    qam::Image second;
    ASSERT_TRUE(qam::readPng(folder + "/out/frame-0000.png", first));
    ASSERT_TRUE(qam::readPng(folder + "/out/frame-0001.png", second));
    const uint32_t before = qam::test::pixelAt(first, 16, 12);
    const uint32_t after = qam::test::pixelAt(second, 16, 12);
    EXPECT_NEAR(static_cast<int>(before >> 24), 51, 1);  // 0.2, 0.4, 1
    EXPECT_NEAR(static_cast<int>(before >> 16 & 0xFF), 102, 1);
    EXPECT_EQ(before & 0xFFFF, 0xFFFFu);
    EXPECT_EQ(after >> 24, 0xFFu);  // the touch swapped red and blue
    EXPECT_NEAR(static_cast<int>(after >> 8 & 0xFF), 51, 1);
}

}  // namespace
