#pragma once

// What Windows tells the program about itself for as long as the object lives: where its executable
// and the ProgramData folder are, and whether it is elevated.

#include <string>

#include "base/windows.h"
#include "tests/support/interposer.h"

#include <shlobj.h>  // needs <windows.h> first

namespace nhupdate_test {

struct SurroundingFacts {
  std::wstring executable;
  std::wstring program_data;  // empty when there is none
  bool elevated = true;
};

class ProductSurroundings {
 public:
  explicit ProductSurroundings(SurroundingFacts facts);
  ProductSurroundings(const ProductSurroundings&) = delete;
  ProductSurroundings& operator=(const ProductSurroundings&) = delete;

 private:
  DWORD GiveExecutable(wchar_t* buffer, DWORD units) const;

  SurroundingFacts facts_;
  INTERPOSER(GetModuleFileNameW) module_file_name_;
  INTERPOSER(SHGetKnownFolderPath) known_folder_;
  INTERPOSER(GetTokenInformation) token_information_;
};

}  // namespace nhupdate_test
