#include "tests/end_to_end/support/box_watcher.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <tuple>
#include <utility>

#include "base/windows.h"
#include "tests/support/utf8_text.h"

namespace nhupdate_test {

namespace {

constexpr int kTextId = 0xFFFF;
constexpr DWORD kPollMs = 10;
constexpr int kDrawingTries = 500;  // a busy machine may take seconds
constexpr UINT kMessageTimeLimitMs = 2000;

std::string TextOf(HWND window) {
  std::array<wchar_t, 2048> text = {};
  DWORD_PTR ignored = 0;
  ::SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                        SMTO_ABORTIFHUNG, kMessageTimeLimitMs, &ignored);
  return ToUtf8(text.data());
}

HWND FindIcon(HWND box) {
  HWND child = nullptr;
  while ((child = ::FindWindowExW(box, child, L"Static", nullptr)) != nullptr) {
    if ((::GetWindowLongW(child, GWL_STYLE) & SS_TYPEMASK) == SS_ICON) {
      return child;
    }
  }
  return nullptr;
}

enum class Colour { kNone, kRed, kOther };

// An icon of another process can't be asked what it shows, but its colours are on the screen.
Colour ColourOf(HWND icon) {
  constexpr int kEnoughPixels = 50;
  RECT area = {};
  if (!::GetWindowRect(icon, &area)) {
    return Colour::kNone;
  }
  const HDC screen = ::GetDC(nullptr);
  int red_pixels = 0;
  int coloured_pixels = 0;
  for (LONG y = area.top; y < area.bottom; y += 2) {
    for (LONG x = area.left; x < area.right; x += 2) {
      const COLORREF pixel = ::GetPixel(screen, x, y);
      const int red = GetRValue(pixel);
      const int green = GetGValue(pixel);
      const int blue = GetBValue(pixel);
      const int spread = std::max({red, green, blue}) - std::min({red, green, blue});
      coloured_pixels += spread > 60 ? 1 : 0;
      red_pixels += red - std::max(green, blue) > 60 ? 1 : 0;
    }
  }
  ::ReleaseDC(nullptr, screen);
  if (coloured_pixels <= kEnoughPixels) {
    return Colour::kNone;
  }
  return red_pixels > kEnoughPixels && red_pixels * 2 > coloured_pixels ? Colour::kRed
                                                                        : Colour::kOther;
}

// A box is drawn a moment after it becomes visible.
bool IsRedOnceItIsDrawn(HWND icon) {
  Colour colour = ColourOf(icon);
  for (int tries = 0; colour == Colour::kNone && tries < kDrawingTries; ++tries) {
    ::Sleep(kPollMs);
    colour = ColourOf(icon);
  }
  return colour == Colour::kRed;
}

bool Contains(const std::vector<HWND>& boxes, HWND box) {
  return std::find(boxes.begin(), boxes.end(), box) != boxes.end();
}

std::vector<HWND> VisibleBoxes() {
  std::vector<HWND> boxes;
  HWND box = nullptr;
  while ((box = ::FindWindowExW(nullptr, box, L"#32770", nullptr)) != nullptr) {
    if (::IsWindowVisible(box)) {
      boxes.push_back(box);
    }
  }
  return boxes;
}

}  // namespace

CBoxWatcher::CBoxWatcher(BoxAnswer choose)
    : choose_(std::move(choose)), thread_(&CBoxWatcher::Watch, this) {}

CBoxWatcher::~CBoxWatcher() {
  std::ignore = Finish();
}

std::vector<WatchedBox> CBoxWatcher::Finish() {
  is_finished_ = true;
  if (thread_.joinable()) {
    thread_.join();
  }
  return boxes_;
}

void CBoxWatcher::Watch() {
  std::vector<HWND> answered;
  while (!is_finished_) {
    const std::vector<HWND> visible = VisibleBoxes();
    // A box that is gone is forgotten: the next one may get its handle.
    std::erase_if(answered, [&](HWND box) { return !Contains(visible, box); });
    for (const HWND box : visible) {
      if (!Contains(answered, box) && Answer(box)) {
        answered.push_back(box);
      }
    }
    ::Sleep(kPollMs);
  }
}

// Returns false when the box is not complete yet.
bool CBoxWatcher::Answer(HWND box) {
  const HWND text = ::GetDlgItem(box, kTextId);
  if (text == nullptr) {
    return false;
  }
  const HWND icon = FindIcon(box);
  const bool is_red = icon != nullptr && IsRedOnceItIsDrawn(icon);
  boxes_.push_back({TextOf(box), TextOf(text), is_red});
  const int button = choose_ ? choose_(boxes_.back()) : IDOK;
  ::PostMessageW(box, WM_COMMAND, static_cast<WPARAM>(button), 0);
  return true;
}

}  // namespace nhupdate_test
