#include "tests/support/failing_copy.h"

#include <utility>

namespace nhupdate_test {

FailingCopy::FailingCopy(DWORD error, Choice fails)
    : copy_([this, error, fails = std::move(fails)](const wchar_t* source, const wchar_t* target,
                                                    BOOL fail_if_exists) -> BOOL {
        if (!fails(target)) {
          return copy_.Original()(source, target, fail_if_exists);
        }
        ::SetLastError(error);
        return FALSE;
      }) {}

}  // namespace nhupdate_test
