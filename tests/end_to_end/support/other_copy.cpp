#include "tests/end_to_end/support/other_copy.h"

#include <gtest/gtest.h>

#include "tests/end_to_end/support/installed_hub.h"
#include "tests/support/unused_name.h"

namespace nhupdate_test {

namespace {

constexpr DWORD kTimeLimitMs = 20'000;

nhupdate::UniqueKernelHandle CreateNewEvent(const std::wstring& name) {
  nhupdate::UniqueKernelHandle event(::CreateEventW(nullptr, TRUE, FALSE, name.c_str()));
  EXPECT_NE(::GetLastError(), DWORD{ERROR_ALREADY_EXISTS});
  return event;
}

}  // namespace

COtherCopy::COtherCopy(const std::wstring& executable, Ending ending) {
  CInstalledHub::PutStandIn(L"stubborn", executable);
  const std::wstring events = L"nhupdate-" + UnusedName();
  ready_ = CreateNewEvent(events + L".ready");
  end_ = CreateNewEvent(events + L".end");
  process_ = StartChild(L"\"" + executable + L"\" " + events +
                        (ending == Ending::kAllowed ? L" yielding" : L""));
  EXPECT_EQ(::WaitForSingleObject(ready_.Get(), kTimeLimitMs), WAIT_OBJECT_0);
}

COtherCopy::~COtherCopy() {
  ::SetEvent(end_.Get());
  EXPECT_EQ(::WaitForSingleObject(process_.handle.Get(), kTimeLimitMs), WAIT_OBJECT_0);
}

bool COtherCopy::IsRunning() const {
  return ::WaitForSingleObject(process_.handle.Get(), 0) == WAIT_TIMEOUT;
}

}  // namespace nhupdate_test
