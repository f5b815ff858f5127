// XbRTTI: the registry behind the type records.
#include "XbRTTI.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <vector>

namespace {

// Records by class name; several under one name in order of registration.
struct SRegistry {
  std::shared_mutex mutex;
  std::map<std::wstring, std::vector<const XbRTTI*>, std::less<>> classes;
};

// Made on first use and never destroyed: libraries may leave the registry
// during the process's exit, after the statics of this one have gone.
SRegistry& registry() {
  static SRegistry* s_pRegistry = new SRegistry();
  return *s_pRegistry;
}

}  // namespace

bool XbRTTI::IsKindOf(const XbRTTI& other) const {
  for (const XbRTTI* p = this; p; p = p->m_pBase) {
    if (p == &other) return true;
  }
  return false;
}

const XbRTTI* XbRTTI::Find(const wchar_t* className) {
  if (!className) return nullptr;
  SRegistry& r = registry();
  std::shared_lock lock(r.mutex);
  const auto it = r.classes.find(std::wstring_view(className));
  return it == r.classes.end() ? nullptr : it->second.front();
}

XbRTTI::FnCreate XbRTTI::getCreate(const wchar_t* className) {
  // The record stays valid after the look-up: its library cannot be
  // unloaded while the caller still expects to create from it.
  const XbRTTI* rtti = Find(className);
  return rtti ? rtti->m_fnCreate : nullptr;
}

void XbRTTI::Register(const XbRTTI& rtti) {
  SRegistry& r = registry();
  std::unique_lock lock(r.mutex);
  r.classes[rtti.m_szClassName].push_back(&rtti);
}

void XbRTTI::Unregister(const XbRTTI& rtti) {
  SRegistry& r = registry();
  std::unique_lock lock(r.mutex);
  const auto it = r.classes.find(std::wstring_view(rtti.m_szClassName));
  if (it == r.classes.end()) return;
  std::vector<const XbRTTI*>& records = it->second;
  records.erase(std::remove(records.begin(), records.end(), &rtti), records.end());
  if (records.empty()) r.classes.erase(it);
}
