"""The simple faults that can be planted in a unit."""

import re

# comparison  < for <=, == for != and so on
# logic       && for ||
# negation    a condition, or a part of one, turned round
# guard       the jump at the head of a function, or the whole of a loop, left out
# branches    the two results of a conditional operator exchanged
# number      one more or one less
# truth       true for false
# flag        one of several left out
# drop        a statement left out
# steps       two neighbouring statements exchanged
# arguments   two neighbouring arguments of one type exchanged
# level       of a log record
# text        a changed word or character
# result      another code or enumerator
KINDS = (
    "comparison", "logic", "negation", "guard", "branches", "number", "truth", "flag", "drop",
    "steps", "arguments", "level", "text", "result",
)  # fmt: skip

_COMPARISONS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">", "==": "!=", "!=": "=="}
_TRUTHS = {"true": "false", "false": "true", "TRUE": "FALSE", "FALSE": "TRUE"}
_NUMBER = re.compile(r"(0[xX])?([0-9a-fA-F']+)((?:\.\d+)?[uUlL]*)$")
_WORD = re.compile(r"(?<![%\\A-Za-z])[A-Za-z]{3,}")
_DECLARED = re.compile(r"([A-Za-z_][\w:]*(?:<[^;(){}]*>)?)\s*[&*]{0,2}\s*\b([A-Za-z_]\w*)\s*(?=[,;)=({[])")


class Edit:
    """A part of a unit's text, or of that of two neighbouring ones, and what stands there instead.
    Whole units are marked: the condition that is turned round, the statement that is dropped."""

    def __init__(self, kind, start, stop, replacement, whole=None, is_fixed=False):
        self.kind = kind
        self.start = start
        self.stop = stop
        self.replacement = replacement
        self.whole = whole
        self.is_fixed = is_fixed  # can't be chosen at run time


class Names:
    """What the names in all sources stand for."""

    def __init__(self, sources, enums):
        self.enums = enums
        self.result_codes = set()
        self.types = {}
        for path, source in sources.items():
            if path.endswith("result_code.h"):
                self.result_codes.update(re.findall(r"inline constexpr int (\w+)", source.text))
            for kind, name in _DECLARED.findall(" ".join(_code_lines(source.text))):
                if kind not in ("return", "else", "new", "delete", "case", "using", "goto"):
                    self.types.setdefault(name, set()).add(kind.removeprefix("std::"))


def _code_lines(text):
    return (line.split("//")[0] for line in text.splitlines())


def _other_number(text, step):
    match = _NUMBER.match(text)
    if not match:
        return None
    prefix, digits, suffix = match.groups()
    value = int(digits.replace("'", ""), 16 if prefix else 10) + step
    if value < 0:
        return None
    return (f"0x{value:X}" if prefix else str(value)) + suffix


def other_text(text):
    """The literal with another word; with one character more, or another one, if it has none."""
    quote = text[-1]
    begin = text.index(quote) + 1
    inside = text[begin:-1]
    if quote == "'":
        return text[:begin] + ("y" if inside == "x" else "x") + "'"
    words = list(_WORD.finditer(inside))
    if not words:
        return text[:-1] + 'x"'
    word = words[len(words) // 2]
    at = begin + word.start()
    other = word[0][::-1]
    if other.lower() == word[0].lower():
        other += "x"
    return text[:at] + other + text[at + len(word[0]) :]


class _UnitEdits:
    def __init__(self, unit, names):
        self.unit = unit
        self.source = unit.source
        self.tokens = unit.source.tokens
        self.names = names
        self.edits = []

    def text(self, index):
        return self.tokens[index].text if self.unit.begin <= index < self.unit.end else ""

    def replace(self, kind, index, replacement, end=None):
        start = self.tokens[index].start
        stop = self.tokens[end - 1 if end else index].end
        is_fixed = self.tokens[index].is_in_template or self.unit.kind == "plain"
        self.edits.append(Edit(kind, start, stop, replacement, is_fixed=is_fixed))

    def collect(self):
        for index in range(self.unit.begin, self.unit.end):
            self.collect_at(index)
        self.collect_whole()
        return self.edits

    def collect_at(self, index):
        token = self.tokens[index]
        if token.kind == "number":
            for step in (1, -1):
                other = _other_number(token.text, step)
                if other and self.text(index - 1) != "<<":
                    self.replace("number", index, other)
        elif token.kind in ("string", "char"):
            if self.text(index - 1) != "extern":
                self.replace("text", index, other_text(token.text))
        elif token.kind == "name":
            self.collect_name(index, token)
        elif token.text == "?":
            self.collect_branches(index)
        elif token.text == "(":
            self.collect_arguments(index)
        elif token.text == "!" and index != self.unit.begin:
            self.replace("negation", index, "")
        elif token.is_binary():
            self.collect_operator(index, token)

    def collect_operator(self, index, token):
        if token.text in _COMPARISONS and not token.is_in_template:
            self.replace("comparison", index, _COMPARISONS[token.text])
        elif token.text in ("&&", "||"):
            self.replace("logic", index, "||" if token.text == "&&" else "&&")
        elif token.text == "|":
            goes_on = (".", "->", "::", "(", "<")
            if self.tokens[index + 1].kind == "name" and self.text(index + 2) not in goes_on:
                self.replace("flag", index, "", index + 2)
            if self.tokens[index - 1].kind == "name" and self.text(index - 2) not in (*goes_on[:3], "|"):
                self.replace("flag", index - 1, "", index + 1)

    def collect_name(self, index, token):
        if token.text in _TRUTHS:
            self.replace("truth", index, _TRUTHS[token.text])
        elif token.text in self.names.result_codes:
            self.replace("result", index, f"{token.text} + 1")
        elif self.text(index - 1) == "::" and self.text(index - 2) in self.names.enums:
            enumerators = self.names.enums[self.text(index - 2)]
            if token.text in enumerators:
                other = enumerators[(enumerators.index(token.text) + 1) % len(enumerators)]
                is_level = self.text(index - 2) == "LogLevel"
                self.replace("level" if is_level else "result", index, other)

    def collect_branches(self, index):
        """The sources nest conditional operators only behind the colon."""
        colon = self.source.find(":", index + 1, self.unit.end)
        end = colon + 1
        while end < self.unit.end and self.text(end) not in (")", "]", "}", ",", ";"):
            end = self.source.partner.get(end, end) + 1
        if colon > 0:
            first = self.source.slice(index + 1, colon)
            second = self.source.slice(colon + 1, end)
            self.replace("branches", index, f"? ({second}) : ({first})", end)

    def collect_arguments(self, index):
        if self.tokens[index - 1].kind != "name" and self.text(index - 1) != ">":
            return
        arguments = []
        begin = index + 1
        closing = self.source.partner[index]
        while begin < closing:
            comma = self.source.find(",", begin, closing)
            end = closing if comma < 0 else comma
            arguments.append((begin, end))
            begin = end + 1
        for (first, first_end), (second, second_end) in zip(arguments, arguments[1:]):
            left = self.source.slice(first, first_end)
            right = self.source.slice(second, second_end)
            if left != right and self.kinds_of(first, first_end) & self.kinds_of(second, second_end):
                self.replace("arguments", first, f"{right}, {left}", second_end)

    def kinds_of(self, begin, end):
        last = self.tokens[end - 1]
        if last.text == ")" and self.source.partner[end - 1] > begin:
            last = self.tokens[self.source.partner[end - 1] - 1]
        elif end - begin == 1 and last.kind == "string":
            return {"text"}
        words = [token.text for token in self.tokens[begin:end]]
        is_plain = not {"+", "-", "*", "&", "?", "{", "<", "==", "|", "/"}.intersection(words)
        is_plain = is_plain and last.text not in ("move", "c_str", "size", "data")
        return self.names.types.get(last.text, set()) if is_plain else set()

    def collect_whole(self):
        unit = self.unit
        if unit.kind in ("condition", "named"):
            if unit.is_guard or unit.is_loop:
                self.edits.append(Edit("guard", unit.start, unit.stop, "false", "false"))
            if not unit.is_loop:
                self.edits.append(Edit("negation", unit.start, unit.stop, "", "negated"))
        elif unit.kind == "expression":
            self.edits.append(Edit("drop", unit.start, unit.stop, "", "dropped"))
            if unit.next and unit.next.text() != unit.text():
                both = unit.next.text() + " " + unit.text()
                self.edits.append(Edit("steps", unit.start, unit.next.stop, both, "exchanged"))


def edits_of(unit, names):
    """All faults that can be planted in the unit."""
    return _UnitEdits(unit, names).collect()
