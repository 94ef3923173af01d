#pragma once

// A manager whose string file is Config\texts.json, and the records of loading it.

#include <gtest/gtest.h>

#include <string>

#include "tests/support/files.h"
#include "tests/support/installed_product.h"

namespace nhupdate_test {

inline const std::wstring kLoading =
    L"2|Load strings from {base}\\NHUpdateManager\\Config\\texts.json";
inline const std::wstring kNotOpened =
    L"4|Fail to open string file : {base}\\NHUpdateManager\\Config\\texts.json";

[[nodiscard]] inline std::wstring Loaded(int count) {
  return L"2|Total " + std::to_wstring(count) + L" strings loaded.";
}

class LoadStringsTest : public testing::Test {
 protected:
  LoadStringsTest() {
    CreateFolders(product_.Module() + L"\\Config");
    product_.Start();
  }

  [[nodiscard]] std::wstring Path() const { return product_.Module() + L"\\Config\\texts.json"; }

  void Load() {
    product_.ForgetRecords();
    product_.Manager().LoadStrings(Path());
  }

  void Load(const std::string& bytes) {
    WriteFileBytes(Path(), bytes);
    Load();
  }

  [[nodiscard]] std::wstring Text(const std::wstring& key) {
    return product_.Manager().GetString(key);
  }

  InstalledProduct product_;
};

}  // namespace nhupdate_test
