// XbException: the harness's one exception for a failure of its own
// consistency. Its only text is the name of the function that gave up.
#pragma once

#include <exception>
#include <string>

#include "CString.h"

class XbException : public std::exception {
 public:
  XbException(const char* file, int line, const char* function)
      : m_sFile(file ? file : ""), m_iLine(line), m_sFunction(function ? function : "") {}

  const char* what() const noexcept override { return m_sFunction.c_str(); }
  // The function name as wide text: what a frame that reports it prints.
  CString GetText() const { return CString::FromUtf8(m_sFunction); }
  const std::string& GetFile() const { return m_sFile; }
  int GetLine() const { return m_iLine; }

 private:
  std::string m_sFile;
  int m_iLine;
  std::string m_sFunction;
};

// Throws XbException for the given function name at this place.
#define XB_THROW(function) throw XbException(__FILE__, __LINE__, function)
