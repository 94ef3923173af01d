#pragma once

// What the tests of the install sequence share: a product with one staged file, an old one
// installed, and a registry, processes and tools of its own.

#include "tests/support/failing_copy.h"
#include "tests/support/fake_process_table.h"
#include "tests/support/product_surroundings.h"
#include "tests/support/recorded_tools.h"
#include "tests/support/scratch_registry.h"
#include "tests/unit/update/workflow_test.h"

namespace nhupdate_test {

class InstallSequenceTest : public WorkflowTest {
 protected:
  explicit InstallSequenceTest(const ProductOptions& options = {});

  // Another copy of the program, which refuses to end, and the records of that.
  static FakeProcess StubbornCopy();
  static Lines NotStoppedLines();

  // The old file is deleted, and the new one is copied, or isn't since the disk is full.
  static Lines CopiedLines();
  static Lines NotCopiedLines();

  [[nodiscard]] bool NimbaCastFolderExists() const;

  ProductSurroundings surroundings_;
  RecordedTools tools_;
  FakeProcessTable no_processes_;
  ScratchRegistry registry_;
};

}  // namespace nhupdate_test
