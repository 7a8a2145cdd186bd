// Where a file is.
#pragma once

#include <place/Export.h>
#include <rx/UniString.h>

namespace Place {

// The path of a file or folder.
// Nothing is opened or checked. Copies are independent.
class PLACE_API Location {
 public:
  // Constructs a location without a path: ToPath fails.
  Location() noexcept;
  // Takes a zero-terminated UTF-16 path; null or empty makes a location without a path. Throws
  // RX::OutOfMemoryException.
  Location(const RX::UniChar* path);
  Location(const Location& other);
  ~Location();
  Location& operator=(const Location& other);

  // Copies the path into `path` and returns 0.
  // Without a path it makes `path` empty and returns another status. Throws RX::OutOfMemoryException.
  int ToPath(RX::UniString& path) const;

 private:
  RX::UniString m_path;
};

}  // namespace Place
