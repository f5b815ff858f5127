// AbnormalEnd on Linux: fixed tables of slots claimed with an atomic state,
// which a signal handler reads without a lock; kill(2) and unlink(2), both
// async-signal-safe, do the work.
#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cstring>

#include "AbnormalEnd.h"

namespace ZoPlatform::AbnormalEnd {

namespace {

constexpr int sc_iChildSlots = 1024;
constexpr int sc_iFileSlots = 1024;
constexpr std::size_t sc_uiPathBytes = 272;

// 0: free; otherwise the pid, negated for a group leader.
std::atomic<int> s_children[sc_iChildSlots] = {};

enum EFileSlot : int { eFree, eWriting, eReady };

struct SFileSlot {
  std::atomic<int> state{eFree};
  char path[sc_uiPathBytes];
};

SFileSlot s_files[sc_iFileSlots];

}  // namespace

void AddChild(int pid, bool bGroup) {
  if (pid <= 0) return;
  for (std::atomic<int>& slot : s_children) {
    int expected = 0;
    if (slot.compare_exchange_strong(expected, bGroup ? -pid : pid)) return;
  }
}

void RemoveChild(int pid) {
  if (pid <= 0) return;
  for (std::atomic<int>& slot : s_children) {
    int expected = pid;
    if (slot.compare_exchange_strong(expected, 0)) return;
    expected = -pid;
    if (slot.compare_exchange_strong(expected, 0)) return;
  }
}

bool HasChild(int pid) {
  for (const std::atomic<int>& slot : s_children) {
    const int entry = slot.load();
    if (entry != 0 && (entry == pid || entry == -pid)) return true;
  }
  return false;
}

void AddFile(const std::string& path) {
  if (path.empty() || path.size() >= sc_uiPathBytes) return;
  for (SFileSlot& slot : s_files) {
    int expected = eFree;
    if (!slot.state.compare_exchange_strong(expected, eWriting)) continue;
    std::memcpy(slot.path, path.c_str(), path.size() + 1);
    slot.state.store(eReady);
    return;
  }
}

void RemoveFile(const std::string& path) {
  for (SFileSlot& slot : s_files) {
    if (slot.state.load() != eReady || path != slot.path) continue;
    int expected = eReady;
    if (slot.state.compare_exchange_strong(expected, eWriting)) {
      slot.state.store(eFree);
      return;
    }
  }
}

void KillChildrenAndRemoveFiles() {
  for (std::atomic<int>& slot : s_children) {
    const int entry = slot.load();
    if (entry < 0) ::kill(entry, SIGKILL);  // the group, the child included
    if (entry != 0) ::kill(entry < 0 ? -entry : entry, SIGKILL);
  }
  for (SFileSlot& slot : s_files)
    if (slot.state.load() == eReady) ::unlink(slot.path);
}

}  // namespace ZoPlatform::AbnormalEnd
