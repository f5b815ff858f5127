// SpecialFiles: file-system objects that are no regular files, made for
// tests of the code that must refuse them.
#pragma once

#include <string>

// Makes a FIFO at `path`; false if the system refuses.
bool MakeFifo(const std::string& path);
