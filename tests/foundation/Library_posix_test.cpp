#include <gtest/gtest.h>

#include "foundation/UnitTestFactory.h"
#include "foundation/platform/Library.h"

namespace {

const std::string c_sTestLibrary = std::string(ZO_BIN_DIR) + "/ApiTestLibrary.so";
const wchar_t* const c_szLoadedClass = L"ApiLoadedTest";

}  // namespace

TEST(Library, LoadingRegistersTheClassesOfALibraryAndUnloadingRemovesThem) {
  ASSERT_EQ(XbRTTI::Find(c_szLoadedClass), nullptr);
  ZoPlatform::Library::Handle library = ZoPlatform::Library::Load(c_sTestLibrary);
  ASSERT_NE(library, nullptr) << ZoPlatform::Library::GetLastError();

  const XbRTTI* rtti = XbRTTI::Find(c_szLoadedClass);
  ASSERT_NE(rtti, nullptr);
  EXPECT_TRUE(rtti->IsKindOf(ZoUnitTest::RTTI));
  {
    std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(c_szLoadedClass);
    ASSERT_NE(test, nullptr);
    XbStreamWriteASCIIStringT<CString> messages;
    test->SetMessageStream(messages);
    test->SetDataDirectory(L"/data/ApiLoadedTest/");
    test->InitSubtests();
    ASSERT_EQ(test->GetSubtestCount(), 2u);
    EXPECT_EQ(test->RunUnitTest(*FindSubtestIndex(*test, L"fails")), ZoUnitTest::eFailure);
    EXPECT_EQ(test->RunUnitTest(*FindSubtestIndex(*test, L"passes")), ZoUnitTest::eSuccess);
    EXPECT_EQ(messages.GetString(), CString(L"ERROR: subtest 1 fails on purpose\n"));
  }
  EXPECT_TRUE(ZoPlatform::Library::Unload(library));
  EXPECT_EQ(XbRTTI::Find(c_szLoadedClass), nullptr);
  EXPECT_EQ(CreateUnitTestInstance(c_szLoadedClass), nullptr);
}

TEST(Library, OptionalInterfacesWorkAcrossTheLibraryBoundary) {
  ZoPlatform::Library::Handle library = ZoPlatform::Library::Load(c_sTestLibrary);
  ASSERT_NE(library, nullptr) << ZoPlatform::Library::GetLastError();
  {
    std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(c_szLoadedClass);
    ASSERT_NE(test, nullptr);
    XbStreamWriteASCIIStringT<CString> messages;
    test->SetMessageStream(messages);
    test->SetDataDirectory(L"/data/ApiLoadedTest/");
    test->InitSubtests();
    auto* debugging = dynamic_cast<IDebugging*>(test.get());
    ASSERT_NE(debugging, nullptr);
    EXPECT_FALSE(debugging->SupportsOption(0));
    ASSERT_TRUE(debugging->SupportsOption(1));
    debugging->SetOption(1, true);
    EXPECT_EQ(test->RunUnitTest(0), ZoUnitTest::eSuccess);
    EXPECT_EQ(messages.GetString(), CString(L"INFO:  subtest 0 in /data/ApiLoadedTest/\n"));
    auto* recreate = dynamic_cast<IUnitTestRecreate*>(test.get());
    ASSERT_NE(recreate, nullptr);
    EXPECT_TRUE(recreate->CanRecreate(0));
    EXPECT_FALSE(recreate->CanRecreate(1));
  }
  EXPECT_TRUE(ZoPlatform::Library::Unload(library));
}

TEST(Library, ALibraryLoadedTwiceStaysUntilItsLastUnload) {
  ZoPlatform::Library::Handle first = ZoPlatform::Library::Load(c_sTestLibrary);
  ZoPlatform::Library::Handle second = ZoPlatform::Library::Load(c_sTestLibrary);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(first, second);
  EXPECT_TRUE(ZoPlatform::Library::Unload(second));
  EXPECT_NE(XbRTTI::Find(c_szLoadedClass), nullptr);
  EXPECT_TRUE(ZoPlatform::Library::Unload(first));
  EXPECT_EQ(XbRTTI::Find(c_szLoadedClass), nullptr);
}

TEST(Library, AMissingLibraryGivesNoHandleAndTheSystemsReason) {
  EXPECT_EQ(ZoPlatform::Library::Load("/nonexistent/ApiMissing.so"), nullptr);
  const std::string error = ZoPlatform::Library::GetLastError();
  EXPECT_NE(error.find("ApiMissing.so"), std::string::npos) << error;
  EXPECT_EQ(error.find('\n'), std::string::npos);
}

TEST(Library, AFileThatIsNoLibraryIsRefused) {
  const std::string notALibrary = std::string(ZO_SOURCE_DIR) + "/tests/libs/ApiTestLibrary.cpp";
  EXPECT_EQ(ZoPlatform::Library::Load(notALibrary), nullptr);
  EXPECT_FALSE(ZoPlatform::Library::GetLastError().empty());
}

TEST(Library, UnloadingNothingFails) { EXPECT_FALSE(ZoPlatform::Library::Unload(nullptr)); }
