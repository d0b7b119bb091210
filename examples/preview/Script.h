#pragma once

#include <string>
#include <vector>

namespace qam::preview {

// A screen coordinate as a script gives it: whole pixels, or a percentage of the extent.
struct Coordinate {
    float value = 0.0f;
    bool percent = false;

    int pixels(int extent) const;
};

// One timed event of a preview run, applied just before the draw of its frame.
struct ScriptEvent {
    enum class Kind { Touch, Unlock, Clear, Pause, Resume, Affordance, Param };

    int frame = 0;
    Kind kind = Kind::Touch;
    int action = 0;  // touches: the host's action code 0 to 8
    Coordinate x;
    Coordinate y;  // downwards, as the Java side passes it
    int key = 0;
    float value = 0.0f;
};

// The events of a run in the order they apply: by frame, then as written.
struct Script {
    std::vector<ScriptEvent> events;

    // The frame of the last event, or -1 when there is none.
    int lastFrame() const;
};

// Parses the text of a script file, one event per line (see README.md). Every bad line adds
// "FILE:LINE: expected ..." to `errors` and is skipped.
Script parseScript(const std::string& text, const std::string& fileName,
                   std::vector<std::string>& errors);

// Reads and parses the script at `path`; an unreadable file adds "PATH: cannot read ..." to
// `errors`.
Script readScript(const std::string& path, std::vector<std::string>& errors);

// The run without a script: one finger swipes across the screen during the first three
// quarters of `frames` and lifts.
Script defaultSwipe(int frames);

}  // namespace qam::preview
