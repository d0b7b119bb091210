#include "examples/preview/Script.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/examples/preview/ToolRun.h"

namespace {

using qam::preview::Script;
using qam::preview::ScriptEvent;

// The event a line alone makes, "FRAME KIND ..." (touch actions as the host numbers them:
// pointer p's down, up, move = 3 (p - 1) + 0, 1, 2; positions in pixels of a 361 x 640
// screen), or the error it gives.
std::string parsed(const ScriptEvent& e) {
    const char* kinds[] = {"touch", "unlock", "clear", "pause", "resume", "affordance", "param"};
    std::ostringstream text;
    text << e.frame << " " << kinds[static_cast<int>(e.kind)];
    if (e.kind == ScriptEvent::Kind::Touch) {
        text << " " << e.action;
    }
    if (e.kind == ScriptEvent::Kind::Touch || e.kind == ScriptEvent::Kind::Affordance) {
        text << " " << e.x.pixels(361) << " " << e.y.pixels(640);
    }
    if (e.kind == ScriptEvent::Kind::Param) {
        text << " " << e.key << " " << e.value;
    }
    return text.str();
}
std::string parsed(const std::string& line) {
    std::vector<std::string> errors;
    const Script script = qam::preview::parseScript(line, "run.txt", errors);
    return errors.empty() ? parsed(script.events.at(0)) : errors[0];
}

TEST(ScriptTest, EachLineMakesItsEventOrSaysWhereAndWhatWasExpected) {
    const std::string coordinates = "(whole pixels or percentages such as 50%)";
    const std::pair<std::string, std::string> cases[] = {
        {"0  touch down 12 700   # pixels as given, even off screen", "0 touch 0 12 700"},
        {"10 touch up 50% 25% 2", "10 touch 4 181 160"},  // 180.5 rounds away from zero
        {"10 touch move 12.5% 100% 3", "10 touch 8 45 640"},
        {"4 unlock", "4 unlock"},
        {"4 clear", "4 clear"},
        {"5 pause", "5 pause"},
        {"6 resume", "6 resume"},
        {"7 affordance 180 320", "7 affordance 180 320"},
        {"0 param 3 0.5", "0 param 3 0.5"},
        {"0 param -2 1e3", "0 param -2 1000"},
        {"x touch down 1 2",
         "expected a frame number (0 or more) at the start of the line, got \"x\""},
        {"3",
         "expected an event after the frame: touch, unlock, clear, pause, resume, affordance "
         "or param"},
        {"3 jump",
         "expected touch, unlock, clear, pause, resume, affordance or param, got \"jump\""},
        {"3 touch press 1 2", "expected down, move or up after \"touch\", got \"press\""},
        {"3 touch down 1", "expected X and Y after \"touch down\" " + coordinates},
        {"3 touch move 1.5 2",
         "expected X as whole pixels or a percentage such as 50%, got \"1.5\""},
        {"3 touch down 1 2 4", "expected pointer 1, 2 or 3, got \"4\""},
        {"3 touch down 1 2 1 1",
         "expected the end of the line after \"touch down 1 2 1\", got \"1\""},
        {"3 affordance 5", "expected X and Y after \"affordance\" " + coordinates},
        {"3 param red 1", "expected an integer KEY after \"param\", got \"red\""},
        {"3 param 1 nan", "expected a number VALUE after \"param 1\", got \"nan\""},
    };
    for (const auto& [line, expected] : cases) {
        const bool isEvent = std::isdigit(static_cast<unsigned char>(expected[0]));
        EXPECT_EQ(parsed(line), isEvent ? expected : "run.txt:1: " + expected) << line;
    }

    // Events apply by frame, then as written; bad lines are skipped, named by their line.
    std::vector<std::string> errors;
    const Script script = qam::preview::parseScript(
        "# comment\n\n9 clear\n2 unlock\n3 jump\n9 pause\n2 resume\n", "run.txt", errors);
    ASSERT_EQ(script.events.size(), 4u);
    EXPECT_EQ(parsed(script.events[1]) + ", " + parsed(script.events[3]), "2 resume, 9 pause");
    EXPECT_EQ(script.lastFrame(), 9);
    EXPECT_EQ(errors.at(0).rfind("run.txt:5: ", 0), 0u);

    const std::string folder = qam::test::freshFolder();  // an unreadable file is one error
    qam::preview::readScript(folder + "/none.txt", errors);
    EXPECT_EQ(errors.back(),
              folder + "/none.txt: cannot read the script: No such file or directory");

    // Without a script one finger swipes across in the first three quarters, and lifts.
    const Script swipe = qam::preview::defaultSwipe(60);
    ASSERT_EQ(swipe.events.size(), 45u);  // down at 1, moves 2..44, up at 45
    int lastX = -1;
    for (size_t i = 0; i < swipe.events.size(); ++i) {
        EXPECT_EQ(swipe.events[i].frame, static_cast<int>(i) + 1);
        EXPECT_EQ(swipe.events[i].action, i == 0 ? 0 : i == 44 ? 1 : 2);
        EXPECT_GT(swipe.events[i].x.pixels(361), lastX);
        lastX = swipe.events[i].x.pixels(361);
    }
    EXPECT_EQ(swipe.events.front().x.pixels(100), 20);
    EXPECT_EQ(swipe.events.back().x.pixels(100), 80);
}

}  // namespace
