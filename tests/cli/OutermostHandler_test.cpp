// The outermost handler of the front end: every kind of exception that can
// leave the library becomes one plain line and exit status 3, and a body
// that throws nothing keeps its own status.
#include "OutermostHandler.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <system_error>

#include "FrontEnd.h"
#include "foundation/CString.h"
#include "foundation/XbException.h"

using namespace TestSuite::CLI;

namespace {

template <typename T>
std::string describeThrown(const T& value) {
  try {
    throw value;
  } catch (...) { return DescribeEscapedException(std::current_exception()); }
}

TEST(OutermostHandler, AThrownWideTextIsPrintedAsItStands) {
  EXPECT_EQ(describeThrown(CString(L"Ungültige Konfiguration")), "Fehler: Ungültige Konfiguration");
}

TEST(OutermostHandler, AThrownWideCharacterPointerIsPrintedAsItStands) {
  const wchar_t* text = L"Ungültige Platform";
  EXPECT_EQ(describeThrown(text), "Fehler: Ungültige Platform");
}

TEST(OutermostHandler, AFileSystemErrorIsPrintedWithItsTextAndPath) {
  const std::filesystem::filesystem_error error("create_directory(p): invalid argument",
                                                std::filesystem::path("/nirgends/html"),
                                                std::make_error_code(std::errc::no_such_file_or_directory));
  const std::string line = describeThrown(error);
  EXPECT_EQ(line.rfind("Fehler: ", 0), 0u) << line;
  EXPECT_NE(line.find("create_directory(p): invalid argument"), std::string::npos) << line;
  EXPECT_NE(line.find("/nirgends/html"), std::string::npos) << line;
}

TEST(OutermostHandler, AHarnessFailureNamesTheFunctionThatGaveUp) {
  EXPECT_EQ(describeThrown(XbException("file.cpp", 12, "CollectUnitTests")), "Fehler in CollectUnitTests");
}

TEST(OutermostHandler, AnExceptionOfAnotherTypeIsNamedAsUnknown) {
  EXPECT_EQ(describeThrown(42), "Fehler unbekannter Art");
}

TEST(OutermostHandler, NoLineSaysInternalErrorForTheKindsTheLibraryLetsOut) {
  for (const std::string& line : {describeThrown(CString(L"x")), describeThrown(std::runtime_error("y")),
                                  describeThrown(XbException("f", 1, "Run"))})
    EXPECT_EQ(line.find("interner Fehler"), std::string::npos) << line;
}

TEST(OutermostHandler, AnEscapedExceptionGivesStatusThree) {
  testing::internal::CaptureStderr();
  const int status = RunWithOutermostHandler([]() -> int { throw CString(L"Datei x nicht gefunden"); });
  const std::string printed = testing::internal::GetCapturedStderr();
  EXPECT_EQ(status, sc_iExitInternal);
  EXPECT_EQ(status, 3);
  EXPECT_EQ(printed, "ZoTestSuiteCLI: Fehler: Datei x nicht gefunden\n");
}

TEST(OutermostHandler, ABodyThatThrowsNothingKeepsItsStatus) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(RunWithOutermostHandler([] { return sc_iExitNoCases; }), sc_iExitNoCases);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
