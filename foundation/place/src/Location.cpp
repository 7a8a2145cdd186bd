#include <place/Location.h>

namespace Place {
namespace {

constexpr int Done = 0;
constexpr int NamesNothing = 1;

}  // namespace

Location::Location() noexcept = default;

Location::Location(const RX::UniChar* path) : m_path(path) {}

Location::Location(const Location& other) = default;

Location::~Location() = default;

Location& Location::operator=(const Location& other) = default;

int Location::ToPath(RX::UniString& path) const {
  const RX::UniChar* const units = m_path;
  if (units == nullptr || *units == 0) {
    path = RX::UniString();
    return NamesNothing;
  }
  path = m_path;
  return Done;
}

}  // namespace Place
