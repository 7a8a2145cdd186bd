// Equality of options begins with their class.
#pragma once

#include <mirel/base/Object.h>

namespace torvan::jvmlauncher::options {

// Gives `other` as what `option` is, or null unless both have the very same class record.
// A class derived from the option's has a record of its own and so equals no option of the base.
template <typename Option>
const Option* SameClass(const Option& option, const mirel::base::CObject* other) {
  const bool same = other != nullptr && other->GetClass() == option.GetClass();
  return same ? static_cast<const Option*>(other) : nullptr;
}

}  // namespace torvan::jvmlauncher::options
