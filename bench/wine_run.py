"""Running a program under Wine to its end, for the measurements of whole programs."""
import os
import subprocess
import sys

WITH_COM = "an empty program with the same imports that begins and ends COM"


def usage_of(command, exit_code):
    """What the process took. Ends the measurement when it ends with another code."""
    process = subprocess.Popen(command, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != exit_code:
        sys.exit(f"{command} has ended with {process.returncode}.")
    return usage
