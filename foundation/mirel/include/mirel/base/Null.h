// The null marker.
#pragma once

namespace mirel::base {

// Compare a handle with it to ask whether the handle is null: `object == CNull()`.
class CNull {};

}  // namespace mirel::base
