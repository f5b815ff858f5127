// Opening a report in the desktop's viewer.
#include "report/DocumentOpener.h"

#include <utility>

#include "foundation/SystemPath.h"
#include "foundation/platform/Process.h"

namespace TestSuite::Report {

namespace {

std::function<void(const CString&)>& opener() {
  static std::function<void(const CString&)> s_opener;
  return s_opener;
}

// "setsid -f" forks the viewer into a new session and returns at once, so
// the child that is reaped here is only the short-lived starter and the
// viewer outlives the run.
void openWithDesktop(const CString& path) {
  ZoPlatform::Process::CChild starter;
  ZoPlatform::Process::SSpawnRequest request;
  request.arguments = {"setsid", "-f", "xdg-open", PathToSystem(path)};
  request.eStreams = ZoPlatform::Process::EStandardStreams::eNull;
  if (starter.Start(request)) starter.WaitFor(5000);
}

}  // namespace

void OpenDocument(const CString& path) {
  if (opener()) opener()(path);
  else openWithDesktop(path);
}

std::function<void(const CString&)> SetDocumentOpener(std::function<void(const CString&)> newOpener) {
  return std::exchange(opener(), std::move(newOpener));
}

}  // namespace TestSuite::Report
