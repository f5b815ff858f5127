#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
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
