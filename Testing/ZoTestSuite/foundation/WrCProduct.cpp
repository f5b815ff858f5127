// WrCProduct: the process's registered product.
#include "WrCProduct.h"

#include <mutex>

namespace {

struct SRegistration {
  std::mutex mutex;
  std::optional<WrSProductInfo> oInfo;
};

SRegistration& registration() {
  static SRegistration s_registration;
  return s_registration;
}

}  // namespace

bool WrCProduct::Set(const WrSProductInfo& info, bool bReplace) {
  SRegistration& r = registration();
  std::lock_guard lock(r.mutex);
  if (r.oInfo && !bReplace) return false;
  r.oInfo = info;
  return true;
}

std::optional<WrSProductInfo> WrCProduct::Get() {
  SRegistration& r = registration();
  std::lock_guard lock(r.mutex);
  return r.oInfo;
}
