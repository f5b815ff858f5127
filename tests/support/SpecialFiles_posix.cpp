// SpecialFiles: made with the system's own calls.
#include <sys/stat.h>

#include "SpecialFiles.h"

bool MakeFifo(const std::string& path) { return ::mkfifo(path.c_str(), 0600) == 0; }
