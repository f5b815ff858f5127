#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <utility>

#include "TempDirectory.h"
#include "foundation/platform/Process.h"

using ZoPlatform::Process::CChild;
using ZoPlatform::Process::EStandardStreams;
using ZoPlatform::Process::SSpawnRequest;

namespace {

// A script that waits should `exec` its last program: a `sleep` forked by
// the shell outlives the killed shell and holds the test's output open.
SSpawnRequest shell(const char* script) {
  SSpawnRequest request;
  request.arguments = {"/bin/sh", "-c", script};
  return request;
}

}  // namespace

TEST(Process, AnExitCodeIsReportedOnceTheChildIsReaped) {
  CChild child;
  ASSERT_TRUE(child.Start(shell("exit 7")));
  EXPECT_TRUE(child.IsStarted());
  ASSERT_TRUE(child.WaitFor(60000));
  EXPECT_TRUE(child.IsReaped());
  EXPECT_FALSE(child.IsRunning());
  EXPECT_FALSE(child.GetExitStatus().bSignaled);
  EXPECT_EQ(child.GetExitStatus().iCode, 7);
  EXPECT_EQ(child.GetId(), 0);
}

TEST(Process, KillEndsARunningChildBySignal) {
  CChild child;
  ASSERT_TRUE(child.Start(shell("exec sleep 30")));
  EXPECT_TRUE(child.IsRunning());
  EXPECT_FALSE(child.WaitFor(0));  // only looks
  child.Kill();
  EXPECT_TRUE(child.IsReaped());
  EXPECT_TRUE(child.GetExitStatus().bSignaled);
  EXPECT_EQ(child.GetExitStatus().iCode, 9);
  child.Kill();  // nothing left to kill
}

TEST(Process, SendKillLeavesTheEndedChildToBeReapedLater) {
  CChild child;
  ASSERT_TRUE(child.Start(shell("exec sleep 30")));
  child.SendKill();
  EXPECT_FALSE(child.IsReaped());  // not waited for
  EXPECT_NE(child.GetId(), 0);
  ASSERT_TRUE(child.WaitFor(60000));
  EXPECT_TRUE(child.GetExitStatus().bSignaled);
  EXPECT_EQ(child.GetExitStatus().iCode, 9);
  child.SendKill();  // nothing left to signal
}

TEST(Process, AMissingProgramIsNotStarted) {
  CChild child;
  int error = 0;
  EXPECT_FALSE(child.Start({{"/nicht/vorhanden"}, "", EStandardStreams::eInherit}, &error));
  EXPECT_EQ(error, ENOENT);
  EXPECT_FALSE(child.IsStarted());
  EXPECT_FALSE(child.WaitFor(0));
}

TEST(Process, AnEmptyArgumentVectorIsNotStarted) {
  CChild child;
  EXPECT_FALSE(child.Start(SSpawnRequest{}));
}

TEST(Process, AChildIsStartedOnlyOnce) {
  CChild child;
  ASSERT_TRUE(child.Start(shell("exit 0")));
  EXPECT_FALSE(child.Start(shell("exit 0")));
}

TEST(Process, NullStreamsPutAllThreeOnDevNull) {
  // Inside $(...) standard output is a pipe, so look at error and input.
  CChild child;
  SSpawnRequest request = shell(
      "[ \"$(readlink /proc/self/fd/2)\" = /dev/null ] && [ \"$(readlink /proc/$$/fd/0)\" = /dev/null ] &&"
      " [ \"$(readlink /proc/$$/fd/1)\" = /dev/null ]");
  request.eStreams = EStandardStreams::eNull;
  ASSERT_TRUE(child.Start(request));
  ASSERT_TRUE(child.WaitFor(60000));
  EXPECT_EQ(child.GetExitStatus().iCode, 0);
}

TEST(Process, ARelativeProgramPathIsTakenFromTheParentsDirectory) {
  TempDirectory parent, child;
  std::filesystem::create_directory((parent / L"sub").ToUtf8());
  const CString script = parent / L"sub/prog.sh";
  TempDirectory::WriteBytes(script, "#!/bin/sh\npwd -P > hier.txt\n");
  std::filesystem::permissions(script.ToUtf8(), std::filesystem::perms::owner_all);
  const std::filesystem::path previous = std::filesystem::current_path();
  std::filesystem::current_path(parent.Path().ToUtf8());
  CChild process;
  SSpawnRequest request;
  request.arguments = {"sub/prog.sh"};
  request.sWorkingDirectory = child.Path().ToUtf8();
  const bool started = process.Start(request);
  std::filesystem::current_path(previous);
  ASSERT_TRUE(started);
  ASSERT_TRUE(process.WaitFor(60000));
  EXPECT_EQ(process.GetExitStatus().iCode, 0);
  EXPECT_EQ(TempDirectory::ReadBytes(child / L"hier.txt"),
            std::filesystem::canonical(child.Path().ToUtf8()).string() + "\n");
}

TEST(Process, AMissingWorkingDirectoryMeansNoStart) {
  TempDirectory dir;
  CChild process;
  SSpawnRequest request = shell("exit 0");
  request.sWorkingDirectory = (dir / L"fehlt").ToUtf8();
  int error = 0;
  EXPECT_FALSE(process.Start(request, &error));
  EXPECT_EQ(error, ENOENT);
}

TEST(Process, DestroyingTheOwnerKillsAndReapsTheChild) {
  int pid = 0;
  {
    CChild child;
    ASSERT_TRUE(child.Start(shell("exec sleep 30")));
    pid = child.GetId();
    ASSERT_GT(pid, 0);
  }
  // The id is gone: no process, not even a zombie, carries it any more
  // (unless the system already reused it, which this test cannot tell).
  CChild probe;
  const std::string script = "kill -0 " + std::to_string(pid) + " 2>/dev/null && exit 1 || exit 0";
  ASSERT_TRUE(probe.Start(shell(script.c_str())));
  ASSERT_TRUE(probe.WaitFor(60000));
  EXPECT_EQ(probe.GetExitStatus().iCode, 0);
}

TEST(Process, MovingHandsOverTheChild) {
  CChild first;
  ASSERT_TRUE(first.Start(shell("exit 2")));
  CChild second(std::move(first));
  EXPECT_FALSE(first.IsStarted());
  ASSERT_TRUE(second.WaitFor(60000));
  EXPECT_EQ(second.GetExitStatus().iCode, 2);
}

// Process groups: a child that leads one takes what it started along.

namespace {

// True while process `pid` exists and is no zombie.
bool isRunning(int pid) {
  std::ifstream stat("/proc/" + std::to_string(pid) + "/stat");
  std::string text((std::istreambuf_iterator<char>(stat)), std::istreambuf_iterator<char>());
  const std::size_t end = text.rfind(')');
  return end != std::string::npos && end + 2 < text.size() && text[end + 2] != 'Z' && text[end + 2] != 'X';
}

bool endsWithin(int pid, int seconds) {
  for (int i = 0; i < seconds * 100 && isRunning(pid); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
  return !isRunning(pid);
}

// Starts a shell in a group of its own that leaves a `sleep` behind, and
// gives the sleep's id once the shell has written it to `pidFile`.
int startWithGrandchild(CChild& child, const std::string& pidFile, const char* after) {
  SSpawnRequest request = shell(("sleep 300 & echo $! > " + pidFile + "; " + after).c_str());
  request.bOwnProcessGroup = true;
  if (!child.Start(request)) return 0;
  for (int i = 0; i < 6000; ++i) {
    std::ifstream file(pidFile);
    int pid = 0;
    if (file >> pid && pid > 0) return pid;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return 0;
}

}  // namespace

TEST(Process, KillingAChildThatLeadsItsGroupKillsTheGroup) {
  TempDirectory directory;
  CChild child;
  const int grandchild = startWithGrandchild(child, directory.Path().ToUtf8() + "pid", "wait");
  ASSERT_GT(grandchild, 0);
  ASSERT_TRUE(isRunning(grandchild));
  child.Kill();
  EXPECT_TRUE(endsWithin(grandchild, 10));
}

TEST(Process, SendKillToAChildThatLeadsItsGroupKillsTheGroup) {
  TempDirectory directory;
  CChild child;
  const int grandchild = startWithGrandchild(child, directory.Path().ToUtf8() + "pid", "wait");
  ASSERT_GT(grandchild, 0);
  child.SendKill();
  EXPECT_TRUE(endsWithin(grandchild, 10));
  EXPECT_TRUE(child.WaitFor(60000));
}

TEST(Process, AChildThatLeadsItsGroupAndEndedTakesTheGroupWhenFoundDead) {
  TempDirectory directory;
  CChild child;
  const int grandchild = startWithGrandchild(child, directory.Path().ToUtf8() + "pid", "exit 0");
  ASSERT_GT(grandchild, 0);
  ASSERT_TRUE(child.WaitFor(60000));
  EXPECT_EQ(child.GetExitStatus().iCode, 0);
  EXPECT_TRUE(endsWithin(grandchild, 10));
}

TEST(Process, AChildInTheParentsGroupLeavesWhatItStartedAlone) {
  TempDirectory directory;
  const std::string pidFile = directory.Path().ToUtf8() + "pid";
  CChild child;
  ASSERT_TRUE(child.Start(shell(("sleep 300 & echo $! > " + pidFile + "; exit 0").c_str())));
  ASSERT_TRUE(child.WaitFor(60000));
  int grandchild = 0;
  std::ifstream(pidFile) >> grandchild;
  ASSERT_GT(grandchild, 0);
  EXPECT_TRUE(isRunning(grandchild));
  CChild killer;  // the test's own clean-up
  ASSERT_TRUE(killer.Start(shell(("kill -9 " + std::to_string(grandchild)).c_str())));
  EXPECT_TRUE(killer.WaitFor(60000));
}

TEST(Process, ExistsTellsALiveProcessFromAnEndedOne) {
  CChild child;
  ASSERT_TRUE(child.Start(shell("exit 0")));
  const int pid = child.GetId();
  ASSERT_TRUE(child.WaitFor(60000));
  EXPECT_FALSE(ZoPlatform::Process::Exists(static_cast<std::uint32_t>(pid)));
  EXPECT_FALSE(ZoPlatform::Process::Exists(0));
  CChild sleeper;
  ASSERT_TRUE(sleeper.Start(shell("exec sleep 300")));
  EXPECT_TRUE(ZoPlatform::Process::Exists(static_cast<std::uint32_t>(sleeper.GetId())));
}
