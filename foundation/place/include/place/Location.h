// Where a file is.
#pragma once

#include <place/Export.h>
#include <rx/UniString.h>

namespace Place {

// Names a file or folder by its path.
// Nothing is opened or checked. A value: copies are independent.
class PLACE_API Location {
 public:
  // Names nothing: ToPath fails.
  Location() noexcept;
  // Names the file at a zero-terminated UTF-16 path. Null or empty names nothing. Throws RX::OutOfMemoryException.
  Location(const RX::UniChar* path);
  Location(const Location& other);
  ~Location();
  Location& operator=(const Location& other);

  // Gives the path.
  // Returns 0 and fills `path`, or returns a status other than 0 and makes `path` empty when there is nothing to name.
  // Throws RX::OutOfMemoryException.
  int ToPath(RX::UniString& path) const;

 private:
  RX::UniString m_path;
};

}  // namespace Place
