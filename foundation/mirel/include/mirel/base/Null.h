// The null marker.
#pragma once

namespace mirel::base {

// What handles are compared with to ask whether they refer to nothing: `object == CNull()`.
class CNull {};

}  // namespace mirel::base
