#pragma once

namespace qam::preview {

// A one-line progress bar on stderr, redrawn in place; only for long runs on a terminal,
// so logs and pipes stay clean.
class Progress {
  public:
    static constexpr int kLongRun = 100;

    explicit Progress(int total);
    ~Progress();
    void update(int done);

  private:
    int mTotal;
    bool mShown;
    int mLastWidth = -1;
};

}  // namespace qam::preview
