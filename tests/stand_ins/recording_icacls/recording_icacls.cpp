// Stands in for ICACLS.exe: writes down how it was started and changes nothing.

#include "tests/stand_ins/support/own_start.h"
#include "tests/stand_ins/support/wide_main.h"

int wmain(int, wchar_t**) {
  nhupdate_stand_in::RecordOwnStart();
  return 0;
}
