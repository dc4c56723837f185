#pragma once

#include <array>
#include <atomic>
#include <string>
#include <vector>

#include "automation/com_ptr.h"
#include "automation/windows_com.h"

namespace zuvi {

/// What keeps a DLL in memory.
enum class HoldKind { Object, Factory, ServerLock, Window, Method, Count };

/// What all automation objects of one DLL share: its name in errors, its file, its type libraries and the
/// counts that decide about unloading. Its address tells our own objects from those of another DLL of ours.
class ComServer {
 public:
  /// `source` is the name errors carry. Type libraries are the TYPELIB resources 1 to `type_libraries`.
  ComServer(std::string source, HINSTANCE instance, int type_libraries)
      : source_(std::move(source)), instance_(instance), type_libraries_(type_libraries) {}
  ComServer(const ComServer&) = delete;
  ComServer& operator=(const ComServer&) = delete;

  const std::string& Source() const { return source_; }
  HINSTANCE Instance() const { return instance_; }
  int TypeLibraries() const { return type_libraries_; }
  /// Full path of the server's file.
  std::wstring Path() const;
  /// Path under which the type library of that number (from 1) is loaded.
  std::wstring TypeLibPath(int number) const;
  /// Type information out of the server's own libraries, registered or not; null when there is none.
  ComPtr<ITypeInfo> TypeInfo(REFGUID id) const;

  void Hold(HoldKind kind) noexcept { ++holds_[static_cast<std::size_t>(kind)]; }
  void LetGo(HoldKind kind) noexcept { --holds_[static_cast<std::size_t>(kind)]; }
  long Holds(HoldKind kind) const noexcept { return holds_[static_cast<std::size_t>(kind)]; }
  /// True when nothing needs the DLL any more: the answer of DllCanUnloadNow.
  bool Idle() const noexcept;

 private:
  std::string source_;
  HINSTANCE instance_;
  int type_libraries_;
  std::array<std::atomic<long>, static_cast<std::size_t>(HoldKind::Count)> holds_{};
};

/// Keeps the DLL in memory while it lives.
class ServerHold {
 public:
  ServerHold(ComServer& server, HoldKind kind) noexcept : server_(server), kind_(kind) {
    server_.Hold(kind_);
  }
  ServerHold(const ServerHold&) = delete;
  ServerHold& operator=(const ServerHold&) = delete;
  ~ServerHold() { server_.LetGo(kind_); }

 private:
  ComServer& server_;
  HoldKind kind_;
};

}  // namespace zuvi
