// SelectionStore_fuzz: the reader of selection files on arbitrary bytes; a
// store made from what it accepts is asked about a few cases and written
// and read again.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include "FuzzInput.h"
#include "discovery/SelectionStore.h"

using TestSuite::CSelectionStore;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const CString path = FuzzSupport::WriteInput(L"input.xml", data, size);
  std::unique_ptr<CSelectionStore::SData> selection = CSelectionStore::Read(path);
  if (!selection) return 0;
  const CString written = FuzzSupport::ScratchDirectory() + L"written.xml";
  CSelectionStore::Write(*selection, written);
  const CSelectionStore store(std::move(selection));
  const CSelectionStore::SData& stored = *store.GetData();
  for (const auto& unitTest : stored.unitTests) {
    store.IsSelected(unitTest.sName, L"");
    for (const auto& testCase : unitTest.cases) store.IsSelected(unitTest.sName, testCase.sName);
  }
  store.IsSelected(L"Geometry", L"Torus");
  CSelectionStore::Read(written);
  return 0;
}
