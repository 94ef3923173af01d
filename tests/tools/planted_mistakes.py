"""Runs a check of tools/lib on the repository as it is, and as it would be with a mistake in one of
its files. All in one process, which reads each file once and changes none."""

import contextlib
import functools
import importlib.machinery
import importlib.util
import io
import pathlib
import re
import sys
from unittest import mock

_read_text = functools.cache(pathlib.Path.read_text)


def load(tool):
    """A tool as a module; the names of tools have no ending."""
    sys.path.insert(0, str(tool.parent))
    loader = importlib.machinery.SourceFileLoader(tool.name, str(tool))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(tool.name, loader))
    loader.exec_module(module)
    return module


def said(main, *arguments):
    """What a tool's function returns and prints; 1 and the message where it raises an error."""
    output = io.StringIO()
    with contextlib.redirect_stdout(output), contextlib.redirect_stderr(output):
        try:
            status = main(*arguments)
        except ValueError as error:
            return 1, str(error)
    return status, output.getvalue()


def finds_each(repository, check, arguments, mistakes):
    """Whether the check is content with the repository, and finds each of the mistakes, which are
    (complaint, file, regular expression, replacement). Prints what is otherwise."""
    main = load(repository / "tools/lib" / check).main

    def with_text(changed_file, changed_text):
        def read(file, encoding):
            return changed_text if file == changed_file else _read_text(file, encoding=encoding)

        with mock.patch.object(pathlib.Path, "read_text", read):
            return said(main, repository, *arguments)

    status, complaints = with_text(None, None)
    errors = [complaints] if status != 0 else []
    for complaint, name, expression, replacement in mistakes:
        file = repository / name
        text = _read_text(file, encoding="utf-8")
        changed = re.sub(expression, replacement, text, flags=re.MULTILINE)
        status, complaints = with_text(file, changed)
        if changed == text:
            errors.append(f"Nothing is changed by: {expression}")
        elif status == 0 or complaint not in complaints:
            errors.append(f"Not found: {complaint}\nbut:\n{complaints}")
    print(*errors, sep="\n", end="")
    return not errors
