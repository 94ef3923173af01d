#include "status_window.h"

#include <algorithm>

namespace nimba_hub {

namespace {

constexpr int kWidth = 480;
constexpr int kHeight = 160;
constexpr int kMargin = 16;

// The window's property that leads to its object.
constexpr wchar_t kSelf[] = L"CStatusWindow";

void HandleMessages() {
  MSG message = {};
  while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    ::TranslateMessage(&message);
    ::DispatchMessageW(&message);
  }
}

int ShowBox(HWND owner, const std::wstring& text, UINT style) {
  return ::MessageBoxW(owner, text.c_str(), L"Nimba Hub", style | MB_SETFOREGROUND);
}

}  // namespace

CStatusWindow::CStatusWindow(const wchar_t* class_name, const std::wstring& title,
                             const std::wstring& text) {
  WNDCLASSEXW window_class = {};
  window_class.cbSize = sizeof(window_class);
  window_class.lpfnWndProc = &CStatusWindow::OnMessage;
  window_class.hInstance = ::GetModuleHandleW(nullptr);
  window_class.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
  window_class.hbrBackground = ::GetSysColorBrush(COLOR_BTNFACE);
  window_class.lpszClassName = class_name;
  ::RegisterClassExW(&window_class);
  window_ = ::CreateWindowExW(0, class_name, title.c_str(), WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                              CW_USEDEFAULT, CW_USEDEFAULT, kWidth, kHeight, nullptr, nullptr,
                              window_class.hInstance, nullptr);
  ::SetPropW(window_, kSelf, this);
  ::CreateWindowExW(0, L"Static", text.c_str(), WS_CHILD | WS_VISIBLE, kMargin, kMargin,
                    kWidth - 3 * kMargin, kHeight - 4 * kMargin, window_, nullptr,
                    window_class.hInstance, nullptr);
}

CStatusWindow::~CStatusWindow() {
  ::RemovePropW(window_, kSelf);
  ::DestroyWindow(window_);
}

Woken CStatusWindow::WaitFor(HANDLE process, std::chrono::milliseconds limit) {
  constexpr auto kLongestSleep = std::chrono::milliseconds(60'000);
  const DWORD count = process != nullptr ? 1 : 0;
  const auto end = std::chrono::steady_clock::now() + limit;
  for (;;) {
    HandleMessages();
    if (is_closed_) {
      return Woken::kByUser;
    }
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    const auto sleep = std::clamp(left, std::chrono::milliseconds(0), kLongestSleep);
    const DWORD woken = ::MsgWaitForMultipleObjectsEx(
        count, &process, static_cast<DWORD>(sleep.count()), QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    if (count > 0 && woken == WAIT_OBJECT_0) {
      return Woken::kByObject;
    }
    if (woken == WAIT_FAILED || (woken == WAIT_TIMEOUT && left <= kLongestSleep)) {
      return Woken::kByTime;
    }
  }
}

void CStatusWindow::Tell(const std::wstring& text, UINT icon) const {
  ShowBox(window_, text, MB_OK | icon);
}

bool CStatusWindow::Ask(const std::wstring& text, UINT buttons_and_icon) const {
  const int button = ShowBox(window_, text, buttons_and_icon);
  return button == IDOK || button == IDRETRY;
}

LRESULT CALLBACK CStatusWindow::OnMessage(HWND window, UINT message, WPARAM wide, LPARAM value) {
  if (message != WM_CLOSE) {
    return ::DefWindowProcW(window, message, wide, value);
  }
  const auto self = static_cast<CStatusWindow*>(::GetPropW(window, kSelf));
  if (self != nullptr) {
    self->is_closed_ = true;
  }
  return 0;
}

}  // namespace nimba_hub
