#include "examples/preview/Progress.h"

#include <unistd.h>

#include <cstdio>

namespace qam::preview {
namespace {
constexpr int kBarWidth = 40;
}

Progress::Progress(int total) : mTotal(total), mShown(total >= kLongRun && isatty(2)) {}

Progress::~Progress() {
    if (mShown && mLastWidth >= 0) {
        fputc('\n', stderr);
    }
}

void Progress::update(int done) {
    const int width = done * kBarWidth / mTotal;
    if (!mShown || (width == mLastWidth && done != mTotal)) {
        return;
    }
    mLastWidth = width;
    char bar[kBarWidth + 1];
    for (int i = 0; i < kBarWidth; ++i) {
        bar[i] = i < width ? '#' : '.';
    }
    bar[kBarWidth] = '\0';
    fprintf(stderr, "\r[%s] %d/%d frames", bar, done, mTotal);
    fflush(stderr);
}

}  // namespace qam::preview
