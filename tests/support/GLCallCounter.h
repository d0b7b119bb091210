#pragma once

#include <string>

namespace qam::test {

// Counts calls of the GL functions listed in GLCallCounter.cpp, made by anything linked into
// the test executable. Linking this file interposes those functions; each forwards to the
// real driver.
class GLCallCounter {
  public:
    GLCallCounter();  // starts from zero
    // Calls of `function` (e.g. "glTexImage2D") since construction.
    int count(const std::string& function) const;
    // Calls of every counted function since construction.
    int total() const;
};

}  // namespace qam::test
