// cmake --install into a scratch prefix, then what an outside author does with it: compile
// against the installed headers, build an effect with find_package(TalveQam) and render it
// with the installed qam-preview.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/examples/preview/ToolRun.h"

namespace {

namespace fs = std::filesystem;
using qam::test::runBuilt;
using qam::test::runTool;

TEST(InstalledTreeTest, AnEffectBuiltOutsideAgainstTheInstalledPackageRendersInTheInstalledTool) {
    const std::string folder = qam::test::freshFolder();
    const std::string prefix = folder + "/prefix", include = prefix + "/include/talveqam/";
    qam::test::ToolResult run =
        runTool({CMAKE_COMMAND, "--install", BUILD_DIR, "--prefix", prefix}, folder);
    ASSERT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_TRUE(fs::exists(prefix + "/share/java/talveqam-native.jar"));
    // Only the public headers are installed, and each compiles with the installed tree and glm.
    for (const char* internal :
         {"Common/Platform/Log.h", "Common/Native/HostState.h", "Common/Registries/Registries.h"}) {
        EXPECT_FALSE(fs::exists(include + internal)) << internal;
    }
    std::string everything;
    for (const auto& entry : fs::recursive_directory_iterator(include)) {
        if (entry.path().extension() == ".h") {
            everything +=
                "#include \"" + entry.path().lexically_relative(include).string() + "\"\n";
        }
    }
    qam::test::writeFile(folder + "/everything.cpp", everything);
    std::vector<std::string> compile{CXX_COMPILER,
                                     "-std=c++17",
                                     "-fsyntax-only",
                                     "-Wall",
                                     "-Wextra",
                                     "-Werror",
                                     "-I",
                                     include,
                                     "-I",
                                     GLM_INCLUDE,
                                     folder + "/everything.cpp"};
    const std::string build = folder + "/build";
    std::vector<std::string> configure{CMAKE_COMMAND, "-S",  OUTSIDE_PROJECT,
                                       "-B",          build, "-DCMAKE_PREFIX_PATH=" + prefix};
    if (std::string(TOOLCHAIN_FILE).empty()) {
        configure.push_back("-DCMAKE_CXX_COMPILER=" CXX_COMPILER);
    } else {  // as an author cross-builds: the package is outside the target's root
        compile.push_back("--sysroot=" SYSROOT);
        configure.push_back("-DCMAKE_TOOLCHAIN_FILE=" TOOLCHAIN_FILE);
        configure.push_back("-DTalveQam_DIR=" + prefix + "/" INSTALL_LIBDIR "/cmake/TalveQam");
    }
    run = runTool(compile, folder);
    EXPECT_EQ(run.status, 0) << everything << run.err;

    for (const std::vector<std::string>& step : {configure, {CMAKE_COMMAND, "--build", build}}) {
        run = runTool(step, folder);
        ASSERT_EQ(run.status, 0) << run.out << run.err;
    }
    // Colour (0.2, 0.4, 1) from parameters; the touch on frame 1 swaps red and blue.
    qam::test::writeFile(folder + "/run.txt",
                         "0 param 0 0.2\n0 param 1 0.4\n0 param 2 1\n1 touch down 5 5\n");
    run = runBuilt({prefix + "/bin/qam-preview", build + "/libqam_outside_effect.so", "--frames",
                    "2", "--size", "32x24", "--rate", "0", "--script", folder + "/run.txt", "--out",
                    folder + "/out"},
                   folder);
    ASSERT_EQ(run.status, 0) << run.out << run.err;
    for (auto [frame, colour] : {std::pair{0, 0x3366FFFFu}, {1, 0xFF6633FFu}}) {
        qam::Image image;
        ASSERT_TRUE(
            qam::readPng(folder + "/out/frame-000" + std::to_string(frame) + ".png", image));
        EXPECT_TRUE(qam::test::pixelIs(image, 16, 12, colour)) << frame;
    }
}

}  // namespace
