#include <gtest/gtest.h>

#include <filesystem>

#include "TempDirectory.h"
#include "ZoTestSuiteEnvironment.h"
#include "core/WiringContainer.h"
#include "foundation/WrCProduct.h"
#include "foundation/XbRTTI.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/platform/Library.h"
#include "foundation_TestFiles.h"
#include "services_COutRecorder.h"

using namespace TestSuite;

namespace {

// Links (or copies) the test library `name` from the build's binary
// directory into `directory`; gives its path there.
std::string provideLibrary(const TempDirectory& directory, const wchar_t* name) {
  const std::filesystem::path from = (ZoFileSystem::GetDirectory(ZoFileSystem::eExecutable) + name + L".so").ToUtf8();
  const std::filesystem::path to = (directory.Path() + name + L".so").ToUtf8();
  std::error_code error;
  std::filesystem::create_hard_link(from, to, error);
  if (error) std::filesystem::copy_file(from, to);
  return to.string();
}

const char* wiringRootName() {
  const auto* container = Wiring::CContainer::GetCurrent();
  if (!container) return nullptr;
  TestSuite::XMLNode node = container->GetConfiguration();
  if (node.getName() && std::string(node.getName()) == "xml") node = node.getChildNode(0);
  return node.getName();
}

}  // namespace

// Every environment here reads a configuration directory of its own: the
// files beside the executable are shared by every test program that runs at
// the same time.
TEST(Environment, WithoutADirectoryTheConfigurationIsBesideTheExecutable) {
  CEnvironment env;
  EXPECT_EQ(env.GetConfigurationDirectory(), ZoFileSystem::GetDirectory(ZoFileSystem::eExecutable));
  TempDirectory directory;
  const CString withoutSeparator = directory.Path().Left(directory.Path().GetLength() - 1);
  EXPECT_EQ(CEnvironment(withoutSeparator).GetConfigurationDirectory(), directory.Path());
}

TEST(Environment, TheWiringFileOfTheConfigurationDirectoryOrTheBuiltInConfiguration) {
  TempDirectory directory;
  {
    CEnvironment env(directory.Path());
    ASSERT_NE(wiringRootName(), nullptr);
    EXPECT_STREQ(wiringRootName(), "Wiring");  // no file: the built-in configuration
    const auto product = WrCProduct::Get();
    ASSERT_TRUE(product.has_value());
    EXPECT_EQ(product->uiProductNumber, 19u);
    EXPECT_EQ(product->sName, CString(L"ZoTestSuite"));
    EXPECT_EQ(product->sVersion, CString(L"1.0"));
  }
  {
    directory.WriteFile(L"ZoTestSuite.wiring.xml", "<LocalWiring><Product id=\"19\"/></LocalWiring>");
    CEnvironment env(directory.Path());
    EXPECT_STREQ(wiringRootName(), "LocalWiring");
  }
  {
    directory.WriteFile(L"ZoTestSuite.wiring.xml", "<LocalWiring>");
    CEnvironment env(directory.Path());
    EXPECT_STREQ(wiringRootName(), "Wiring");  // a broken file: the built-in one
  }
}

TEST(Environment, TheLibraryListOfTheConfigurationDirectory) {
  TempDirectory directory;
  const std::string path = provideLibrary(directory, L"ApiTestLibrary");
  {
    directory.WriteFile(L"ZoTestSuiteEnvironment.conf", "[]");
    CEnvironment env(directory.Path());
    COutRecorder recorder;
    env.LoadTestDLLs();
    EXPECT_EQ(recorder.Text(), CString());
    EXPECT_EQ(XbRTTI::Find(L"ApiLoadedTest"), nullptr);  // an empty list loads nothing
  }
  directory.WriteFile(L"ZoTestSuiteEnvironment.conf", "[\"ApiTestLibrary\", \"NotThere\"]");
  CEnvironment env(directory.Path());
  COutRecorder recorder;
  env.LoadTestDLLs();
  env.LoadDLL(L"ApiTestLibrary", false);
  EXPECT_EQ(recorder.Text(), CString());  // a library that is not there is not mentioned
  ASSERT_NE(XbRTTI::Find(L"ApiLoadedTest"), nullptr);
  // In the list and in the setup: two references are held, so giving up
  // two more than we add leaves the class registered, and one more removes it.
  ZoPlatform::Library::Handle handle = ZoPlatform::Library::Load(path);
  ASSERT_NE(handle, nullptr);
  EXPECT_TRUE(ZoPlatform::Library::Unload(handle));
  EXPECT_TRUE(ZoPlatform::Library::Unload(handle));
  EXPECT_NE(XbRTTI::Find(L"ApiLoadedTest"), nullptr);
  EXPECT_TRUE(ZoPlatform::Library::Unload(handle));
  EXPECT_EQ(XbRTTI::Find(L"ApiLoadedTest"), nullptr);
}

TEST(Environment, ALibraryThatCannotBeLoadedIsOneWarning) {
  TempDirectory directory;
  directory.WriteFile(L"EnvironmentBroken.so", "not a library");
  CEnvironment env(directory.Path());
  COutRecorder recorder;
  env.LoadDLL(L"EnvironmentBroken", false);
  const auto messages = recorder.Messages();
  ASSERT_EQ(messages.size(), 1u);
  EXPECT_EQ(messages[0].sText.Left(51), CString(L"DLL 'EnvironmentBroken.so' konnte nicht geladen werden: ").Left(51));
  EXPECT_EQ(messages[0].sText.Right(1), CString(L"\n"));
  EXPECT_EQ(messages[0].color, ZoColorRGBA::c_GOLDENROD);
}

TEST(Environment, ALibraryThatCannotBeLoadedIsWarnedAboutOnceWhenLoadedTwice) {
  TempDirectory directory;
  directory.WriteFile(L"EnvironmentBroken.so", "not a library");
  directory.WriteFile(L"ZoTestSuiteEnvironment.conf", "[\"EnvironmentBroken\"]");
  CEnvironment env(directory.Path());
  COutRecorder recorder;
  env.LoadTestDLLs();
  env.LoadDLL(L"EnvironmentBroken", false);
  env.LoadTestDLLs();
  EXPECT_EQ(recorder.Messages().size(), 1u);
}

// Every wrong shape of the list: one warning that names the file, and
// nothing of the file is loaded.
TEST(Environment, ALibraryListOfTheWrongShapeIsOneWarningNamingTheFile) {
  const std::string contents[] = {"{\"ApiTestLibrary\": 1}",
                                  "\"ApiTestLibrary\"",
                                  "[\"ApiTestLibrary\"",
                                  "",
                                  "[\"ApiTestLibrary\", 7]",
                                  std::string("\x7f"
                                              "ELF\x00\xff\xfe",
                                              7)};
  for (const std::string& content : contents) {
    SCOPED_TRACE(content);
    TempDirectory directory;
    provideLibrary(directory, L"ApiTestLibrary");
    directory.WriteFile(L"ZoTestSuiteEnvironment.conf", content);
    CEnvironment env(directory.Path());
    COutRecorder recorder;
    env.LoadTestDLLs();
    const auto messages = recorder.Messages();
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_EQ(messages[0].sText, L"Warnung: " + directory.Path() +
                                     L"ZoTestSuiteEnvironment.conf ist keine JSON-Liste von Bibliotheksnamen und wird "
                                     L"übergangen.\n");
    EXPECT_EQ(messages[0].color, ZoColorRGBA::c_GOLDENROD);
    EXPECT_EQ(env.GetLoadedLibraryCount(), 0u);
  }
}

TEST(Environment, WorkingDirectoryMovesToTheExecutableAndBack) {
  const CString before = ZoFileSystem::GetCurrentDirectoryW();
  CEnvironment env;
  env.SetExecutableDirectoryAsWorkingDirectory();
  CString here = ZoFileSystem::GetCurrentDirectoryW() + L"/";
  EXPECT_EQ(here, ZoFileSystem::GetDirectory(ZoFileSystem::eExecutable));
  env.RestoreWorkingDirectory();
  EXPECT_EQ(ZoFileSystem::GetCurrentDirectoryW(), before);
}

TEST(Environment, ADeletedInitialDirectoryIsNotReported) {
  const CString before = ZoFileSystem::GetCurrentDirectoryW();
  {
    auto scratch = std::make_unique<TempDirectory>();
    ASSERT_TRUE(ZoFileSystem::SetCurrentDirectoryW(scratch->Path()));
    CEnvironment env;
    env.SetExecutableDirectoryAsWorkingDirectory();
    scratch.reset();
    COutRecorder recorder;
    env.RestoreWorkingDirectory();
    EXPECT_EQ(recorder.Text(), CString());
  }
  ZoFileSystem::SetCurrentDirectoryW(before);
}

TEST(EnvironmentTest, PreallocateStaticDataLeavesNoTemporaryFile) {
  // A child process ends by SIGKILL, so what the warm-up writes must be gone
  // when the warm-up returns, not when the environment ends.
  TempDirectory directory;
  const FoundationTest::CScopedEnvironment temporary("TMPDIR", directory.Path().ToUtf8());
  CEnvironment::PreallocateStaticData();
  EXPECT_TRUE(std::filesystem::is_empty(directory.Path().ToUtf8()));
}
