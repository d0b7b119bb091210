#include "Common/Tools/File.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "Common/Platform/AssetDirectory.h"
#include "tests/support/LogCapture.h"

namespace {

using vi::File;

// A temporary directory with one file in it, removed afterwards.
class FileTest : public ::testing::Test {
  protected:
    void SetUp() override {
        char pattern[] = "/tmp/qam-file-XXXXXX";
        mDirectory = mkdtemp(pattern);
        writeFile("model.bin", "0123456789");
        mSavedManager = File::getAssetManager();
        File::getAssetManager() = vi::AssetDirectory::open(mDirectory);
    }
    void TearDown() override {
        vi::AssetDirectory::close(File::getAssetManager());
        File::getAssetManager() = mSavedManager;
        std::system(("rm -rf " + mDirectory).c_str());
    }
    void writeFile(const std::string& name, const std::string& content) {
        FILE* f = fopen((mDirectory + "/" + name).c_str(), "wb");
        fwrite(content.data(), 1, content.size(), f);
        fclose(f);
    }
    static std::string contents(File& file) {
        return std::string(static_cast<const char*>(file.getBuffer()), file.getLength());
    }

    std::string mDirectory;
    AAssetManager* mSavedManager = nullptr;
};

TEST_F(FileTest, ReadsAPathAndAnAssetWhole) {
    File fromPath(mDirectory + "/model.bin", false);
    EXPECT_EQ(contents(fromPath), "0123456789");
    File fromAssets("model.bin", true);
    EXPECT_EQ(contents(fromAssets), "0123456789");
}

TEST_F(FileTest, LoadOverwritesWhatTheBufferHeld) {
    writeFile("short.bin", "ab");
    File file;
    file.write("previous content", 16);
    file.load("short.bin");
    EXPECT_EQ(contents(file), "ab");
}

TEST_F(FileTest, WriteAppendsAndEmptyFilesAreQuiet) {
    writeFile("empty.bin", "");
    qam::test::LogCapture log;
    File file(mDirectory + "/empty.bin", false);
    EXPECT_EQ(file.getLength(), 0u);
    file.write("abc", 3);
    file.write("de", 2);
    EXPECT_EQ(contents(file), "abcde");
    file.write(nullptr, 4);
    EXPECT_EQ(contents(file), "abcde");
    File directory(mDirectory, false);
    EXPECT_EQ(directory.getLength(), 0u);
    EXPECT_EQ(log.messages(),
              (std::vector<std::string>{"File write: no data for 4 bytes, nothing written",
                                        "File is not a regular file: " + mDirectory}));
}

TEST_F(FileTest, FlushWithoutSdcardLogsAndEmptiesTheBuffer) {
    struct stat info;
    if (stat("/sdcard", &info) == 0) {
        GTEST_SKIP() << "this machine has /sdcard";
    }
    File file;
    file.write("abc", 3);
    qam::test::LogCapture log;
    EXPECT_EQ(file.flush("qam-test.bin", false), EOF);
    EXPECT_EQ(file.getLength(), 0u);
    EXPECT_EQ(log.messages(), std::vector<std::string>{
                                  "File flush: cannot open /sdcard/qam-test.bin, 3 bytes dropped"});
}

using FileDeathTest = FileTest;

TEST_F(FileDeathTest, AMissingFileEndsTheProcessWith46) {
    EXPECT_EXIT(File("/nonexistent/x.bin", false), ::testing::ExitedWithCode(46),
                "qam.vi E .* Exception: \"Invalid file name: \"/nonexistent/x.bin\"\"\n"
                "In file : \"Common/Tools/File\"\nIn function : \"File\"\nIn line : 46");
}

TEST_F(FileDeathTest, AMissingAssetEndsTheProcessWith88) {
    EXPECT_EXIT(File("missing.bin", true), ::testing::ExitedWithCode(88),
                "qam.vi E .* Exception: \"Invalid file name: \"missing.bin\"\"\n"
                "In file : \"Common/Tools/File\"\nIn function : \"load\"\nIn line : 88");
}

}  // namespace
