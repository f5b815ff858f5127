// The option that normalizes a report archive.
#include "NormalizeArchiveOptions.h"

#include <CLI/CLI.hpp>

#include "FrontEnd.h"
#include "foundation/SystemPath.h"
#include "report/ArchiveNormalizer.h"
#include "services/COut.h"
#include "services/Utils.h"

namespace TestSuite::CLI {

void AddNormalizeArchiveOptions(::CLI::App& app, std::string& directory) {
  app.add_option("--normalize-archive", directory,
                 "Instead of a test run, rename the XML reports in DIR after their revision, start and run tag "
                 "(Report-REV-[DATE]-T[TAG].xml) and write the archive's pages and its overview DIR/html/index.html; "
                 "nothing is deleted or overwritten")
      ->type_name("DIR")
      ->group("Report archive");
}

bool ApplyNormalizeArchiveOptions(const ::CLI::App& app, const std::string& directory, SCommandLine& commandLine) {
  if (app.count("--normalize-archive") == 0) return false;
  if (directory.empty()) throw CUsageError("--normalize-archive: the archive directory is missing");
  if (commandLine.eMode != EMode::Run) throw CUsageError("--normalize-archive runs alone: it excludes the other modes");
  commandLine.eMode = EMode::NormalizeArchive;
  commandLine.sArchiveDirectory = PathFromSystem(directory);
  return true;
}

int RunNormalizeArchive(const SCommandLine& commandLine) {
  Report::NormalizeArchiveDir(commandLine.sArchiveDirectory);
  CString overview = commandLine.sArchiveDirectory;
  Utils::AddBackslash(overview);
  COut::Write(L"Archivübersicht geschrieben: %shtml/index.html\n", overview);
  return sc_iExitPassed;
}

}  // namespace TestSuite::CLI
