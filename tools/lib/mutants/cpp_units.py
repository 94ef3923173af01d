"""The parts of a source that are written once more for each fault in them: conditions, statements,
definitions. What they are decides how a fault in them is chosen at run time."""

# condition   between the parentheses of if and while, and in the middle of those of for
# expression  a whole statement with its semicolon
# return      likewise
# local       of a definition in a function: what stands behind the name
# named       the definition that is the condition of an if, likewise
# constant    of a definition outside of functions: the whole of it, with its semicolon
# plain       anything else, in which nothing can be chosen at run time
KINDS = ("condition", "expression", "return", "local", "named", "constant", "plain")

_CLASSES = ("struct", "class", "union")
_JUMPS = ("return", "continue", "break")
_NO_TYPES = ("delete", "throw", "goto", "new", "co_await")


class Unit:
    def __init__(self, kind, source, begin, end, **details):
        self.kind = kind
        self.source = source
        self.begin = begin  # tokens
        self.end = end
        self.start = source.tokens[begin].start
        self.stop = source.tokens[end - 1].end
        self.type = ""  # of what is defined
        self.name = ""
        self.is_constexpr = False
        self.declaration = begin  # where the definition begins
        self.is_guard = False  # of a condition: what it guards ends in a jump
        self.is_loop = False
        self.is_member = False
        self.next = None  # of an expression: the one behind it, if it is the very next statement
        for key, value in details.items():
            setattr(self, key, value)

    def text(self):
        return self.source.text[self.start : self.stop]


class _Reader:
    def __init__(self, source):
        self.source = source
        self.tokens = source.tokens
        self.partner = source.partner
        self.units = []
        self.enums = {}
        self.is_constant_function = False

    def text(self, index):
        return self.tokens[index].text if index < len(self.tokens) else ""

    def add(self, kind, begin, end, **details):
        if begin >= end:
            return None
        if self.is_constant_function:
            kind = "plain"
        unit = Unit(kind, self.source, begin, end, **details)
        self.units.append(unit)
        return unit

    def skip_attributes(self, index):
        while True:
            if self.text(index) == "[" and self.text(index + 1) == "[":
                index = self.partner[index] + 1
            elif self.text(index) == "__attribute__":
                index = self.partner[index + 1] + 1
            elif self.text(index) == "template":
                index = self.source.template_end(index + 1)
            else:
                return index

    # --- outside of functions

    def read_scope(self, index, end, is_class):
        while index < end:
            index = self.read_declaration(self.skip_attributes(index), end, is_class)

    def read_declaration(self, index, end, is_class):
        text = self.text(index)
        if text in ("namespace", "extern") and self.text(index + 1) != "template":
            opening = self.source.find("{", index, end)
            semicolon = self.source.find(";", index, end)
            if opening >= 0 and (semicolon < 0 or opening < semicolon):
                self.read_scope(opening + 1, self.partner[opening], False)
                return self.partner[opening] + 1
            return semicolon + 1
        if text in ("public", "private", "protected"):
            return index + 2
        if text == ";":
            return index + 1
        if text in ("using", "typedef", "friend", "static_assert"):
            return self.source.find(";", index, end) + 1
        if text == "enum":
            return self.read_enum(index, end)
        if text in _CLASSES:
            opening = self.source.find("{", index, end)
            semicolon = self.source.find(";", index, end)
            if 0 <= opening < semicolon:
                self.read_scope(opening + 1, self.partner[opening], True)
            return self.source.find(";", index, end) + 1
        return self.read_function_or_constant(index, end, is_class)

    def read_enum(self, index, end):
        opening = self.source.find("{", index, end)
        semicolon = self.source.find(";", index, end)
        if not 0 <= opening < semicolon:
            return semicolon + 1
        name = self.text(index + 2 if self.text(index + 1) in ("class", "struct") else index + 1)
        closing = self.partner[opening]
        self.enums[name] = [
            self.text(at)
            for at in range(opening + 1, closing)
            if self.text(at - 1) in ("{", ",") and self.tokens[at].kind == "name"
        ]
        self.add("plain", opening + 1, closing)
        return semicolon + 1

    def read_function_or_constant(self, index, end, is_class):
        begin = index
        while index < end:
            text = self.text(index)
            if text == "operator":
                index += 2 + (self.text(index + 1) == "(")
                continue
            if self.tokens[index].is_in_template:
                index += 1
                continue
            if text == "(":
                return self.read_function(begin, self.partner[index] + 1, end)
            if text in ("=", "{", "["):
                return self.read_constant(begin, index, end, is_class)
            index += 1
            if text == ";":
                return index
        return index

    def read_function(self, begin, index, end):
        while index < end and self.text(index) not in ("{", ";"):
            index = self.partner[index] + 1 if self.text(index) == "(" else index + 1
        if self.text(index) != "{":
            return index + 1
        before = [token.text for token in self.tokens[begin:index]]
        self.is_constant_function = "consteval" in before or "constexpr" in before
        self.read_block(index + 1, self.partner[index])
        self.is_constant_function = False
        return self.partner[index] + 1

    def read_constant(self, begin, index, end, is_class):
        semicolon = self.source.find(";", index, end)
        words = [token.text for token in self.tokens[begin : index - 1]]
        name = self.text(index - 1)
        is_array = self.text(index) == "["
        is_text = is_array and words[-1] in ("wchar_t", "char") and self.text(index + 3) not in "{"
        # A variable that is not constant would otherwise be filled again at the start.
        is_constant = is_class or "constexpr" in words or "const" in words
        kind = "constant" if is_constant and (is_text or not is_array) else "plain"
        begin_of_type = begin
        while self.text(begin_of_type) in ("inline", "static", "constexpr"):
            begin_of_type += 1
        self.add(
            kind,
            index,
            semicolon,
            declaration=begin,
            type="const wchar_t* const" if is_text else self.source.slice(begin_of_type, index - 1),
            name=name,
            is_constexpr="constexpr" in words,
            is_member=is_class,
        )
        return semicolon + 1

    # --- in functions

    def skip_words(self, index):
        while self.text(index) in ("const", "constexpr", "static"):
            index += 1
        return index

    def read_block(self, index, end):
        last = None
        while index < end:
            begin = index
            index, unit = self.read_statement(index, end)
            if last and unit and last.end == begin:
                last.next = unit
            last = unit

    def read_statement(self, index, end):
        """Returns the index behind the statement and, if it is a mere expression, its unit."""
        text = self.text(index)
        if text == "{":
            self.read_block(index + 1, self.partner[index])
            return self.partner[index] + 1, None
        if text in ("case", "default"):
            return self.source.find(":", index, end) + 1, None
        if text in ("if", "while", "switch", "for"):
            return self.read_compound(index, end), None
        if text == "else":
            return index + 1, None
        if text == "do":
            closing = self.partner[index + 1]
            self.read_block(index + 2, closing)
            self.add("condition", closing + 3, self.partner[closing + 2], is_loop=True)
            return self.partner[closing + 2] + 2, None
        semicolon = self.source.find(";", index, end)
        if text in (*_CLASSES, "enum", "using") or text.startswith("__"):
            return semicolon + 1, None
        if self.text(self.skip_words(index)) in _CLASSES:
            # A class without a name, and what is defined of it.
            equals = self.source.find("=", index, semicolon)
            if equals >= 0:
                self.add("plain", equals + 1, semicolon)
            return semicolon + 1, None
        if text == "return":
            self.add("return", index, semicolon + 1)
        elif text in _JUMPS or text == ";":
            pass
        elif (name := self.declared_name(index, semicolon)) >= 0:
            self.read_definition("local", index, name, semicolon)
        else:
            return semicolon + 1, self.add("expression", index, semicolon + 1)
        return semicolon + 1, None

    def read_compound(self, index, end):
        word = self.text(index)
        is_constexpr = self.text(index + 1) == "constexpr"
        opening = index + 1 + is_constexpr
        closing = self.partner[opening]
        first = self.source.find(";", opening + 1, closing)
        if word == "for":
            if first >= 0:
                second = self.source.find(";", first + 1, closing)
                self.read_header_definition(opening + 1, first)
                self.add("condition", first + 1, second, is_loop=True)
        elif word in ("if", "while") and not is_constexpr:
            begin = opening + 1
            if first >= 0:
                self.read_header_definition(begin, first)
                begin = first + 1
            details = {"is_loop": word == "while", "is_guard": self.is_guard(closing + 1)}
            name = self.declared_name(begin, closing)
            if name >= 0 and self.text(name + 1) == "=":
                self.read_definition("named", begin, name, closing, **details)
            else:
                self.add("condition", begin, closing, **details)
        return closing + 1

    def read_header_definition(self, begin, end):
        name = self.declared_name(begin, end)
        if name >= 0:
            self.read_definition("local", begin, name, end)

    def read_definition(self, kind, begin, name, end, **details):
        words = [token.text for token in self.tokens[begin:name]]
        begin_of_type = begin
        while self.text(begin_of_type) in ("static", "constexpr"):
            begin_of_type += 1
        if self.text(name + 1) == "[" or "static" in words:
            kind = "plain"
        self.add(
            kind,
            name + 1,
            end,
            declaration=begin,
            type=self.source.slice(begin_of_type, name),
            name=self.text(name),
            is_constexpr="constexpr" in words,
            **details,
        )

    def declared_name(self, index, end):
        """The index of the name that a definition is of; -1 when it is none."""
        while self.text(index) in ("const", "constexpr", "static", "auto", "unsigned"):
            index += 1
            is_auto = self.text(index - 1) in ("auto", "unsigned")
            if is_auto:
                return self.name_behind_type(index, end)
        if self.text(index) in _NO_TYPES or self.tokens[index].kind != "name":
            return -1
        while self.tokens[index].kind == "name":
            index += 1
            if index < end and self.text(index) == "<" and self.tokens[index].is_in_template:
                index = self.source.template_end(index)
            if self.text(index) != "::":
                break
            index += 1
        return self.name_behind_type(index, end)

    def name_behind_type(self, index, end):
        while self.text(index) in ("*", "&", "&&", "const"):
            index += 1
        is_name = index < end and self.tokens[index].kind == "name"
        return index if is_name and self.text(index + 1) in ("=", "(", "{", "[", ";") else -1

    def is_guard(self, opening):
        """True when a block without an else ends in a jump."""
        if self.text(opening) != "{":
            return False
        closing = self.partner[opening]
        if self.text(closing + 1) == "else" or self.text(closing - 1) != ";":
            return False
        begin = closing - 1
        while begin > opening and self.text(begin - 1) not in (";", "{", "}"):
            begin -= 1
            if begin in self.partner and self.partner[begin] < begin:
                begin = self.partner[begin]
        return self.text(begin) in _JUMPS


def read_units(source):
    """Returns the units of a source in their order, and its enumerations with their names."""
    reader = _Reader(source)
    reader.read_scope(0, len(source.tokens), False)
    return sorted(reader.units, key=lambda unit: unit.start), reader.enums
