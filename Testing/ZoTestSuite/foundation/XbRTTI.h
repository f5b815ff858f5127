// XbRTTI: the run-time type registry, which finds and creates classes by
// their name, and XbRTTIRegistrar, which holds one class in it.
//
// Every registered class has one XbRTTI record, a static data member named
// RTTI, made by XB_DECLARE_DYNCREATE (in the class) and
// XB_IMPLEMENT_DYNCREATE (in one source file). The latter also makes a static
// registrar object: the class is in the registry from the moment its library
// is loaded until the moment it is unloaded. Look-ups are safe from any
// thread.
#pragma once

#include <memory>
#include <type_traits>

class IObject;

class XbRTTI {
 public:
  // Makes a new instance; the caller owns it.
  using FnCreate = std::unique_ptr<IObject> (*)();
  // True if the object is an instance of the record's class or derived.
  using FnIsInstance = bool (*)(const IObject&);

  constexpr XbRTTI(const wchar_t* className, const XbRTTI* base, FnCreate create, FnIsInstance isInstance)
      : m_szClassName(className), m_pBase(base), m_fnCreate(create), m_fnIsInstance(isInstance) {}
  XbRTTI(const XbRTTI&) = delete;
  XbRTTI& operator=(const XbRTTI&) = delete;

  // The name under which the class is registered, as written in the source.
  const wchar_t* GetClassName() const { return m_szClassName; }
  // The record of the base class; null only for IObject.
  const XbRTTI* GetBase() const { return m_pBase; }
  // True if this class is `other` or derives from it (through the records).
  bool IsKindOf(const XbRTTI& other) const;
  bool IsInstance(const IObject& object) const { return m_fnIsInstance && m_fnIsInstance(object); }
  // Null for a class that cannot be created (abstract, or without a public
  // default constructor).
  FnCreate GetCreate() const { return m_fnCreate; }

  // The record registered under `className`, null if there is none. When
  // two libraries register one name, the earlier registration is found
  // until its library goes away.
  static const XbRTTI* Find(const wchar_t* className);
  // The creation function of the class registered under `className`; null
  // if the class is unknown or cannot be created.
  static FnCreate getCreate(const wchar_t* className);

  // Entering and leaving the registry; XbRTTIRegistrar does this.
  static void Register(const XbRTTI& rtti);
  static void Unregister(const XbRTTI& rtti);

  template <typename T>
  static constexpr FnCreate CreatorOf() {
    if constexpr (std::is_abstract_v<T> || !std::is_default_constructible_v<T>) {
      return nullptr;
    } else {
      return []() -> std::unique_ptr<IObject> { return std::unique_ptr<IObject>(new T()); };
    }
  }
  template <typename T>
  static constexpr FnIsInstance InstanceTestOf() {
    if constexpr (std::is_same_v<T, IObject>) {
      return [](const IObject&) { return true; };
    } else {
      return [](const IObject& object) { return dynamic_cast<const T*>(&object) != nullptr; };
    }
  }

 private:
  const wchar_t* m_szClassName;
  const XbRTTI* m_pBase;
  FnCreate m_fnCreate;
  FnIsInstance m_fnIsInstance;
};

// Holds one record in the registry for its own lifetime.
class XbRTTIRegistrar {
 public:
  explicit XbRTTIRegistrar(const XbRTTI& rtti) : m_rtti(rtti) { XbRTTI::Register(m_rtti); }
  ~XbRTTIRegistrar() { XbRTTI::Unregister(m_rtti); }
  XbRTTIRegistrar(const XbRTTIRegistrar&) = delete;
  XbRTTIRegistrar& operator=(const XbRTTIRegistrar&) = delete;

 private:
  const XbRTTI& m_rtti;
};

#define XB_RTTI_CONCAT_(a, b) a##b
#define XB_RTTI_CONCAT(a, b) XB_RTTI_CONCAT_(a, b)

// Inside the class body: declares the class's record. Leaves the access at
// public.
#define XB_DECLARE_DYNCREATE(ClassName) \
 public:                                \
  static const XbRTTI RTTI;

// In one source file: defines the record and registers the class under its
// name as written. The class can be created by the registry if it is not
// abstract and has a public default constructor.
#define XB_IMPLEMENT_DYNCREATE(ClassName, BaseClassName)                                                      \
  static_assert(std::is_base_of_v<BaseClassName, ClassName>, #ClassName " must derive from " #BaseClassName); \
  const XbRTTI ClassName::RTTI(L"" #ClassName, &BaseClassName::RTTI, XbRTTI::CreatorOf<ClassName>(),          \
                               XbRTTI::InstanceTestOf<ClassName>());                                          \
  static const XbRTTIRegistrar XB_RTTI_CONCAT(s_xbRTTIRegistrar_, __COUNTER__)(ClassName::RTTI)
