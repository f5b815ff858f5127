// AbnormalEnd: the list of what a process must still undo when it has to
// end at once from a signal handler: the child processes it started and the
// names it created in /dev/shm.
//
// The platform's own code keeps the list: a child goes on it when it is
// started and off when it is reaped; a shared memory or semaphore name when
// it is created and off when it is removed. The list has a fixed room and
// allocates nothing; what does not fit is left to the ordinary clean-up.
#pragma once

#include <string>

namespace ZoPlatform::AbnormalEnd {

// `bGroup`: the child leads a process group of its own, which goes with it.
void AddChild(int pid, bool bGroup);
void RemoveChild(int pid);
bool HasChild(int pid);
// A file to remove, by its full path.
void AddFile(const std::string& path);
void RemoveFile(const std::string& path);

// Sends SIGKILL to every child on the list (to its whole group where it
// leads one) and removes every file on the list. Async-signal-safe: takes no
// lock, allocates nothing, so a signal handler may call it.
void KillChildrenAndRemoveFiles();

}  // namespace ZoPlatform::AbnormalEnd
