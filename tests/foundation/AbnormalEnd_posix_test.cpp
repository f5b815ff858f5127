#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "TempDirectory.h"
#include "foundation/ZoUniqueId.h"
#include "foundation/platform/AbnormalEnd.h"
#include "foundation/platform/NamedSemaphore.h"
#include "foundation/platform/Process.h"
#include "foundation/platform/SharedMemory.h"

namespace AbnormalEnd = ZoPlatform::AbnormalEnd;
namespace fs = std::filesystem;
using ZoPlatform::Process::CChild;
using ZoPlatform::Process::SSpawnRequest;

namespace {

SSpawnRequest sleeper(bool ownGroup) {
  SSpawnRequest request;
  request.arguments = {"sleep", "300"};
  request.bOwnProcessGroup = ownGroup;
  return request;
}

std::string freshName() { return "ZoTestSuite-" + ZoUniqueIdT<CString>::GetUniqueID().ToUtf8(); }

}  // namespace

TEST(AbnormalEnd, KillsTheChildrenThatWereStartedAndNotYetReaped) {
  CChild inGroup, alone;
  ASSERT_TRUE(inGroup.Start(sleeper(true)));
  ASSERT_TRUE(alone.Start(sleeper(false)));
  EXPECT_TRUE(AbnormalEnd::HasChild(inGroup.GetId()));
  EXPECT_TRUE(AbnormalEnd::HasChild(alone.GetId()));
  AbnormalEnd::KillChildrenAndRemoveFiles();
  ASSERT_TRUE(inGroup.WaitFor(10000));
  ASSERT_TRUE(alone.WaitFor(10000));
  EXPECT_TRUE(inGroup.GetExitStatus().bSignaled);
  EXPECT_EQ(alone.GetExitStatus().iCode, 9);
}

TEST(AbnormalEnd, AReapedChildLeavesTheList) {
  CChild child;
  ASSERT_TRUE(child.Start(sleeper(true)));
  const int pid = child.GetId();
  child.Kill();
  EXPECT_FALSE(AbnormalEnd::HasChild(pid));
}

TEST(AbnormalEnd, RemovesTheNamesThatWereCreatedAndNotYetRemoved) {
  const std::string block = freshName(), event = freshName(), gone = freshName();
  ASSERT_TRUE(ZoPlatform::SharedMemory::Create(block, 4096));
  ZoPlatform::NamedSemaphore::CSemaphore semaphore;
  ASSERT_TRUE(semaphore.Create(event, 0));
  ASSERT_TRUE(ZoPlatform::SharedMemory::Create(gone, 4096));
  ASSERT_TRUE(ZoPlatform::SharedMemory::Remove(gone));
  AbnormalEnd::KillChildrenAndRemoveFiles();
  EXPECT_FALSE(ZoPlatform::SharedMemory::Exists(block));
  EXPECT_FALSE(ZoPlatform::NamedSemaphore::Exists(event));
}

TEST(AbnormalEnd, RemovesListedFilesOnlyAndForgetsThoseTakenOff) {
  TempDirectory directory;
  const std::string listed = directory.Path().ToUtf8() + "listed", takenOff = directory.Path().ToUtf8() + "off",
                    other = directory.Path().ToUtf8() + "other";
  for (const std::string& path : {listed, takenOff, other}) std::ofstream(path) << "x";
  AbnormalEnd::AddFile(listed);
  AbnormalEnd::AddFile(takenOff);
  AbnormalEnd::RemoveFile(takenOff);
  AbnormalEnd::KillChildrenAndRemoveFiles();
  EXPECT_FALSE(fs::exists(listed));
  EXPECT_TRUE(fs::exists(takenOff));
  EXPECT_TRUE(fs::exists(other));
}
