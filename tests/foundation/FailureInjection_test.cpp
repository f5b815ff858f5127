#include "foundation/platform/FailureInjection.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <vector>

#include "TempDirectory.h"
#include "foundation/ZoUniqueId.h"
#include "foundation/platform/Files.h"
#include "foundation/platform/Process.h"
#include "foundation/platform/SharedMemory.h"

using namespace ZoPlatform;
using FailureInjection::CScopedFailure;
using FailureInjection::EOperation;

namespace {

std::string freshName() { return "ZoTestSuite-" + ZoUniqueIdT<CString>::GetUniqueID().ToUtf8(); }

}  // namespace

TEST(FailureInjection, NothingFailsUntilATestAsks) {
  for (const EOperation operation : {EOperation::eProcessStart, EOperation::eSharedMemoryMap, EOperation::eFileOpen,
                                     EOperation::eFileWrite, EOperation::eDirectoryListing})
    EXPECT_FALSE(FailureInjection::ShouldFail(operation));
}

TEST(FailureInjection, SparedCallsSucceedAndTheRestFailUntilCleared) {
  {
    CScopedFailure failure(EOperation::eFileWrite, 2);
    EXPECT_FALSE(FailureInjection::ShouldFail(EOperation::eFileWrite));
    EXPECT_FALSE(FailureInjection::ShouldFail(EOperation::eFileWrite));
    EXPECT_TRUE(FailureInjection::ShouldFail(EOperation::eFileWrite));
    EXPECT_TRUE(FailureInjection::ShouldFail(EOperation::eFileWrite));
    EXPECT_FALSE(FailureInjection::ShouldFail(EOperation::eFileOpen));
  }
  EXPECT_FALSE(FailureInjection::ShouldFail(EOperation::eFileWrite));
}

TEST(FailureInjection, AProcessStartFailsAsWhenTheSystemIsOutOfProcesses) {
  Process::CChild child;
  int error = 0;
  {
    CScopedFailure failure(EOperation::eProcessStart);
    EXPECT_FALSE(child.Start({{"true"}, "", Process::EStandardStreams::eNull}, &error));
  }
  EXPECT_EQ(error, EAGAIN);
  EXPECT_FALSE(child.IsStarted());
  EXPECT_TRUE(child.Start({{"true"}, "", Process::EStandardStreams::eNull}));
}

TEST(FailureInjection, MakingAndMappingSharedMemoryFail) {
  const std::string name = freshName();
  int error = 0;
  {
    CScopedFailure failure(EOperation::eSharedMemoryMap);
    EXPECT_FALSE(SharedMemory::Create(name, 4096, &error));
    EXPECT_EQ(error, ENOMEM);
  }
  EXPECT_FALSE(SharedMemory::Exists(name));
  ASSERT_TRUE(SharedMemory::Create(name, 4096));
  SharedMemory::CView view;
  {
    CScopedFailure failure(EOperation::eSharedMemoryMap);
    EXPECT_FALSE(view.Open(name, 4096, SharedMemory::EAccess::eReadWrite, &error));
  }
  EXPECT_EQ(view.GetData(), nullptr);
  EXPECT_TRUE(view.Open(name, 4096, SharedMemory::EAccess::eReadWrite));
  view.Close();
  EXPECT_TRUE(SharedMemory::Remove(name));
}

TEST(FailureInjection, OpeningWritingAndListingFilesFail) {
  TempDirectory directory;
  const std::string path = directory.Path().ToUtf8() + "file";
  directory.WriteFile(L"file", "kept");
  std::string bytes;
  std::vector<Files::SDirectoryEntry> entries;
  {
    CScopedFailure open(EOperation::eFileOpen);
    EXPECT_FALSE(Files::ReadWholeFile(path, bytes));
    EXPECT_EQ(Files::OpenForReading(path), -1);
    EXPECT_EQ(Files::OpenForWriting(path), -1);
  }
  ASSERT_TRUE(Files::ReadWholeFile(path, bytes));
  EXPECT_EQ(bytes, "kept") << "a failed open for writing emptied the file";
  {
    CScopedFailure list(EOperation::eDirectoryListing);
    EXPECT_FALSE(Files::ListDirectory(directory.Path().ToUtf8(), entries));
  }
  EXPECT_TRUE(Files::ListDirectory(directory.Path().ToUtf8(), entries));
  const int descriptor = Files::OpenForWriting(directory.Path().ToUtf8() + "new");
  ASSERT_GE(descriptor, 0);
  {
    CScopedFailure write(EOperation::eFileWrite);
    EXPECT_FALSE(Files::WriteAll(descriptor, "abc", 3));
    EXPECT_FALSE(Files::CloseWritten(descriptor));
  }
}
