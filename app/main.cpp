#include "app/program.h"

int main() {
  return nhupdate::RunProgram();
}
