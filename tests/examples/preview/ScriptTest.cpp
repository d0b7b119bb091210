#include <gtest/gtest.h>

#include "examples/preview/Script.h"
#include "tests/examples/preview/ToolRun.h"

namespace {

using qam::preview::Script;
using qam::preview::ScriptEvent;
using Kind = ScriptEvent::Kind;

Script parse(const std::string& text, std::vector<std::string>& errors) {
    return qam::preview::parseScript(text, "run.txt", errors);
}

TEST(ScriptTest, EveryEventParsesAndEventsApplyByFrameThenAsWritten) {
    std::vector<std::string> errors;
    const Script script = parse(
        "# a swipe with a second finger\n"
        "\n"
        "10 touch up 50% 25% 2   # second pointer lifts\n"
        "0 param 3 0.5\n"
        "0  touch down 12 700\n"
        "10 touch move 12.5% 100% 3\n"
        "4 unlock\n"
        "4 clear\n"
        "5 pause\n"
        "6 resume\n"
        "7 affordance 180 320\n"
        "0 param -2 1e3\n",
        errors);
    ASSERT_TRUE(errors.empty()) << errors[0];
    const std::vector<std::pair<int, Kind>> order = {
        {0, Kind::Param},  {0, Kind::Touch}, {0, Kind::Param},  {4, Kind::Unlock},
        {4, Kind::Clear},  {5, Kind::Pause}, {6, Kind::Resume}, {7, Kind::Affordance},
        {10, Kind::Touch}, {10, Kind::Touch}};
    ASSERT_EQ(script.events.size(), order.size());
    for (size_t i = 0; i < order.size(); ++i) {
        EXPECT_EQ(script.events[i].frame, order[i].first) << i;
        EXPECT_EQ(script.events[i].kind, order[i].second) << i;
    }
    EXPECT_EQ(script.lastFrame(), 10);

    EXPECT_EQ(script.events[0].key, 3);
    EXPECT_EQ(script.events[0].value, 0.5f);
    EXPECT_EQ(script.events[2].key, -2);
    EXPECT_EQ(script.events[2].value, 1000.0f);

    // Actions as the host numbers them: pointer p's down, up, move = 3(p-1) + 0, 1, 2.
    const ScriptEvent& down = script.events[1];
    EXPECT_EQ(down.action, 0);
    EXPECT_EQ(down.x.pixels(360), 12);
    EXPECT_EQ(down.y.pixels(640), 700);  // pixels are taken as given, even off screen
    const ScriptEvent& secondUp = script.events[8];
    EXPECT_EQ(secondUp.action, 4);
    EXPECT_EQ(secondUp.x.pixels(361), 181);  // 180.5 rounds away from zero
    EXPECT_EQ(secondUp.y.pixels(640), 160);
    const ScriptEvent& thirdMove = script.events[9];
    EXPECT_EQ(thirdMove.action, 8);
    EXPECT_EQ(thirdMove.x.pixels(360), 45);
    EXPECT_EQ(thirdMove.y.pixels(640), 640);
    EXPECT_EQ(script.events[7].x.pixels(360), 180);
}

TEST(ScriptTest, BadLinesSayFileLineAndWhatWasExpectedAndTheGoodLinesStay) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"x touch down 1 2",
         "expected a frame number (0 or more) at the start of the line, "
         "got \"x\""},
        {"-1 unlock", "expected a frame number (0 or more) at the start of the line, got \"-1\""},
        {"3",
         "expected an event after the frame: touch, unlock, clear, pause, resume, "
         "affordance or param"},
        {"3 jump",
         "expected touch, unlock, clear, pause, resume, affordance or param, got "
         "\"jump\""},
        {"3 touch", "expected down, move or up after \"touch\""},
        {"3 touch press 1 2", "expected down, move or up after \"touch\", got \"press\""},
        {"3 touch down 1",
         "expected X and Y after \"touch down\" (whole pixels or percentages "
         "such as 50%)"},
        {"3 touch move 1.5 2",
         "expected X as whole pixels or a percentage such as 50%, got "
         "\"1.5\""},
        {"3 touch up 1 y%",
         "expected Y as whole pixels or a percentage such as 50%, got "
         "\"y%\""},
        {"3 touch down 1 2 4", "expected pointer 1, 2 or 3, got \"4\""},
        {"3 touch down 1 2 1 1",
         "expected the end of the line after \"touch down 1 2 1\", "
         "got \"1\""},
        {"3 unlock now", "expected the end of the line after \"unlock\", got \"now\""},
        {"3 affordance 5",
         "expected X and Y after \"affordance\" (whole pixels or percentages "
         "such as 50%)"},
        {"3 param", "expected an integer KEY after \"param\""},
        {"3 param red 1", "expected an integer KEY after \"param\", got \"red\""},
        {"3 param 1", "expected a number VALUE after \"param 1\""},
        {"3 param 1 nan", "expected a number VALUE after \"param 1\", got \"nan\""},
        {"3 param 1 2 3", "expected the end of the line after \"param 1 2\", got \"3\""},
    };
    std::string text = "0 clear\n";
    for (const auto& [line, message] : cases) {
        text += line + "\n";
    }
    text += "9 unlock\n";
    std::vector<std::string> errors;
    const Script script = parse(text, errors);
    ASSERT_EQ(errors.size(), cases.size());
    for (size_t i = 0; i < cases.size(); ++i) {
        EXPECT_EQ(errors[i], "run.txt:" + std::to_string(i + 2) + ": " + cases[i].second)
            << cases[i].first;
    }
    ASSERT_EQ(script.events.size(), 2u);
    EXPECT_EQ(script.events[1].kind, Kind::Unlock);
}

TEST(ScriptTest, AnUnreadableFileIsOneErrorNamingIt) {
    const std::string folder = qam::test::freshFolder();
    std::vector<std::string> errors;
    EXPECT_TRUE(qam::preview::readScript(folder + "/none.txt", errors).events.empty());
    qam::preview::readScript(folder, errors);
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_EQ(errors[0], folder + "/none.txt: cannot read the script: No such file or directory");
    EXPECT_EQ(errors[1], folder + ": cannot read the script: Is a directory");

    qam::test::writeFile(folder + "/empty.txt", "");
    qam::test::writeFile(folder + "/one.txt", "2 clear\n1 touch\n");
    EXPECT_TRUE(qam::preview::readScript(folder + "/empty.txt", errors).events.empty());
    EXPECT_EQ(qam::preview::readScript(folder + "/one.txt", errors).events.size(), 1u);
    ASSERT_EQ(errors.size(), 3u);
    EXPECT_EQ(errors[2], folder + "/one.txt:2: expected down, move or up after \"touch\"");
}

TEST(ScriptTest, TheDefaultSwipeCrossesTheScreenWithOneFingerAndLifts) {
    const Script swipe = qam::preview::defaultSwipe(60);
    ASSERT_EQ(swipe.events.size(), 45u);  // down at 1, moves 2..44, up at 45
    EXPECT_EQ(swipe.events.front().frame, 1);
    EXPECT_EQ(swipe.events.front().action, 0);
    EXPECT_EQ(swipe.events.back().frame, 45);
    EXPECT_EQ(swipe.events.back().action, 1);
    int lastX = -1;
    for (size_t i = 0; i < swipe.events.size(); ++i) {
        const ScriptEvent& e = swipe.events[i];
        EXPECT_EQ(e.frame, static_cast<int>(i) + 1);
        EXPECT_EQ(e.kind, Kind::Touch);
        if (i > 0 && i + 1 < swipe.events.size()) {
            EXPECT_EQ(e.action, 2);
        }
        const int x = e.x.pixels(360);
        const int y = e.y.pixels(640);
        EXPECT_GT(x, lastX);
        EXPECT_GT(y, 0);
        EXPECT_LT(y, 640);
        lastX = x;
    }
    EXPECT_EQ(swipe.events.front().x.pixels(100), 20);
    EXPECT_EQ(swipe.events.back().x.pixels(100), 80);

    const Script one = qam::preview::defaultSwipe(1);
    ASSERT_EQ(one.events.size(), 2u);
    EXPECT_EQ(one.events[0].frame, 0);
    EXPECT_EQ(one.events[1].frame, 0);
    EXPECT_EQ(one.events[1].action, 1);
}

}  // namespace
