#include "Common/Tools/File.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "Common/Platform/AssetDirectory.h"
#include "tests/support/LogCapture.h"

namespace {

using vi::File;

std::string contents(File& file) {
    return std::string(static_cast<const char*>(file.getBuffer()), file.getLength());
}

TEST(FileTest, ReadsAPathOrAnAssetWholeLoadReplacesAndWriteAppends) {
    const std::string directory = testing::TempDir() + "qam-files";
    std::filesystem::create_directories(directory);
    std::ofstream(directory + "/model.bin") << "0123456789";
    std::ofstream(directory + "/short.bin") << "ab";
    std::ofstream(directory + "/empty.bin").flush();
    AAssetManager* saved = File::getAssetManager();
    File::getAssetManager() = vi::AssetDirectory::open(directory);
    File fromPath(directory + "/model.bin", false);
    EXPECT_EQ(contents(fromPath), "0123456789");
    File fromAssets("model.bin", true);
    EXPECT_EQ(contents(fromAssets), "0123456789");
    fromAssets.load("short.bin");
    EXPECT_EQ(contents(fromAssets), "ab");
    vi::AssetDirectory::close(File::getAssetManager());
    File::getAssetManager() = saved;

    qam::test::LogCapture log;  // empty files are quiet; a folder or no data is one line each
    File file(directory + "/empty.bin", false);
    EXPECT_EQ(file.getLength(), 0u);
    file.write("abc", 3);
    file.write("de", 2);
    file.write(nullptr, 4);
    EXPECT_EQ(contents(file), "abcde");
    File folder(directory, false);
    EXPECT_EQ(folder.getLength(), 0u);
    EXPECT_EQ(log.messages().size(), 2u);
}

}  // namespace
