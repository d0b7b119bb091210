#pragma once

#include <string>

#include "examples/common/Png.h"
#include "examples/preview/ContactSheet.h"
#include "examples/preview/GifWriter.h"

namespace qam::preview {

// The pictures of one run in one folder: frame-NNNN.png per frame, contact-sheet.png and
// preview.gif.
class RunOutput {
  public:
    RunOutput(std::string folder, int width, int height);

    // Creates the folder and drops the frame PNGs an earlier run left there.
    bool open(double rate, std::string& error);
    bool add(int frame, const Image& image, std::string& error);
    // Writes the contact sheet (when there were frames) and ends the GIF.
    bool finish(std::string& error);

    std::string framePath(int frame) const;
    std::string sheetPath() const { return mFolder + "/contact-sheet.png"; }
    std::string gifPath() const { return mFolder + "/preview.gif"; }

  private:
    std::string mFolder;
    int mWidth;
    int mHeight;
    int mFrames = 0;
    ContactSheet mSheet;
    GifWriter mGif;
};

}  // namespace qam::preview
