#pragma once

#include <glm/glm.hpp>

namespace qam::samples {

// The size a sample builds its surfaces for: what init gave, a negative size an empty surface.
inline glm::vec2 surfaceSize(const glm::vec2& screenSize) {
    return glm::max(screenSize, glm::vec2(0.0f));
}

}  // namespace qam::samples
