#pragma once

namespace vi {
class Effect;
}

namespace qam::samples {

// Hands the effect's "bg" texture, which Java loads into the host's texture map, to the Kinetra
// layers: uploads it when it has no GL texture yet and registers it with
// Kinetra::KNTextureManager under the same name, which the layers crop to.
class BackgroundLink {
  public:
    // True when the texture or its size changed since the last call: layers that crop to the
    // background must do it again, copies of it must be made again.
    bool refresh(vi::Effect& effect);
    // The GL texture, 0 while Java has loaded none.
    unsigned id() const { return mId; }
    // The context is gone: the next refresh registers the texture anew.
    void forget() { mId = 0; }

  private:
    unsigned mId = 0;
    unsigned mWidth = 0;
    unsigned mHeight = 0;
};

}  // namespace qam::samples
