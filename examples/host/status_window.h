#pragma once

// A small window that says what is going on, and the way out of every wait: whoever closes it ends
// the waiting.

#include <chrono>
#include <string>

#include "windows_api.h"

namespace nimba_hub {

// By these the copies of the program find each other's windows.
inline constexpr wchar_t kProductWindow[] = L"Corvane.NimbaHub.Product";
inline constexpr wchar_t kHelperWindow[] = L"Corvane.NimbaHub.Update";

enum class Woken { kByObject, kByTime, kByUser };

class CStatusWindow {
 public:
  CStatusWindow(const wchar_t* class_name, const std::wstring& title, const std::wstring& text);
  ~CStatusWindow();
  CStatusWindow(const CStatusWindow&) = delete;
  CStatusWindow& operator=(const CStatusWindow&) = delete;

  // Waits until the time is over or somebody closes the window.
  [[nodiscard]] Woken Wait(std::chrono::milliseconds limit) { return WaitFor(nullptr, limit); }

  // The same for a process that may end first.
  [[nodiscard]] Woken WaitFor(HANDLE process, std::chrono::milliseconds limit);

  // The icon is MB_ICONERROR or the like.
  void Tell(const std::wstring& text, UINT icon) const;

  // The buttons are MB_OKCANCEL or MB_RETRYCANCEL; returns whether it wasn't Cancel.
  [[nodiscard]] bool Ask(const std::wstring& text, UINT buttons_and_icon) const;

  [[nodiscard]] HWND Get() const { return window_; }

 private:
  static LRESULT CALLBACK OnMessage(HWND window, UINT message, WPARAM wide, LPARAM value);

  HWND window_ = nullptr;
  bool is_closed_ = false;
};

}  // namespace nimba_hub
