#include "run/external/ExternalObjectSweep.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/ZoUniqueId.h"
#include "foundation/platform/NamedSemaphore.h"
#include "foundation/platform/Process.h"
#include "foundation/platform/SharedMemory.h"
#include "foundation/platform/System.h"
#include "run/external/ExternalObjectName.h"

using namespace TestSuite;
namespace SharedMemory = ZoPlatform::SharedMemory;
namespace NamedSemaphore = ZoPlatform::NamedSemaphore;

namespace {

// The id of a process that has ended and been reaped.
std::uint32_t endedProcess() {
  ZoPlatform::Process::CChild child;
  if (!child.Start({{"true"}, "", ZoPlatform::Process::EStandardStreams::eNull})) return 0;
  const auto pid = static_cast<std::uint32_t>(child.GetId());
  child.WaitFor(60000);
  return pid;
}

// A fresh id as if process `pid` had made it.
CString idOf(std::uint32_t pid) { return FormatString(L"%08X", pid) + ZoUniqueIdT<CString>::GetUniqueID().Mid(8); }

// A shared block and an event under one id, made by this process.
struct SObjects {
  explicit SObjects(const CString& id) : sName(MakeExternalObjectName(id)) {
    bMade = SharedMemory::Create(sName, 4096) && semaphore.Create(sName, 0);
  }
  ~SObjects() {
    SharedMemory::Remove(sName);
    NamedSemaphore::Remove(sName);
  }
  bool Exist() const { return SharedMemory::Exists(sName) || NamedSemaphore::Exists(sName); }
  std::string sName;
  NamedSemaphore::CSemaphore semaphore;
  bool bMade = false;
};

}  // namespace

TEST(ExternalObjectSweep, RemovesTheNamesOfEndedCreatorsAndKeepsThoseOfLiveOnes) {
  const std::uint32_t ended = endedProcess();
  ASSERT_NE(ended, 0u);
  ASSERT_FALSE(ZoPlatform::Process::Exists(ended));
  SObjects stale(idOf(ended));
  SObjects live(idOf(ZoPlatform::System::GetProcessId()));
  ASSERT_TRUE(stale.bMade && live.bMade);
  EXPECT_GE(RemoveStaleExternalObjects(), 2u);
  EXPECT_FALSE(SharedMemory::Exists(stale.sName));
  EXPECT_FALSE(NamedSemaphore::Exists(stale.sName));
  EXPECT_TRUE(SharedMemory::Exists(live.sName));
  EXPECT_TRUE(NamedSemaphore::Exists(live.sName));
}

TEST(ExternalObjectSweep, KeepsNamesOfItsPrefixThatNameNoCreator) {
  const std::string name = std::string(sc_szExternalObjectPrefix) + "not-an-id";
  ASSERT_TRUE(SharedMemory::Create(name, 4096));
  RemoveStaleExternalObjects();
  EXPECT_TRUE(SharedMemory::Exists(name));
  SharedMemory::Remove(name);
}
