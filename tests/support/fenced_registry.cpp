// The registry.

#include "tests/support/fence_ground.h"
#include "tests/support/fenced_function.h"

namespace nhupdate_test {

namespace {

void CheckKey(const char* function, HKEY key, const wchar_t* sub_key) {
  if (!IsKeyInside(key, sub_key)) {
    RefuseUnlessAllowed(function, DescribeKey(key, sub_key));
  }
}

constexpr auto kKey = [](const char* function, HKEY key, const auto&...) {
  CheckKey(function, key, nullptr);
};

constexpr auto kSubKey = [](const char* function, HKEY key, const wchar_t* sub_key,
                            const auto&...) { CheckKey(function, key, sub_key); };

constexpr auto kTarget = [](const char* function, HKEY, const wchar_t*, HKEY target) {
  CheckKey(function, target, nullptr);
};

constexpr auto kRemember = [](LSTATUS status, HKEY key, HKEY target) {
  if (status == ERROR_SUCCESS) {
    RedirectKey(key, target);
  }
};

}  // namespace

// To open a key for changes changes nothing, but to create one does, also when it is there: whoever
// asks for that would create it.
const std::vector<FencedFunction>& FencedRegistryCalls() {
  static const std::vector<FencedFunction> calls = {
      // What the program and the tests write with.
      NHUPDATE_FENCED(RegCreateKeyExW, kSubKey),
      NHUPDATE_FENCED(RegSetValueExW, kKey),
      NHUPDATE_FENCED(RegSetKeyValueW, kSubKey),
      NHUPDATE_FENCED(RegDeleteTreeW, kSubKey),
      // Changes nothing outside of this process, but where the others lead.
      NHUPDATE_FENCED(RegOverridePredefKey, CheckNothing{}, kRemember),
      // What does the same by other names.
      NHUPDATE_FENCED(RegCreateKeyW, kSubKey),
      NHUPDATE_FENCED(RegSetValueW, kSubKey),
      NHUPDATE_FENCED(RegDeleteKeyW, kSubKey),
      NHUPDATE_FENCED(RegDeleteKeyExW, kSubKey),
      NHUPDATE_FENCED(RegDeleteKeyValueW, kSubKey),
      NHUPDATE_FENCED(RegDeleteValueW, kKey),
      NHUPDATE_FENCED(RegRenameKey, kSubKey),
      NHUPDATE_FENCED(RegCopyTreeW, kTarget),
      NHUPDATE_FENCED(RegRestoreKeyW, kKey),
      NHUPDATE_FENCED(RegReplaceKeyW, kSubKey),
      NHUPDATE_FENCED(RegLoadKeyW, kSubKey),
      NHUPDATE_FENCED(RegUnLoadKeyW, kSubKey),
      NHUPDATE_FENCED(RegSetKeySecurity, kKey),
  };
  return calls;
}

}  // namespace nhupdate_test
