#pragma once

// The same for what runs on Windows: also a folder for the test's files, and what takes the place
// of single functions.

#include "base/existence.h"
#include "base/unique_handle.h"
#include "base/windows.h"
#include "tests/support/answers.h"
#include "tests/support/basics.h"
#include "tests/support/files.h"
#include "tests/support/held_file.h"
#include "tests/support/interposer.h"
#include "tests/support/scratch_folder.h"
