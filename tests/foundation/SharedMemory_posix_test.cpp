#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "foundation/ZoUniqueId.h"
#include "foundation/platform/SharedMemory.h"

namespace SharedMemory = ZoPlatform::SharedMemory;

namespace {

// A fresh name, removed again with whatever it names.
class CName {
 public:
  CName() : m_sName("ZoTestSuite-test-" + ZoUniqueIdT<CString>::GetUniqueID().ToUtf8()) {}
  ~CName() { SharedMemory::Remove(m_sName); }
  const std::string& operator*() const { return m_sName; }

 private:
  std::string m_sName;
};

}  // namespace

TEST(SharedMemory, ANewObjectIsZeroAndSharedByItsViews) {
  CName name;
  ASSERT_TRUE(SharedMemory::Create(*name, 8192));
  EXPECT_TRUE(SharedMemory::Exists(*name));
  SharedMemory::CView writer, reader;
  ASSERT_TRUE(writer.Open(*name, 8192, SharedMemory::EAccess::eReadWrite));
  ASSERT_TRUE(reader.Open(*name, 8192, SharedMemory::EAccess::eRead));
  const auto* bytes = static_cast<const unsigned char*>(reader.GetData());
  EXPECT_TRUE(std::all_of(bytes, bytes + 8192, [](unsigned char b) { return b == 0; }));
  std::memcpy(static_cast<char*>(writer.GetData()) + 8000, "shared", 7);
  EXPECT_STREQ(static_cast<const char*>(reader.GetData()) + 8000, "shared");
}

TEST(SharedMemory, ANameCanBeMadeOnlyOnce) {
  CName name;
  ASSERT_TRUE(SharedMemory::Create(*name, 64));
  int error = 0;
  EXPECT_FALSE(SharedMemory::Create(*name, 64, &error));
  EXPECT_EQ(error, EEXIST);
}

TEST(SharedMemory, AViewOutlivesTheRemovalOfTheName) {
  CName name;
  ASSERT_TRUE(SharedMemory::Create(*name, 4096));
  SharedMemory::CView view;
  ASSERT_TRUE(view.Open(*name, 4096, SharedMemory::EAccess::eReadWrite));
  EXPECT_TRUE(SharedMemory::Remove(*name));
  EXPECT_FALSE(SharedMemory::Exists(*name));
  EXPECT_FALSE(SharedMemory::Remove(*name));
  static_cast<char*>(view.GetData())[4095] = 'x';
  EXPECT_EQ(static_cast<char*>(view.GetData())[4095], 'x');
  SharedMemory::CView late;
  int error = 0;
  EXPECT_FALSE(late.Open(*name, 4096, SharedMemory::EAccess::eRead, &error));
  EXPECT_EQ(error, ENOENT);
  EXPECT_EQ(late.GetData(), nullptr);
}

TEST(SharedMemory, AViewLargerThanTheObjectIsRefused) {
  CName name;
  ASSERT_TRUE(SharedMemory::Create(*name, 100));
  SharedMemory::CView view;
  EXPECT_FALSE(view.Open(*name, 101, SharedMemory::EAccess::eRead));
  EXPECT_TRUE(view.Open(*name, 100, SharedMemory::EAccess::eRead));
}

TEST(SharedMemory, CloseAndMoveLeaveOneOwnerOfTheMapping) {
  CName name;
  ASSERT_TRUE(SharedMemory::Create(*name, 64));
  SharedMemory::CView view;
  ASSERT_TRUE(view.Open(*name, 64, SharedMemory::EAccess::eReadWrite));
  void* data = view.GetData();
  SharedMemory::CView moved(std::move(view));
  EXPECT_EQ(view.GetData(), nullptr);
  EXPECT_EQ(moved.GetData(), data);
  moved.Close();
  EXPECT_EQ(moved.GetData(), nullptr);
  moved.Close();
}

TEST(SharedMemory, NamesWithASlashOrEmptyAreRefused) {
  int error = 0;
  EXPECT_FALSE(SharedMemory::Create("", 64, &error));
  EXPECT_EQ(error, EINVAL);
  EXPECT_FALSE(SharedMemory::Create("a/b", 64, &error));
  EXPECT_FALSE(SharedMemory::Create(std::string(241, 'n'), 64, &error));
  EXPECT_FALSE(SharedMemory::Exists(""));
  SharedMemory::CView view;
  EXPECT_FALSE(view.Open("a/b", 64, SharedMemory::EAccess::eRead));
}

TEST(SharedMemory, ListNamesFindsTheObjectsOfAPrefix) {
  CName first, second;
  ASSERT_TRUE(SharedMemory::Create(*first, 64));
  ASSERT_TRUE(SharedMemory::Create(*second, 64));
  std::vector<std::string> names = SharedMemory::ListNames((*first).substr(0, (*first).size() - 1));
  EXPECT_NE(std::find(names.begin(), names.end(), *first), names.end());
  names = SharedMemory::ListNames(*second);
  EXPECT_EQ(names, std::vector<std::string>{*second});
  SharedMemory::Remove(*second);
  EXPECT_TRUE(SharedMemory::ListNames(*second).empty());
}
