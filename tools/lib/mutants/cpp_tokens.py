"""The tokens of a C++ source, as far as planting faults needs them."""

import re

_TOKEN = re.compile(
    r"""
    (?P<space>\s+)
    |(?P<comment>//[^\n]*|/\*.*?\*/)
    |(?P<directive>^[ \t]*\#(?:[^\n\\]|\\.)*)
    |(?P<string>(?:u8|[LuU])?"(?:[^"\\\n]|\\.)*")
    |(?P<char>(?:u8|[LuU])?'(?:[^'\\\n]|\\.)+')
    |(?P<number>\.?\d(?:'?[\w.])*)
    |(?P<name>[A-Za-z_]\w*)
    |(?P<punctuation>::|->|\+\+|--|<=|>=|==|!=|&&|\|\||<<|[-+*/%&|^]=|\.\.\.|.)
    """,
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)

_CLOSING = {"(": ")", "[": "]", "{": "}"}


class Token:
    def __init__(self, kind, text, start, has_space_before):
        self.kind = kind
        self.text = text
        self.start = start
        self.end = start + len(text)
        self.has_space_before = has_space_before
        self.has_space_behind = True
        self.is_in_template = False  # between angle brackets

    def is_binary(self):
        """The sources are laid out by clang-format: operators between two operands have room."""
        return self.has_space_before and self.has_space_behind


class Source:
    def __init__(self, text):
        self.text = text
        self.tokens = []
        had_space = True
        for match in _TOKEN.finditer(text):
            if match.lastgroup in ("space", "comment", "directive"):
                had_space = True
                continue
            if self.tokens:
                self.tokens[-1].has_space_behind = had_space
            self.tokens.append(Token(match.lastgroup, match[0], match.start(), had_space))
            had_space = False
        self.partner = self._match_brackets()
        self._mark_templates()

    def _match_brackets(self):
        partner = {}
        open_brackets = []
        for index, token in enumerate(self.tokens):
            if token.text in _CLOSING and token.kind == "punctuation":
                open_brackets.append(index)
            elif token.text in _CLOSING.values() and token.kind == "punctuation":
                begin = open_brackets.pop()
                if _CLOSING[self.tokens[begin].text] != token.text:
                    raise ValueError(f"brackets don't fit at {self.line_of(token.start)}")
                partner[begin] = index
                partner[index] = begin
        return partner

    def _mark_templates(self):
        """What stands behind a name without room before it opens a list of template arguments."""
        for index, token in enumerate(self.tokens):
            if token.text != "<" or token.has_space_before or self.tokens[index - 1].kind != "name":
                continue
            end = self.template_end(index)
            for inner in self.tokens[index:end]:
                inner.is_in_template = True

    def template_end(self, index):
        """The index behind the bracket that belongs to the opening one at the index."""
        depth = 0
        while True:
            text = self.tokens[index].text
            if text in _CLOSING:
                index = self.partner[index]
            depth += (text == "<") - (text == ">")
            index += 1
            if depth == 0:
                return index

    def slice(self, begin, end):
        """The text of the tokens from `begin` up to `end`."""
        if begin >= end:
            return ""
        return self.text[self.tokens[begin].start : self.tokens[end - 1].end]

    def find(self, text, begin, end):
        """The first token of that text outside of brackets; -1 when there is none."""
        index = begin
        while index < end:
            token = self.tokens[index]
            if token.text == text and token.kind in ("punctuation", "name"):
                return index
            index = self.partner[index] if token.text in _CLOSING else index
            index += 1
        return -1

    def line_of(self, offset):
        return self.text.count("\n", 0, offset) + 1

    def lines_around(self, start, end):
        """Where the lines begin and end that the text from `start` to `end` lies in."""
        begin = self.text.rfind("\n", 0, start) + 1
        stop = self.text.find("\n", end)
        return begin, len(self.text) if stop < 0 else stop
