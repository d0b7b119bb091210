#include "examples/preview/NumberedFiles.h"

#include <cstdio>
#include <filesystem>
#include <regex>
#include <system_error>

namespace qam::preview {

namespace fs = std::filesystem;

std::string numberedName(const char* prefix, int frame) {
    char name[32];
    snprintf(name, sizeof name, "%s-%04d.png", prefix, frame);
    return name;
}

void removeNumbered(const std::string& folder, const std::string& prefix) {
    const std::regex numbered(prefix + "-[0-9]+\\.png");
    std::error_code failure;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, failure)) {
        if (std::regex_match(entry.path().filename().string(), numbered)) {
            fs::remove(entry.path(), failure);
        }
    }
}

bool framesFolder(const std::string& folder, const char* role, std::string& error) {
    std::error_code failure;
    fs::create_directories(folder, failure);
    if (failure) {
        error = folder + ": cannot create the " + role + " folder: " + failure.message();
        return false;
    }
    removeNumbered(folder, "frame");
    return true;
}

}  // namespace qam::preview
