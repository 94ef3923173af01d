"""Sources in which every chosen place is written as it is and with each of its faults, of which
planted.h chooses at run time."""

import hashlib
import re

_MAX_NUMBER = 32767  # see planted.h
_VARIANT = re.compile(r"/\*<(\d+)\*/.*?/\*\1>\*/", re.DOTALL)
_UNIT = re.compile(r"/\*\[([\d,]+)\*/.*?/\*\1\]\*/", re.DOTALL)


def _variant(fault, text):
    return f"\n/*<{fault.number}*/{text}/*{fault.number}>*/\n"


def _edited(fault):
    """The unit's text with the fault in it."""
    unit, edit = fault.unit, fault.edit
    text = unit.text()
    return text[: edit.start - unit.start] + edit.replacement + text[edit.stop - unit.start :]


def _chain(unit, faults, original, edited):
    """A conditional expression over the faults."""
    pieces = [_variant(fault, f"planted::At({fault.number}) ? {edited(fault)} : ") for fault in faults]
    return "".join(pieces) + original


def _condition(unit, faults):
    def edited(fault):
        if fault.edit.whole == "negated":
            return f"!({unit.text()})"
        return "false" if fault.edit.whole else f"static_cast<bool>({_edited(fault)})"

    return _chain(unit, faults, f"static_cast<bool>({unit.text()})", edited)


def _expression(unit, faults):
    pieces = []
    for fault in faults:
        body = "" if fault.edit.whole == "dropped" else _edited(fault)
        pieces.append(_variant(fault, f"if (planted::At({fault.number})) {{ {body} }} else"))
    return "".join(pieces) + f" {{ {unit.text()} }}"


def _return(unit, faults):
    pieces = [
        _variant(fault, f"if (planted::At({fault.number})) {{ {_edited(fault)} }}") for fault in faults
    ]
    return "".join(pieces) + unit.text()


def _value(unit, text):
    """What a definition gives the name, as an expression or a list in braces."""
    if text.startswith("="):
        return text[1:].strip()
    return unit.type.removeprefix("const ") + text


def _local(unit, faults):
    pieces = [
        _variant(fault, f"if (planted::At({fault.number})) {{ return {_value(unit, _edited(fault))}; }}")
        for fault in faults
    ]
    result = "" if "auto" in unit.type.split() else f"-> {unit.type} "
    return f" = [&]() {result}{{ {''.join(pieces)} return {_value(unit, unit.text())}; }}()"


def _named(unit, faults):
    definition = _local(unit, [fault for fault in faults if not fault.edit.whole])
    whole = [fault for fault in faults if fault.edit.whole]
    if not whole:
        return definition

    def edited(fault):
        return f"!({unit.name})" if fault.edit.whole == "negated" else "false"

    return f"{definition}; {_chain(unit, whole, f'static_cast<bool>({unit.name})', edited)}"


def _constant(unit, faults):
    kind = unit.type.removeprefix("const ") if "*" not in unit.type else unit.type

    def value(text):
        text = text[text.index("=") + 1 :].strip() if "=" in text[:4] else text
        return kind + text if text.startswith("{") else f"static_cast<{kind}>({text})"

    chain = _chain(unit, faults, value(unit.text()), lambda fault: value(_edited(fault)))
    if unit.is_member and not unit.is_constexpr:
        return f" = {chain}"
    words = unit.source.slice(unit.declaration, unit.begin).split()
    storage = [word for word in ("static", "inline") if word in words]
    if unit.is_member:
        storage = ["static", "inline"]
    type_text = unit.type if unit.type.startswith("const ") else f"const {unit.type}"
    return f"{' '.join(storage)} {type_text} {unit.name} = {chain}"


_WRITERS = {
    "condition": _condition,
    "expression": _expression,
    "return": _return,
    "local": _local,
    "named": _named,
    "constant": _constant,
}


def can_be_chosen_at_run_time(fault):
    return fault.unit.kind in _WRITERS and not fault.edit.is_fixed


def give_numbers(faults):
    """A fault has the same number whichever others are planted elsewhere, so that their files need
    not be compiled again."""
    taken = set()
    for fault in sorted(faults, key=lambda fault: (fault.key(), fault.id)):
        number = int(hashlib.sha256(fault.key().encode()).hexdigest(), 16) % _MAX_NUMBER + 1
        while number in taken:
            number = number % _MAX_NUMBER + 1
        taken.add(number)
        fault.number = number


def _pieces(unit, faults):
    """What is put in the place of what, as (start, stop, text)."""
    exchanges = [fault for fault in faults if fault.edit.whole == "exchanged"]
    others = [fault for fault in faults if fault.edit.whole != "exchanged"]
    for fault in exchanges:
        # The second statement stands before the first one too, and only one of the two is reached:
        # so a statement can belong to two pairs.
        text = _variant(fault, f"if (planted::At({fault.number})) {{ {unit.next.text()} }}")
        yield unit.start, unit.start, text
        yield unit.next.start, unit.next.start, f"if (!planted::At({fault.number})) {{"
        yield unit.next.stop, unit.next.stop, "}"
    if not others:
        return
    start = unit.start
    if unit.kind == "constant" and (unit.is_constexpr or not unit.is_member):
        start = unit.source.tokens[unit.declaration].start
    numbers = ",".join(str(fault.number) for fault in others)
    text = _WRITERS[unit.kind](unit, others)
    yield start, unit.stop, f"/*[{numbers}*/{text}/*{numbers}]*/"
    if unit.kind in ("local", "named") and unit.is_constexpr:
        for token in unit.source.tokens[unit.declaration : unit.begin]:
            if token.text == "constexpr":
                yield token.start, token.end, "const"


def planted_source(path, source, faults):
    """The source with all the faults, which have their numbers."""
    by_unit = {}
    for fault in faults:
        by_unit.setdefault(fault.unit.start, (fault.unit, []))[1].append(fault)
    pieces = [piece for unit, own in by_unit.values() for piece in _pieces(unit, own)]
    text = source.text
    for start, stop, replacement in sorted(pieces, key=lambda piece: piece[:2], reverse=True):
        text = text[:start] + replacement + text[stop:]
    include = '#include "planted.h"\n'
    once = "#pragma once\n"
    return text.replace(once, once + include, 1) if path.endswith(".h") else include + text


def faults_at(text, line):
    """The numbers of the faults that are written in that line; where the line belongs to a place as
    a whole, those of the place."""
    for pattern in (_VARIANT, _UNIT):
        for match in pattern.finditer(text):
            first = text.count("\n", 0, match.start()) + 1
            if first <= line <= first + match[0].count("\n"):
                return {int(number) for number in match[1].split(",")}
    return set()
