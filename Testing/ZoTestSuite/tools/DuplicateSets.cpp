// DuplicateSets: reading, hashing and grouping the data files of a class.
#include "tools/DuplicateSets.h"

#include <memory>
#include <unordered_map>

#include "foundation/CFile.h"
#include "foundation/UnitTestFactory.h"
#include "foundation/XbDateTime.h"
#include "foundation/XbException.h"
#include "foundation/ZoFileSystem.h"
#include "foundation/ZoUnitTestFileBased.h"
#include "services/COut.h"

namespace TestSuite {
namespace {

constexpr std::uint64_t c_uiMaxFileSize = 0xFFFFFFFF;

// One buffer for all files of a class: it grows to the largest file and is
// never cleared, since every read overwrites what it hashes.
class CReadBuffer {
 public:
  unsigned char* Reserve(std::uint64_t size) {
    if (size > m_uiCapacity) {
      m_bytes = std::make_unique_for_overwrite<unsigned char[]>(size);
      m_uiCapacity = size;
    }
    return m_bytes.get();
  }

 private:
  std::unique_ptr<unsigned char[]> m_bytes;
  std::uint64_t m_uiCapacity = 0;
};

// Reads and hashes one file into `record`. False if it is to be passed
// over silently; throws if it cannot be read.
bool examineFile(SDuplicateFile& record, CReadBuffer& buffer) {
  if (!ZoFileSystem::Exists(record.sPath)) return false;
  CFile file;
  if (!file.Open(record.sPath, CFile::modeRead | CFile::typeBinary)) XB_THROW("TestSuite::FindDuplicateSets");
  const std::uint64_t uiLength = file.GetLength();
  if (uiLength > c_uiMaxFileSize) return false;
  unsigned char* bytes = buffer.Reserve(uiLength);
  const unsigned int uiRead = file.Read(bytes, static_cast<unsigned int>(uiLength));
  record.checksum = ZoMurmurHash3::GetOptimizedChecksum128(bytes, uiRead, 0);
  CFile::SStatus status;
  if (!file.GetStatus(status)) XB_THROW("TestSuite::FindDuplicateSets");
  record.sTime = XbDateTime(status.uiCreationTime).ToString(L"Y.m.d-H:i:s");
  return true;
}

XbArray<SDuplicateFile> examineFiles(const SUnitTest& unitTest, const XbArray<CString>& names) {
  XbArray<SDuplicateFile> records;
  CReadBuffer buffer;
  for (const CString& name : names) {
    SDuplicateFile record{unitTest.Name, name, unitTest.DataDir + L"/" + name, {}, {}};
    try {
      if (examineFile(record, buffer)) records.Add(std::move(record));
    } catch (...) { COut::Write(L"Fehler während Einlesen von Datei %s\n", record.sPath); }
  }
  return records;
}

struct SChecksumHash {
  std::size_t operator()(const ZoMurmurHash3::S128& checksum) const { return static_cast<std::size_t>(checksum.uiLow); }
};

// Indices of the records by checksum, groups in order of first occurrence.
XbArray<XbArray<unsigned int>> groupByChecksum(const XbArray<SDuplicateFile>& records) {
  XbArray<XbArray<unsigned int>> groups;
  std::unordered_map<ZoMurmurHash3::S128, unsigned int, SChecksumHash> groupOf;
  for (unsigned int i = 0; i < records.GetCount(); ++i) {
    const auto [it, bNew] = groupOf.try_emplace(records[i].checksum, groups.GetCount());
    if (bNew) groups.Emplace();
    groups[it->second].Add(i);
  }
  return groups;
}

SDuplicateSet makeSet(const XbArray<SDuplicateFile>& records, const XbArray<unsigned int>& group) {
  unsigned int uiKeeper = 0;
  for (unsigned int i = 1; i < group.GetCount(); ++i)
    if (records[group[i]].sTime.Str() < records[group[uiKeeper]].sTime.Str()) uiKeeper = i;
  SDuplicateSet set;
  set.Add(records[group[uiKeeper]]);
  for (unsigned int i = 0; i < group.GetCount(); ++i)
    if (i != uiKeeper) set.Add(records[group[i]]);
  return set;
}

}  // namespace

unsigned int FindDuplicateSets(const SUnitTest& unitTest, XbArray<SDuplicateSet>& sets) {
  std::unique_ptr<ZoUnitTest> test = CreateUnitTestInstance(unitTest.Name);
  if (!test) return 0;
  test->SetDataDirectory(unitTest.DataDir);
  test->InitSubtests();
  const auto* fileBased = dynamic_cast<const ZoUnitTestFileBased*>(test.get());
  if (!fileBased) return 0;

  const XbArray<SDuplicateFile> records = examineFiles(unitTest, fileBased->GetFilenames());
  unsigned int uiRedundant = 0;
  for (const XbArray<unsigned int>& group : groupByChecksum(records)) {
    if (group.GetCount() < 2) continue;
    sets.Add(makeSet(records, group));
    uiRedundant += group.GetCount() - 1;
  }
  return uiRedundant;
}

}  // namespace TestSuite
