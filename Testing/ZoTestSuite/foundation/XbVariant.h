// XbVariant: the tagged value of case parameters (bool, unsigned 32-bit,
// and the few other kinds a configuration may carry).
#pragma once

#include <cstdint>
#include <variant>

#include "CString.h"

class XbVariant {
 public:
  enum class EType { Empty, Bool, UInt32, UInt64, Int32, Double, Text };

  XbVariant() = default;
  XbVariant(bool value) : m_value(value) {}
  XbVariant(std::uint32_t value) : m_value(value) {}
  XbVariant(std::uint64_t value) : m_value(value) {}
  XbVariant(std::int32_t value) : m_value(value) {}
  XbVariant(double value) : m_value(value) {}
  XbVariant(const CString& value) : m_value(value) {}
  XbVariant(const wchar_t* value) : m_value(CString(value)) {}

  EType GetType() const { return static_cast<EType>(m_value.index()); }
  bool IsEmpty() const { return GetType() == EType::Empty; }
  bool IsBool() const { return GetType() == EType::Bool; }
  bool IsUInt32() const { return GetType() == EType::UInt32; }

  // Typed reads; a read of the wrong type throws std::bad_variant_access.
  bool GetBool() const { return std::get<bool>(m_value); }
  std::uint32_t GetUInt32() const { return std::get<std::uint32_t>(m_value); }
  std::uint64_t GetUInt64() const { return std::get<std::uint64_t>(m_value); }
  std::int32_t GetInt32() const { return std::get<std::int32_t>(m_value); }
  double GetDouble() const { return std::get<double>(m_value); }
  const CString& GetText() const { return std::get<CString>(m_value); }

  friend bool operator==(const XbVariant& a, const XbVariant& b) { return a.m_value == b.m_value; }

 private:
  std::variant<std::monostate, bool, std::uint32_t, std::uint64_t, std::int32_t, double, CString> m_value;
};
