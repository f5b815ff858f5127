// DocumentOpener: shows a finished report to the user in the desktop's
// viewer for its kind of file.
#pragma once

#include <functional>

#include "foundation/CString.h"

namespace TestSuite::Report {

// Opens `path` with "xdg-open", started detached in a session of its own
// with its standard streams on /dev/null; the caller does not wait for the
// viewer. If it cannot be started, nothing happens.
void OpenDocument(const CString& path);

// Replaces what OpenDocument does, for a host without a desktop or a test;
// an empty function restores the default. Returns the previous opener (empty
// for the default). Not for use while another thread opens a document.
std::function<void(const CString&)> SetDocumentOpener(std::function<void(const CString&)> opener);

}  // namespace TestSuite::Report
