#pragma once

#include <string>

namespace qam::preview {

// "frame-0015.png": a run's pictures are named by a prefix and the frame, four digits at least.
std::string numberedName(const char* prefix, int frame);
// Removes the pictures named so with `prefix` from `folder`, as an earlier run left them.
void removeNumbered(const std::string& folder, const std::string& prefix);
// Makes `folder` if need be and removes the frames an earlier run left there; false with
// `error` set when it cannot be made (`role` names the folder in the message).
bool framesFolder(const std::string& folder, const char* role, std::string& error);

}  // namespace qam::preview
