"""Running a program under Wine to its end, for the measurements of whole programs."""
import os
import subprocess
import sys
import tempfile

WITH_COM = "an empty program with the same imports that begins and ends COM"


def usage_of(command, exit_code):
    """What the process took. Ends the measurement, with what was said, when it ends with another code."""
    with tempfile.TemporaryFile() as said:
        process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=said, stderr=said,
                                   env={**os.environ, "WINEDEBUG": "fixme-all"})
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        if process.returncode != exit_code:
            said.seek(0)
            text = said.read().decode(errors="replace")
            sys.exit(f"{command} has ended with {process.returncode}.\n{text}")
    return usage
