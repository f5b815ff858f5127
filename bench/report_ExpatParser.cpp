// report_ExpatParser: the anchor of the report benchmark, a small program
// that parses an XML file with expat and does the least work a reader must:
// it counts the elements and attributes and sums the lengths of the texts.
//
// "report_ExpatParser FILE OUT" reads FILE into memory, parses it once and
// writes the seconds that took, reading included, to OUT, followed by the
// counts (so that no handler can be left out). It fails if FILE cannot be
// read or does not parse.
#include <expat.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>

namespace {

struct SCounts {
  unsigned long uiElements = 0;
  unsigned long uiAttributes = 0;
  unsigned long uiTextBytes = 0;
};

void XMLCALL onStart(void* data, const XML_Char*, const XML_Char** attributes) {
  SCounts& counts = *static_cast<SCounts*>(data);
  ++counts.uiElements;
  for (; *attributes; attributes += 2) ++counts.uiAttributes;
}

void XMLCALL onEnd(void*, const XML_Char*) {}

void XMLCALL onText(void* data, const XML_Char*, int length) {
  static_cast<SCounts*>(data)->uiTextBytes += static_cast<unsigned long>(length);
}

// The whole file, read the way the system's XML reader reads it (its size,
// then one fread into a buffer that is not cleared first); false if it
// cannot be read or is empty.
bool readWhole(const char* path, std::unique_ptr<char[]>& buffer, std::size_t& size) {
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path, "rb"), &std::fclose);
  if (!file || std::fseek(file.get(), 0, SEEK_END) != 0) return false;
  const long length = std::ftell(file.get());
  if (length <= 0 || std::fseek(file.get(), 0, SEEK_SET) != 0) return false;
  size = static_cast<std::size_t>(length);
  buffer.reset(new char[size]);
  return std::fread(buffer.get(), 1, size, file.get()) == size;
}

bool parse(const char* text, std::size_t size, SCounts& counts) {
  XML_Parser parser = XML_ParserCreate(nullptr);
  XML_SetUserData(parser, &counts);
  XML_SetElementHandler(parser, &onStart, &onEnd);
  XML_SetCharacterDataHandler(parser, &onText);
  const bool ok = XML_Parse(parser, text, static_cast<int>(size), 1) == XML_STATUS_OK;
  XML_ParserFree(parser);
  return ok;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: report_ExpatParser FILE OUT\n");
    return 2;
  }
  const auto start = std::chrono::steady_clock::now();
  std::unique_ptr<char[]> text;
  std::size_t size = 0;
  SCounts counts;
  if (!readWhole(argv[1], text, size) || !parse(text.get(), size, counts)) return 1;
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
  std::ofstream(argv[2]) << elapsed.count() << " " << counts.uiElements << " " << counts.uiAttributes << " "
                         << counts.uiTextBytes << "\n";
  return 0;
}
