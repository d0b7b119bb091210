#pragma once

#include <string>

namespace qam::preview {

// "frame-0015.png": a run's pictures are named by a prefix and the frame, four digits at least.
std::string numberedName(const char* prefix, int frame);
// Removes the pictures named so with `prefix` from `folder`, as an earlier run left them.
void removeNumbered(const std::string& folder, const std::string& prefix);

}  // namespace qam::preview
