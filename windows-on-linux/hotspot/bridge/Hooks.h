// The hooks among the VM's start options.
#pragma once

#include <jni.h>

#include <vector>

namespace hotspot {

// Puts a hook of the bridge in the place of each hook of the host, and adds those that end the process as Windows does.
void BridgeHooks(std::vector<JavaVMOption>& options);

// Lets no hook run while the host exits.
void EndHooksAtExit();

}  // namespace hotspot
