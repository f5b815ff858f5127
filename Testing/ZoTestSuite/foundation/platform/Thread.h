// Thread: what the foundation's threads need of the platform beyond
// std::thread. Names are UTF-8.
#pragma once

#include <string>

namespace ZoPlatform::Thread {

// Names the calling thread for debuggers and process listings. The system
// keeps at most 15 bytes; a longer name is cut on a character boundary.
void SetCurrentName(const std::string& name);
// The name of the calling thread, as the system keeps it.
std::string GetCurrentName();
// Lets the calling thread run on the processors that the process may use
// (the set of its main thread) at normal scheduling priority, whatever the
// thread that started it had. False if either cannot be set; the thread
// then keeps what it had.
bool UseProcessAffinityAndNormalPriority();

}  // namespace ZoPlatform::Thread
