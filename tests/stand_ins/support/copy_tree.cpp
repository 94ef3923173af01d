#include "tests/stand_ins/support/copy_tree.h"

#include <filesystem>
#include <system_error>

namespace nhupdate_stand_in {

bool CopyTree(const std::wstring& source, const std::wstring& destination) {
  std::error_code error;
  std::filesystem::create_directories(destination, error);
  if (error) {
    return false;
  }
  std::filesystem::copy(source, destination,
                        std::filesystem::copy_options::recursive |
                            std::filesystem::copy_options::overwrite_existing,
                        error);
  return !error;
}

}  // namespace nhupdate_stand_in
