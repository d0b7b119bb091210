#include "Kinetra/Core/KNObject.h"

namespace Kinetra {

KNObject::KNObject() = default;

KNObject::~KNObject() = default;

}  // namespace Kinetra
