"""The tests produce all that the program can tell and do; what is added without a test is found:
program_texts_test.py REPOSITORY"""

import pathlib
import sys

from planted_mistakes import finds_each

GOLDEN = "tests/end_to_end/golden/"
MISTAKES = (
    ('the record 4|"Fail to copy it all." is produced by no test', "install/folder_copy.cpp",
     r'"Fail to copy folder\."', '"Fail to copy it all."'),
    ('the record 3|"Copy complete." is produced by no test', "install/folder_copy.cpp",
     r'kInformation, L"Copy complete\."', 'kWarning, L"Copy complete."'),
    ('the record 4|"Fail to launch updater for fun : %d" is produced by no test',
     "update/launch_catalog.h", "launch updater for check", "launch updater for fun"),
    ('the record 3|"Records that are lost: %s" is produced by no test', "log_library/logger.cpp",
     "Records before this one that could not be written", "Records that are lost"),
    ('the console text "Log does not start : %d" is produced by no test', "log/log_center.cpp",
     "Log start fail", "Log does not start"),
    ("no test starts Updater.exe NIMBAHUB -SkipAdditionTasks -KillAll -ExitWhenParentDie:%d",
     "update/launch_catalog.h", 'L"NIMBAHUB -SkipAdditionTasks -KillBrothers',
     'L"NIMBAHUB -SkipAdditionTasks -KillAll'),
    ('no test starts ICACLS.exe "%s" /grant "*S-1-5-32-545":(OI)(CI)M /inheritance:e',
     "install/folder_access.cpp", r"\(CI\)F", "(CI)M"),
    ("NIMBA HUB|DisplayVersion", "install/registration.cpp", 'L"DisplayIcon"', 'L"DisplayVersion"'),
    ("no test shows a box with KEY_FAIL_OTHER", "text/string_keys.h", "KEY_FAIL_COMMON_ERROR",
     "KEY_FAIL_OTHER"),
    ("-self_update ends in no test with 19 (kNextStageMissing)", "update/result_code.h",
     "kNextStageMissing = 15", "kNextStageMissing = 19"),
    ("-update ends with 15, which stands at no group", "update/result_code.h",
     "kNextStageMissing = 15", "kNextStageMissing = 19"),
    ("-install ends after all with 4 (kRegistryNotUpdated)",
     GOLDEN + "InstallEndToEndTest.InstallsTheHubAndNimbaCast.txt", "Return 0", "Return 4"),
    # A golden file that is empty says as little as none.
    ("-self_update ends in no test with 15 (kNextStageMissing)",
     GOLDEN + "SelfUpdateEndToEndTest.EndsWith15AndABoxWhenTheInstalledProgramIsMissing.txt",
     r"\A(.|\n)*\Z", ""),
    # What can't be read is not passed over.
    ("this text can't be read", "install/folder_copy.cpp", r'L"Copy complete\."', "CompleteText()"),
)

sys.exit(not finds_each(pathlib.Path(sys.argv[1]), "check_program_texts", [], MISTAKES))
