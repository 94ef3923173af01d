#pragma once

// The host of examples/host as the product's program, with a newer one staged.

#include <algorithm>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "tests/end_to_end/support/end_to_end_test.h"
#include "tests/support/files.h"

namespace nhupdate_test {

inline constexpr wchar_t kProductWindow[] = L"Corvane.NimbaHub.Product";
inline constexpr DWORD kHostLimitMs = 60'000;

inline constexpr char kOffer[] = "Install it now?";

// Closes a window, once.
class CClosing {
 public:
  explicit CClosing(const wchar_t* window_class, const wchar_t* title = nullptr)
      : class_(window_class), title_(title) {}

  void operator()() {
    const HWND window = is_done_ ? nullptr : ::FindWindowW(class_, title_);
    is_done_ = is_done_ || (window != nullptr && ::PostMessageW(window, WM_CLOSE, 0, 0));
  }

  [[nodiscard]] bool IsDone() const { return is_done_; }

 private:
  const wchar_t* class_;
  const wchar_t* title_;
  bool is_done_ = false;
};

// The helper lies in the folder for temporary files, which is the test's own as long as this lives.
class CTemporaryFolder {
 public:
  explicit CTemporaryFolder(const std::wstring& folder) {
    before_.resize(::GetEnvironmentVariableW(kName, before_.data(), MAX_PATH));
    ::SetEnvironmentVariableW(kName, folder.c_str());
  }
  ~CTemporaryFolder() {
    ::SetEnvironmentVariableW(kName, before_.empty() ? nullptr : before_.c_str());
  }
  CTemporaryFolder(const CTemporaryFolder&) = delete;
  CTemporaryFolder& operator=(const CTemporaryFolder&) = delete;

 private:
  static constexpr wchar_t kName[] = L"TMP";
  std::wstring before_ = std::wstring(MAX_PATH, L'\0');
};

class HostExampleTest : public EndToEndTest {
 protected:
  HostExampleTest() {
    hub_.PutStandIn(L"nimba_hub_host", Host());
    hub_.PutStandIn(L"nimba_hub_host", hub_.Release() + L"\\NHHub.exe");
    AppendFileBytes(hub_.Release() + L"\\NHHub.exe", "2.0.0");
    hub_.Script(L"check NIMBAHUB", {.exit_code = 0});
    hub_.Script(L"download NIMBAHUB", {.exit_code = 0});
    hub_.Script(L"check NIMBA_SOFTWARE", {.exit_code = 1});
    hub_.Script(L"NIMBAHUB", {.exit_code = 0, .stage = hub_.Release()});
  }

  [[nodiscard]] std::wstring Host() const { return hub_.Base() + L"\\NHHub.exe"; }

  // Runs the host until it and all that it has started have ended. Elevated, since Wine doesn't
  // know of consent: "runas" gives no rights there that weren't there before.
  [[nodiscard]] ProgramRun RunHost(const std::function<void()>& while_running,
                                   const BoxAnswer& answer = {},
                                   const std::wstring& more = {}) const {
    return RunToTheEnd({.executable = Host(),
                        .arguments = L"--first-check 0 --check-every 1" + more,
                        .time_limit_ms = kHostLimitMs,
                        .while_running = while_running,
                        .answer = answer});
  }

  [[nodiscard]] static std::vector<DWORD> CodesOf(const ProgramRun& run) {
    std::vector<DWORD> codes;
    std::ranges::transform(run.managers, std::back_inserter(codes), &ManagerProcess::exit_code);
    return codes;
  }

  [[nodiscard]] static std::vector<std::string> TextsOf(const ProgramRun& run) {
    std::vector<std::string> texts;
    std::ranges::transform(run.boxes, std::back_inserter(texts), &WatchedBox::text);
    return texts;
  }

  CClosing close_product_{kProductWindow};
  CClosing close_new_product_{kProductWindow, L"Nimba Hub 2.0.0"};

 private:
  CTemporaryFolder temporary_folder_{hub_.Scratch()};
};

}  // namespace nhupdate_test
