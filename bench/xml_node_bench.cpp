// xml_node_bench: how fast the XML reader reads a large test report, beside
// xmllint on the same file. Writes a report-shaped file of about 50 MB
// (100,000 testcase blocks with attributes, nested elements and text with
// entities) to a temporary directory, times XMLNode::parseFile on it (the
// read, the parse and the release of the tree) and `xmllint --noout`, takes
// the best of a few runs of each, and prints MB/s and the ratio.
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "BenchTiming.h"
#include "foundation/CString.h"
#include "services/xml/XMLNode.h"

namespace {

using TestSuite::XMLNode;
using TestSuite::XMLResults;

constexpr int c_iCases = 100000;
constexpr int c_iRuns = 5;
constexpr int c_iToolRuns = 3;

std::string reportHead() {
  return "<?xml version=\"1.0\" encoding='ISO-8859-1' standalone='yes'?>\n"
         "<?xml-stylesheet type=\"text/xsl\" href=\"ZoTestSuiteReport.xsl\"?>\n"
         "<testsuite name=\"ZoTestSuite\" tests=\"100000\" errors=\"1000\" failures=\"9000\" skip=\"0\">\n"
         "\t<SystemInfo>\n\t\t<Processor>Generic CPU @ 3.00GHz</Processor>\n\t\t<GPU></GPU>\n"
         "\t\t<MachineName>bench</MachineName>\n\t</SystemInfo>\n"
         "\t<RunInfo>\n\t\t<DataDirectory>/data/tests/</DataDirectory>\n\t\t<ThreadCount>8</ThreadCount>\n"
         "\t</RunInfo>\n";
}

void appendCase(std::string& out, int id, std::mt19937& random) {
  const bool bFailed = id % 10 == 0;
  out += fmt::format("\t<testcase id=\"{}\" classname=\"CGeometryTest{}\" name=\"case_{:06}&amp;variant&#228;\">\n", id,
                     id % 97, id);
  out +=
      fmt::format("\t\t<time>{:.6f}</time>\n\t\t<memory>{}</memory>\n\t\t<memorydelta>{}</memorydelta>\n",
                  (random() % 100000) / 1000.0, 1000000 + random() % 9000000, static_cast<int>(random() % 2000) - 1000);
  out +=
      fmt::format("\t\t<result type=\"{}\"{}>\n", bFailed ? "DIFFERENT" : "OK", id % 7 == 0 ? " warning=\"true\"" : "");
  out += fmt::format(
      "\t\t\t<dump type=\"info\">Lade Referenzdaten aus &quot;ref_{}.dat&quot; "
      "(Gr&#246;&#223;e {} Bytes)</dump>\n",
      id, random() % 100000);
  out += fmt::format("\t\t\t<dump type=\"info\">Vergleiche {} Punkte mit Toleranz 1e-6 &lt;= d &lt; 1e-3</dump>\n",
                     random() % 50000);
  out += fmt::format("\t\t\t<dump type=\"{}\">Ergebnis: {} Abweichungen &amp; {} Warnungen, Dauer {} ms</dump>\n",
                     bFailed ? "error" : "info", bFailed ? random() % 100 : 0, random() % 5, random() % 1000);
  out += "\t\t</result>\n";
  if (bFailed) out += "\t\t<failure message=\"\" type=\"Ergebnis weicht ab\"></failure>\n";
  out += "\t</testcase>\n";
}

std::filesystem::path writeReport(const std::filesystem::path& dir) {
  std::mt19937 random(42u);
  std::string text = reportHead();
  text.reserve(static_cast<std::size_t>(c_iCases) * 560);
  for (int id = 1; id <= c_iCases; ++id) appendCase(text, id, random);
  text += "</testsuite>\n";
  const std::filesystem::path path = dir / "report.xml";
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

bool parseWithReader(const std::filesystem::path& path) {
  XMLResults results;
  const XMLNode suite = XMLNode::parseFile(CString::FromUtf8(path.string()), "testsuite", &results);
  return results.error == TestSuite::eXMLErrorNone && suite.getChildCount("testcase") == c_iCases;
}

bool parseWithXmllint(const std::filesystem::path& path) {
  const std::string command = "xmllint --noout '" + path.string() + "' 2>/dev/null";
  return std::system(command.c_str()) == 0;
}

}  // namespace

int main() {
  std::random_device device;
  const std::filesystem::path dir =
      std::filesystem::temp_directory_path() / ("zo-xml-bench-" + std::to_string(device()));
  std::filesystem::create_directories(dir);
  const std::filesystem::path path = writeReport(dir);
  const double dMegabytes = static_cast<double>(std::filesystem::file_size(path)) / 1e6;
  std::printf("report: %d testcase blocks, %.1f MB\n", c_iCases, dMegabytes);

  const double dReader = bestSeconds(c_iRuns, [&] { return parseWithReader(path); });
  const double dTool = bestSeconds(c_iToolRuns, [&] { return parseWithXmllint(path); });
  std::filesystem::remove_all(dir);

  if (dReader < 0) {
    std::printf("XMLNode::parseFile failed on the report\n");
    return 1;
  }
  std::printf("XMLNode::parseFile  best of %d: %8.3f s  %8.1f MB/s\n", c_iRuns, dReader, dMegabytes / dReader);
  if (dTool < 0) {
    std::printf("xmllint --noout     not available or failed; no comparison\n");
    return 0;
  }
  std::printf("xmllint --noout     best of %d: %8.3f s  %8.1f MB/s\n", c_iToolRuns, dTool, dMegabytes / dTool);
  std::printf("ratio (xmllint time / XMLNode time): %.2f\n", dTool / dReader);
  return 0;
}
