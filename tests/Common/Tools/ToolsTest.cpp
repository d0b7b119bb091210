#include <cmath>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "Common/Platform/AssetDirectory.h"
#include "Common/Tools/Curves.h"
#include "Common/Tools/File.h"
#include "Common/Tools/Profiler.h"
#include "tests/Common/Renderer/Base/RenderCoreFixture.h"

namespace {

using glm::vec2;
using vi::Curves;
using vi::File;
using vi::Profiler;
using Points = std::vector<vec2>;

class CurvesTest : public qam::test::RenderCoreTest {
  protected:
    // Byte `channel` (0 red .. 3 alpha) of table entry `level`.
    static int entry(Curves& curves, int level, int channel) {
        return static_cast<const unsigned char*>(
            curves.getTexture()->getBuffer())[level * 4 + channel];
    }
};

// Each segment between two points uses them as its outer control points too, so
// y = y1 + (y2 - y1) (t / 2 + 3 t^2 / 2 - t^3) over t = 0..1: (0, 0)..(255, 255) is exact at
// both ends and symmetric, but not the identity. Bytes are truncated and clamped.
TEST_F(CurvesTest, SegmentsFollowTheCatmullRomFormula) {
    const struct {
        Points points;
        std::vector<std::pair<int, int>> entries;  // level, byte
    } cases[] = {
        {{{0, 0}, {255, 255}}, {{0, 0}, {1, 0}, {32, 21}, {64, 52}, {128, 128}, {255, 255}}},
        // Written only between the points; a later segment overwrites a shared end.
        {{{10, 40}, {50, 100}, {50, 100}, {90, 20}},
         {{9, 0}, {10, 40}, {50, 100}, {70, 60}, {90, 20}, {91, 0}}},
        {{{0, -100}, {20, 400}}, {{0, 0}, {10, 150}, {20, 255}}},  // clamped below and above
        // A segment's last entry is its end point: t there is exactly 1.
        {{{0, 0}, {41, 16}}, {{41, 16}}},
        {{{0, 0}, {159, 128}}, {{159, 128}}},
        {{{100, 0}, {141, 64}}, {{141, 64}}},
        {{{90, 30}, {131, 15}}, {{131, 15}}},
    };
    for (const auto& c : cases) {
        Curves curves(nullptr, 0, c.points.data(), static_cast<int>(c.points.size()), nullptr, 0);
        for (auto [level, byte] : c.entries) {
            EXPECT_EQ(entry(curves, level, Curves::GREEN), byte)
                << "level " << level << " of a curve from " << c.points[0].x;
        }
    }
}

// The table is a 1 x 256 RGBA texture uploaded again on every bind, so later edits show. A
// one-pixel-wide viewport 256 rows high puts each of its lowest 64 rows on one texel centre.
TEST_F(CurvesTest, LookupTextureFollowsLaterEditsAndRecomputingKeepsTheFirstAlive) {
    const Points ramp = {{0, 0}, {255, 255}}, green = {{0, 255}, {128, 30}, {255, 200}};
    Curves curves(ramp.data(), 2, green.data(), 3, nullptr, 0);
    std::unique_ptr<vi::Texture> first(curves.getTexture());  // the effect's to delete
    first->allocate();
    // A flat blue curve written into the live table.
    curves.calculateCatmullRomPoint(0, Curves::kLevels, {0, 77}, {0, 77}, {255, 77}, {255, 77},
                                    Curves::BLUE);
    glViewport(0, 0, 1, Curves::kLevels);
    show(*first);
    for (int level = 0; level < kHeight; ++level) {
        ASSERT_EQ(pixel(0, level), uint32_t(entry(curves, level, 0)) << 24 |
                                       uint32_t(entry(curves, level, 1)) << 16 | 77u << 8)
            << "level " << level;
    }

    // Recomputing makes a new texture over the same table and leaves the first one alive in
    // the effect's list: a renderer that holds it still draws, showing the new table. A curve
    // of fewer than two points keeps its channel.
    vi::Drawable quad = strip();
    std::unique_ptr<vi::Renderer> renderer = flat(quad, qam::test::kRed, true, first.get());
    curves.calculateCatmullRomPoints(nullptr, 0, ramp.data(), 2, ramp.data(), 1);
    EXPECT_EQ(mTextures, (std::vector<vi::Texture*>{first.get(), curves.getTexture()}));
    renderer->draw();
    EXPECT_PIXEL_NEAR(pixel(0, 32), 21u << 24 | 21u << 16 | 77u << 8, 1);  // level 32
}

TEST_F(CurvesTest, SegmentsReachingOutsideTheTableAreDroppedWithOneLinePerCause) {
    qam::test::LogCapture log;
    const Points outside = {{-5, 10}, {20, 20}, {40, 40}, {300, 50}}, nan = {{NAN, 10}, {20, 20}};
    Curves curves(outside.data(), 4, nullptr, 3, nan.data(), 2);
    EXPECT_EQ(entry(curves, 40, Curves::RED), 40);  // the one valid segment is drawn
    EXPECT_EQ(std::pair(entry(curves, 41, Curves::RED), entry(curves, 20, Curves::BLUE)),
              std::pair(0, 0));
    curves.calculateCatmullRomPoint(200, 257, {}, {}, {}, {}, Curves::RED);
    curves.calculateCatmullRomPoint(-1, 10, {}, {}, {}, {}, Curves::GREEN);
    EXPECT_EQ(log.messages().size(), 3u);  // outside the table, no points, not a level
}

std::string contents(File& file) {
    return std::string(static_cast<const char*>(file.getBuffer()), file.getLength());
}

TEST(FileTest, ReadsAPathOrAnAssetWholeAndWriteAppends) {
    const std::string directory = testing::TempDir() + "qam-files";
    std::filesystem::create_directories(directory);
    std::ofstream(directory + "/model.bin") << "0123456789";
    std::ofstream(directory + "/empty.bin").flush();
    AAssetManager* saved = File::getAssetManager();
    File::getAssetManager() = vi::AssetDirectory::open(directory);
    File fromPath(directory + "/model.bin", false);
    EXPECT_EQ(contents(fromPath), "0123456789");
    File fromAssets("model.bin", true);
    EXPECT_EQ(contents(fromAssets), "0123456789");
    vi::AssetDirectory::close(File::getAssetManager());
    File::getAssetManager() = saved;

    qam::test::LogCapture log;  // empty files are quiet; a folder or no data is one line each
    File file(directory + "/empty.bin", false);
    file.write("abc", 3);
    file.write("de", 2);
    file.write(nullptr, 4);
    EXPECT_EQ(contents(file), "abcde");
    File folder(directory, false);
    EXPECT_EQ(folder.getLength(), 0u);
    EXPECT_EQ(log.messages().size(), 2u);
}

TEST(ProfilerTest, RecordsKeepCountTotalAndExtremesForAThousandIdsUntilCleared) {
    Profiler::mCount = 0;
    Profiler::clearStatistics();
    qam::test::LogCapture log;
    int user = 0;
    EXPECT_EQ(Profiler::registrateId("frame", &user), 0u);
    const Profiler::Record& record = Profiler::mTimeArray[0];
    const unsigned now = Profiler::getTickCount();
    Profiler::addTime(0, now - 1000);
    Profiler::addTime(0, now - 3000);
    EXPECT_GE(record.min, 1000u);
    EXPECT_GE(record.max, 3000u);
    EXPECT_EQ(std::pair(record.count, record.total), std::pair(2u, record.min + record.max));

    Profiler::clearStatistics();
    EXPECT_EQ(Profiler::mCount, 1u);  // registrations stay
    EXPECT_EQ((std::vector{record.count, record.total, record.max, record.min}),
              (std::vector{0u, 0u, 0u, 0xFFFFFFFFu}));

    for (unsigned id = 1; id < 1000; ++id) {
        ASSERT_EQ(Profiler::registrateId("more", nullptr), id);
    }
    EXPECT_EQ(Profiler::registrateId("late", &user), 1000u);
    EXPECT_EQ(Profiler::mCount, 1000u);
    Profiler::addTime(1000, now);  // addresses no record: dropped, said once
    Profiler::addTime(1000, now);
    EXPECT_EQ(log.messages().size(), 1u);
}

}  // namespace
