#pragma once

// Answers the message boxes of other processes while it exists, and remembers what they said.

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "base/windows.h"

namespace nhupdate_test {

struct WatchedBox {
  std::string caption;
  std::string text;
  // What the picture beside the text mostly is: red for the error icon.
  bool has_red_icon = false;
};

// Which button to press, such as IDCANCEL.
using BoxAnswer = std::function<int(const WatchedBox&)>;

class CBoxWatcher {
 public:
  // Presses OK where there is nobody to choose.
  explicit CBoxWatcher(BoxAnswer choose = {});
  ~CBoxWatcher();
  CBoxWatcher(const CBoxWatcher&) = delete;
  CBoxWatcher& operator=(const CBoxWatcher&) = delete;

  // Ends the watching and returns what was seen, in order.
  [[nodiscard]] std::vector<WatchedBox> Finish();

 private:
  void Watch();
  bool Answer(HWND box);

  BoxAnswer choose_;
  std::vector<WatchedBox> boxes_;
  std::atomic<bool> is_finished_ = false;
  std::thread thread_;  // the last member: it uses the others from its first moment
};

}  // namespace nhupdate_test
