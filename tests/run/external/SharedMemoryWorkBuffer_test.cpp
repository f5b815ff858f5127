#include "run/external/SharedMemoryWorkBuffer.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "ZoTestSuiteRun.h"
#include "foundation/XbException.h"
#include "foundation/ZoUniqueId.h"
#include "foundation/platform/SharedMemory.h"
#include "run/external/ExternalObjectName.h"

using namespace TestSuite;

namespace {

CString newId() { return ZoUniqueIdT<CString>::GetUniqueID(); }

bool exists(const CString& id) { return ZoPlatform::SharedMemory::Exists(MakeExternalObjectName(id)); }

// How many mappings of the block this process holds now.
int mappingsOf(const CString& id) {
  std::ifstream maps("/proc/self/maps");
  std::string name(1, '/');
  name.append(MakeExternalObjectName(id));
  int count = 0;
  for (std::string line; std::getline(maps, line);)
    if (line.size() >= name.size() && line.compare(line.size() - name.size(), name.size(), name) == 0) ++count;
  return count;
}

std::string thrownBy(const std::function<void()>& action) {
  try {
    action();
  } catch (const XbException& error) { return error.what(); }
  return "nothing";
}

}  // namespace

TEST(SharedMemoryWorkBuffer, TheCreatorMakesABlockThatTheOtherSideSees) {
  const CString id = newId();
  CSharedMemoryWorkBuffer parent(id, false);
  CSharedMemoryWorkBuffer child(id, true);
  EXPECT_EQ(parent.GetName(), id);
  {
    SBufferAccess access = parent.GetWriteAccess();
    EXPECT_EQ(access.pBlock->eResult, 0) << "a new block is all zero";
    ResetWorkBlock(*access.pBlock);
    StoreBlockText(access.pBlock->sCaseName, SWorkBlock::sc_uiTextUnits, CString(L"Fall \U0001F600"));
  }
  {
    SBufferAccess access = child.GetWriteAccess();
    EXPECT_EQ(LoadBlockText(access.pBlock->sCaseName, SWorkBlock::sc_uiTextUnits), CString(L"Fall \U0001F600"));
    access.pBlock->eResult = Run::eCaseOk;
    AppendBlockOutput(*access.pBlock, CString(L"done\n"));
  }
  SBufferAccess access = parent.GetReadAccess();
  EXPECT_EQ(access.pBlock->eResult, Run::eCaseOk);
  EXPECT_EQ(LoadBlockText(access.pBlock->output, SWorkBlock::sc_uiOutputUnits), CString(L"done\n"));
}

TEST(SharedMemoryWorkBuffer, AViewIsMappedOnlyWhileItsAccessLives) {
  const CString id = newId();
  CSharedMemoryWorkBuffer buffer(id, false);
  EXPECT_EQ(mappingsOf(id), 0);
  {
    SBufferAccess access = buffer.GetWriteAccess();
    EXPECT_EQ(mappingsOf(id), 1);
    SBufferAccess moved = std::move(access);
    EXPECT_EQ(mappingsOf(id), 1);
  }
  EXPECT_EQ(mappingsOf(id), 0);
  { SBufferAccess access = buffer.GetReadAccess(); }
  EXPECT_EQ(mappingsOf(id), 0);
}

TEST(SharedMemoryWorkBuffer, OnlyTheCreatorRemovesTheName) {
  const CString id = newId();
  {
    CSharedMemoryWorkBuffer parent(id, false);
    EXPECT_TRUE(ZoPlatform::SharedMemory::Exists("ZoTestSuite-" + id.ToUtf8()));
    { CSharedMemoryWorkBuffer child(id, true); }
    EXPECT_TRUE(exists(id));
  }
  EXPECT_FALSE(exists(id));
}

TEST(SharedMemoryWorkBuffer, FailuresThrowWithTheNameOfTheOperation) {
  const CString id = newId();
  CSharedMemoryWorkBuffer missing(id, true);
  EXPECT_EQ(thrownBy([&] { missing.GetWriteAccess(); }), "TestSuite::Run::CSharedMemoryWorkBuffer::GetWriteAccess");
  EXPECT_EQ(thrownBy([&] { missing.GetReadAccess(); }), "TestSuite::Run::CSharedMemoryWorkBuffer::GetReadAccess");
  CSharedMemoryWorkBuffer first(id, false);
  EXPECT_EQ(thrownBy([&] { CSharedMemoryWorkBuffer second(id, false); }),
            "TestSuite::Run::CSharedMemoryWorkBuffer::CSharedMemoryWorkBuffer");
  EXPECT_TRUE(exists(id)) << "the failed second creator removed the first one's block";
}

TEST(SharedMemoryWorkBuffer, AKeptViewIsMappedOnceAtTheFirstAccessAndUnmappedWhenTheBufferGoes) {
  const CString id = newId();
  CSharedMemoryWorkBuffer parent(id, false);
  {
    CSharedMemoryWorkBuffer child(id, true);
    child.KeepView();
    EXPECT_EQ(mappingsOf(id), 0) << "nothing is mapped before the first access";
    SWorkBlock* first = nullptr;
    for (unsigned int i = 0; i < 5; ++i) {
      SBufferAccess write = child.GetWriteAccess();
      write.pBlock->uiRepetition = i;
      if (!first) first = write.pBlock;
      EXPECT_EQ(write.pBlock, first);
      EXPECT_EQ(child.GetReadAccess().pBlock, first);
    }
    EXPECT_EQ(mappingsOf(id), 1) << "every access went through the one kept view";
    EXPECT_EQ(parent.GetReadAccess().pBlock->uiRepetition, 4u);
  }
  EXPECT_EQ(mappingsOf(id), 0);
  EXPECT_TRUE(exists(id)) << "the side that only opened the block leaves its name";
}

TEST(SharedMemoryWorkBuffer, AKeptViewOfAMissingBlockFailsWithTheNameOfTheOperation) {
  CSharedMemoryWorkBuffer missing(newId(), true);
  missing.KeepView();
  EXPECT_EQ(thrownBy([&] { missing.GetWriteAccess(); }), "TestSuite::Run::CSharedMemoryWorkBuffer::GetWriteAccess");
  EXPECT_EQ(thrownBy([&] { missing.GetReadAccess(); }), "TestSuite::Run::CSharedMemoryWorkBuffer::GetReadAccess");
}
