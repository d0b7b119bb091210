#include "examples/preview/Script.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace qam::preview {
namespace {

const char* const kEvents = "touch, unlock, clear, pause, resume, affordance or param";

bool toInt(const std::string& token, int& out) {
    if (token.empty()) {
        return false;
    }
    char* end = nullptr;
    errno = 0;
    const long value = strtol(token.c_str(), &end, 10);
    if (*end != '\0' || errno != 0 || value < INT_MIN || value > INT_MAX) {
        return false;
    }
    out = static_cast<int>(value);
    return true;
}

bool toFloat(const std::string& token, float& out) {
    if (token.empty()) {
        return false;
    }
    char* end = nullptr;
    const float value = strtof(token.c_str(), &end);
    if (*end != '\0' || !std::isfinite(value)) {
        return false;
    }
    out = value;
    return true;
}

bool toCoordinate(const std::string& token, Coordinate& out) {
    if (!token.empty() && token.back() == '%') {
        out.percent = true;
        return toFloat(token.substr(0, token.size() - 1), out.value);
    }
    int pixels = 0;
    if (!toInt(token, pixels)) {
        return false;
    }
    out.percent = false;
    out.value = static_cast<float>(pixels);
    return true;
}

std::string quoted(const std::string& token) {
    return "\"" + token + "\"";
}

// The words of one line after its frame number, read left to right. The first failure
// becomes the line's one error.
class Line {
  public:
    Line(std::vector<std::string> words, std::string where, std::vector<std::string>& errors)
        : mWords(std::move(words)), mWhere(std::move(where)), mErrors(errors) {}

    bool fail(const std::string& expected) {
        mErrors.push_back(mWhere + ": expected " + expected);
        return false;
    }
    bool more() const { return mNext < mWords.size(); }
    const std::string& peek() const { return mWords[mNext]; }
    const std::string& take() { return mWords[mNext++]; }

    bool coordinates(const std::string& after, ScriptEvent& event) {
        if (mWords.size() - mNext < 2) {
            return fail("X and Y after " + quoted(after) +
                        " (whole pixels or percentages such as 50%)");
        }
        for (Coordinate* c : {&event.x, &event.y}) {
            const std::string& word = take();
            if (!toCoordinate(word, *c)) {
                return fail(std::string(c == &event.x ? "X" : "Y") +
                            " as whole pixels or a percentage such as 50%, got " + quoted(word));
            }
        }
        return true;
    }
    // Nothing may follow what was read so far.
    bool end() {
        if (!more()) {
            return true;
        }
        std::string read;
        for (size_t i = 1; i < mNext; ++i) {
            read += (i > 1 ? " " : "") + mWords[i];
        }
        return fail("the end of the line after " + quoted(read) + ", got " + quoted(peek()));
    }

  private:
    std::vector<std::string> mWords;
    size_t mNext = 0;
    std::string mWhere;
    std::vector<std::string>& mErrors;
};

bool parseTouch(Line& line, ScriptEvent& event) {
    if (!line.more()) {
        return line.fail("down, move or up after \"touch\"");
    }
    const std::string phase = line.take();
    int phaseCode = 0;
    if (phase == "down") {
        phaseCode = 0;
    } else if (phase == "up") {
        phaseCode = 1;
    } else if (phase == "move") {
        phaseCode = 2;
    } else {
        return line.fail("down, move or up after \"touch\", got " + quoted(phase));
    }
    if (!line.coordinates("touch " + phase, event)) {
        return false;
    }
    int pointer = 1;
    if (line.more()) {
        const std::string word = line.take();
        if (!toInt(word, pointer) || pointer < 1 || pointer > 3) {
            return line.fail("pointer 1, 2 or 3, got " + quoted(word));
        }
    }
    event.action = (pointer - 1) * 3 + phaseCode;
    return line.end();
}

bool parseParam(Line& line, ScriptEvent& event) {
    if (!line.more() || !toInt(line.peek(), event.key)) {
        return line.fail("an integer KEY after \"param\"" +
                         (line.more() ? ", got " + quoted(line.peek()) : std::string()));
    }
    const std::string key = line.take();
    if (!line.more() || !toFloat(line.peek(), event.value)) {
        return line.fail("a number VALUE after \"param " + key + "\"" +
                         (line.more() ? ", got " + quoted(line.peek()) : std::string()));
    }
    line.take();
    return line.end();
}

bool parseEvent(Line& line, ScriptEvent& event) {
    if (!line.more()) {
        return line.fail(std::string("an event after the frame: ") + kEvents);
    }
    const std::string name = line.take();
    using Kind = ScriptEvent::Kind;
    static const std::pair<const char*, Kind> kBare[] = {{"unlock", Kind::Unlock},
                                                         {"clear", Kind::Clear},
                                                         {"pause", Kind::Pause},
                                                         {"resume", Kind::Resume}};
    for (const auto& [word, kind] : kBare) {
        if (name == word) {
            event.kind = kind;
            return line.end();
        }
    }
    if (name == "touch") {
        event.kind = Kind::Touch;
        return parseTouch(line, event);
    }
    if (name == "affordance") {
        event.kind = Kind::Affordance;
        return line.coordinates(name, event) && line.end();
    }
    if (name == "param") {
        event.kind = Kind::Param;
        return parseParam(line, event);
    }
    return line.fail(std::string(kEvents) + ", got " + quoted(name));
}

}  // namespace

int Coordinate::pixels(int extent) const {
    return percent ? static_cast<int>(std::lround(value / 100.0f * extent))
                   : static_cast<int>(value);
}

int Script::lastFrame() const {
    return events.empty() ? -1 : events.back().frame;
}

Script parseScript(const std::string& text, const std::string& fileName,
                   std::vector<std::string>& errors) {
    Script script;
    std::istringstream lines(text);
    std::string content;
    for (int number = 1; std::getline(lines, content); ++number) {
        content = content.substr(0, content.find('#'));
        std::istringstream wordStream(content);
        std::vector<std::string> words;
        for (std::string word; wordStream >> word;) {
            words.push_back(word);
        }
        if (words.empty()) {
            continue;
        }
        Line line(words, fileName + ":" + std::to_string(number), errors);
        ScriptEvent event;
        const std::string first = line.take();
        if (!toInt(first, event.frame) || event.frame < 0) {
            line.fail("a frame number (0 or more) at the start of the line, got " + quoted(first));
            continue;
        }
        if (parseEvent(line, event)) {
            script.events.push_back(event);
        }
    }
    std::stable_sort(script.events.begin(), script.events.end(),
                     [](const ScriptEvent& a, const ScriptEvent& b) { return a.frame < b.frame; });
    return script;
}

Script readScript(const std::string& path, std::vector<std::string>& errors) {
    FILE* file = fopen(path.c_str(), "rb");
    if (file == nullptr) {
        errors.push_back(path + ": cannot read the script: " + strerror(errno));
        return Script();
    }
    std::string text;
    char buffer[4096];
    for (size_t n; (n = fread(buffer, 1, sizeof buffer, file)) > 0;) {
        text.append(buffer, n);
    }
    const int readError = ferror(file) ? errno : 0;
    fclose(file);
    if (readError != 0) {
        errors.push_back(path + ": cannot read the script: " + strerror(readError));
        return Script();
    }
    return parseScript(text, path, errors);
}

Script defaultSwipe(int frames) {
    Script script;
    const int down = frames > 4 ? 1 : 0;
    const int up = std::max(down, frames * 3 / 4);
    auto touch = [&](int frame, int action, float t) {
        ScriptEvent event;
        event.frame = frame;
        event.action = action;
        // From the lower left to the upper right, bowing upwards on the way.
        event.x = {20.0f + 60.0f * t, true};
        event.y = {75.0f - 45.0f * t - 10.0f * std::sin(static_cast<float>(M_PI) * t), true};
        script.events.push_back(event);
    };
    const float span = static_cast<float>(std::max(1, up - down));
    touch(down, 0, 0.0f);
    for (int frame = down + 1; frame < up; ++frame) {
        touch(frame, 2, static_cast<float>(frame - down) / span);
    }
    touch(up, 1, 1.0f);
    return script;
}

}  // namespace qam::preview
