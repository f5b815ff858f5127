#include "run/external/ChildProcess.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "IsolationFrontEnd.h"
#include "TempDirectory.h"
#include "foundation/ZoFileSystem.h"
#include "run/external/ExternalExecution.h"
#include "services_COutRecorder.h"

using namespace TestSuite;
namespace fs = std::filesystem;

namespace {

void giveIds(SCaseContext& context) {
  context.sMemoryId = L"M1";
  context.sRequestEventId = L"Q2";
  context.sResponseEventId = L"R3";
}

// The argument vector of a live process, word by word. The parent may go on
// before the system has set up the new program's arguments, so this waits
// for them a little.
std::vector<std::string> commandLineOf(int pid) {
  std::vector<std::string> words;
  for (int attempt = 0; attempt < 500 && words.empty(); ++attempt) {
    if (attempt > 0) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    std::ifstream file("/proc/" + std::to_string(pid) + "/cmdline", std::ios::binary);
    for (std::string word; std::getline(file, word, '\0');) words.push_back(word);
  }
  return words;
}

std::string linkOf(int pid, const char* what) {
  std::error_code error;
  return fs::read_symlink("/proc/" + std::to_string(pid) + "/" + what, error).string();
}

}  // namespace

TEST(ChildProcess, TheArgumentsCarryTheDataDirectoryAndTheThreeIds) {
  SCaseContext context;
  giveIds(context);
  const std::vector<std::string> expected = {
      "-d", "/data/tree", "-x", "--memory-id", "M1", "--request-event-id", "Q2", "--response-event-id", "R3"};
  EXPECT_EQ(ComposeChildArguments(L"/data/tree", context), expected);
}

TEST(ChildProcess, TheRunsFurtherLibrariesFollowTheIdsEachAfterDll) {
  SCaseContext context;
  giveIds(context);
  context.libraries.Add(L"Named");
  context.libraries.Add(L"/builds/Mit Blank/Tests.so");
  const std::vector<std::string> arguments = ComposeChildArguments(L"/data/tree", context);
  const std::vector<std::string> tail(arguments.begin() + 9, arguments.end());
  EXPECT_EQ(tail, (std::vector<std::string>{"--dll", "Named", "--dll", "/builds/Mit Blank/Tests.so"}));
}

TEST(ChildProcess, OneTrailingSeparatorIsDroppedFromTheDataDirectory) {
  SCaseContext context;
  giveIds(context);
  EXPECT_EQ(ComposeChildArguments(L"/data/tree/", context)[1], "/data/tree");
  EXPECT_EQ(ComposeChildArguments(L"/data/tree//", context)[1], "/data/tree/");
  EXPECT_EQ(ComposeChildArguments(L"/data/Bäume mit Blanks", context)[1], "/data/Bäume mit Blanks");
}

TEST(ChildProcess, TheRunningNumberGoesUpByOne) {
  const unsigned int first = TakeChildIndex();
  EXPECT_EQ(TakeChildIndex(), first + 1);
  EXPECT_EQ(TakeChildIndex(), first + 2);
}

TEST(ChildProcess, ChildrenStartBesideTheExecutableUnlessToldOtherwise) {
  const CString executable = ZoFileSystem::GetDirectory(ZoFileSystem::eExecutable);
  const CFrontEndStarter beside;
  EXPECT_EQ(beside.GetProgramDirectory(), executable);
#ifdef NDEBUG
  EXPECT_EQ(beside.GetProgramPath(), executable + L"ZoTestSuiteCLI");
#else
  EXPECT_EQ(beside.GetProgramPath(), executable + L"ZoTestSuiteCLID");
#endif
  EXPECT_EQ(CFrontEndStarter(L"/opt/zo").GetProgramDirectory(), CString(L"/opt/zo/"));
  EXPECT_EQ(CFrontEndStarter(L"/opt/zo/").GetProgramDirectory(), CString(L"/opt/zo/"));
  SCaseContext context;
  EXPECT_EQ(context.pChildStarter, &DefaultChildStarter());
  EXPECT_EQ(static_cast<CFrontEndStarter&>(DefaultChildStarter()).GetProgramDirectory(), executable);
}

TEST(ChildProcess, AProgramThatCannotBeStartedGivesNoChildAndNoMessage) {
  TempDirectory empty;
  CFrontEndStarter starter(empty.Path());
  COutRecorder recorder;
  const unsigned int next = TakeChildIndex() + 1;
  SCaseContext context;
  giveIds(context);
  EXPECT_EQ(starter.Start(L"/data/", context), nullptr);
  EXPECT_EQ(TakeChildIndex(), next) << "a child that never started took a running number";
  EXPECT_TRUE(recorder.Text().IsEmpty());
}

TEST(ChildProcess, AChildRunsInItsProgramDirectoryWithItsStreamsOnDevNull) {
  const std::string directory = IsolationTestClasses::IsolationFrontEnd().Directory();
  IsolationTestClasses::CIsolationContext context;
  SRunOptions options;
  options.bExternal = true;
  AcquireSharedWorkBuffer(L"/data/tree/", options, context);  // the block, the events and the child
  ASSERT_NE(context.child, nullptr);
  const int pid = context.child->process.GetId();
  std::vector<std::string> expected = {IsolationTestClasses::IsolationFrontEnd().Program()};
  for (const std::string& word : ComposeChildArguments(L"/data/tree", context)) expected.push_back(word);
  EXPECT_EQ(commandLineOf(pid), expected);
  EXPECT_EQ(linkOf(pid, "cwd") + "/", directory);
  for (const char* stream : {"fd/0", "fd/1", "fd/2"}) EXPECT_EQ(linkOf(pid, stream), "/dev/null") << stream;
  EXPECT_EQ(ProcessesRunningFrom(directory), std::vector<int>{pid});
  context.child.reset();
  EXPECT_TRUE(ProcessesRunningFrom(directory).empty()) << "the child outlived its SChildProcess";
  EXPECT_FALSE(fs::exists("/proc/" + std::to_string(pid))) << "the child was not reaped";
}
