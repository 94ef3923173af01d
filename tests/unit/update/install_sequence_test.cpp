#include "tests/unit/update/install_sequence_test.h"

#include "base/existence.h"

namespace nhupdate_test {

namespace {

const Lines kDeletedLine = {L"2|Delete OK : {base}\\old.txt"};

}  // namespace

InstallSequenceTest::InstallSequenceTest(const ProductOptions& options)
    : WorkflowTest(options), surroundings_(product_.Facts()) {
  AddFile(L"\\old.txt");
  AddFile(L"\\Updater\\App\\new.txt");
  AddFile(L"\\Updater\\Config\\ut.ini");
  AddFile(L"\\Updater\\Temp\\part.bin");
}

FakeProcess InstallSequenceTest::StubbornCopy() {
  return {.id = 4242, .image_path = L"C:\\NHUpdateManager.exe", .refuses_to_end = true};
}

Lines InstallSequenceTest::NotStoppedLines() {
  return {L"2|Target process NHUpdateManager.exe(4242) found, terminate it.",
          L"4|Process NHUpdateManager.exe(4242) still found.",
          L"4|Fail to terminate NHUpdateManager.", L"4|Fail to stop associates."};
}

Lines InstallSequenceTest::CopiedLines() {
  return Join({kDeletedLine, CopiedNewFileLines()});
}

Lines InstallSequenceTest::NotCopiedLines() {
  return Join({kDeletedLine,
               {L"4|Fail to copy (112) : {base}\\Updater\\App\\new.txt => "
                L"{base}\\new.txt",
                L"4|Fail to copy files."}});
}

bool InstallSequenceTest::NimbaCastFolderExists() const {
  return nhupdate::Exists(product_.Root() + L"\\NimbaCast");
}

}  // namespace nhupdate_test
