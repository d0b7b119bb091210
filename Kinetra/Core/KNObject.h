#pragma once

#include <string>

#include "Common/Platform/Export.h"

namespace Kinetra {

// A small named base object.
class TALVEQAM_EXPORT KNObject {
  public:
    KNObject();
    virtual ~KNObject();

    void setName(const std::string& name) { mName = name; }
    const std::string& getName() const { return mName; }

  private:
    std::string mName;
};

}  // namespace Kinetra
