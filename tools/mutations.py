"""The changes that tools/mutate.py makes to a C++ source: one operator, constant, argument or statement at a time.

It reads tokens, not syntax. That the sources are formatted by clang-format tells a binary operator (blanks on both
sides) from a pointer, a reference or a template. A change that makes no sense does not compile, and is not counted.
"""

import bisect
import re
from dataclasses import dataclass

TOKEN = re.compile(
    r"""(?P<skip>//[^\n]*|/\*.*?\*/|^[ ]*\#(?:[^\n]*\\\n)*[^\n]*)
      |(?P<string>(?:u8?|U|L)?R"(?P<mark>[^(\s]*)\(.*?\)(?P=mark)"|(?:u8?|U|L)?"(?:[^"\\\n]|\\.)*")
      |(?P<char>'(?:[^'\\\n]|\\.)+')
      |(?P<number>(?:0[xX][\da-fA-F]+|\d+\.?\d*(?:[eE][-+]?\d+)?)[uUlLfF]*)
      |(?P<word>[A-Za-z_]\w*)
      |(?P<sign>->|::|<<|<=|>=|==|!=|&&|\|\||\+\+|--|[-+*/%&|^]=|[^\s\w])""",
    re.VERBOSE | re.DOTALL | re.MULTILINE,
)

BINARY = {
    "==": "!=", "!=": "==", "<": "<=", "<=": "<", ">": ">=", ">=": ">", "&&": "||", "||": "&&",
    "+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "&": "|", "|": "&", "^": "&", "<<": "/", "+=": "-=", "-=": "+=",
    "%=": "/=", "/=": "%=",
}  # fmt: skip
WORDS = {"true": "false", "false": "true"}
STEPS = {"++": "--", "--": "++"}

PAIRS = {"(": ")", "[": "]", "{": "}"}
HEADS = {"if", "for", "while", "switch"}
# What a body's brace can come behind. Behind a type or an equals sign it begins a list of values.
BEFORE_BODY = {")", "]", "const", "override", "noexcept", "mutable", "else", "do"}
# Statements that are not left out as a whole.
KEPT = {"return", "using", "struct", "enum", "static", "constexpr", "template", "typedef", "static_assert"}
VERBS = {"emit", "delete", "throw", "co_return"}
LOCK = re.compile(r"\b(lock_guard|unique_lock|QReadLocker|QWriteLocker|QMutexLocker)\b")
DECLARATION = re.compile(r"(const |auto\b)|[\w:]+(<.*>)?(( [*&]*)|([*&]+ ?))(const )?\w+ ?([=;]|\(|\{|\[)", re.DOTALL)
EMPTY = re.compile(r"Q\w+\(\)|Qt::AutoConnection")  # what {} is anyway
LOG_LINE = re.compile(r"(qC(Debug|Warning|Info)|logLine)\b|const Operation ")
ONLY_SPEED = re.compile(r"\.(reserve|squeeze)\(")
MACROS = {"QStringLiteral", "QLatin1Char", "Q_UNUSED", "VARNEL_OPERATION"}
NOT_CALLED = HEADS | MACROS | {"return", "sizeof", "decltype", "catch"}


@dataclass(frozen=True)
class Token:
    kind: str
    text: str
    begin: int
    end: int


@dataclass(frozen=True)
class Mutation:
    """Replaces text[begin:end]; what says in words what that does."""

    begin: int
    end: int
    replacement: str
    what: str

    def apply(self, text):
        return text[: self.begin] + self.replacement + text[self.end :]


class Source:
    def __init__(self, text):
        self.text = text
        self.tokens = [
            Token(match.lastgroup if match.lastgroup != "mark" else "string", match.group(), match.start(), match.end())
            for match in TOKEN.finditer(text)
            if match.lastgroup != "skip"
        ]
        self.partner = self._partners()
        self.functions = []  # (first token of the body, last, name), in the order of the text
        self.statements = []  # (first token, the semicolon)
        self.conditions = []  # the two brackets
        self._read_bodies()
        self.silent = [  # what pages and hosts notice nothing of
            (first, last)
            for first, last in self.statements
            if LOG_LINE.match(self._of(first, last)) or ONLY_SPEED.search(self._of(first, last))
        ]
        self.silent += [(first, last) for first, last in self.conditions if "isDebugEnabled" in self._of(first, last)]

    def function_at(self, position):
        for first, last, name in self.functions:
            if self.tokens[first].begin <= position < self.tokens[last].end:
                return name
        return ""

    def mutations(self):
        """All of them, in the order of the text."""
        found = [*self._token_mutations(), *self._condition_mutations(), *self._statement_mutations()]
        found += self._argument_mutations()
        silent = sorted((self.tokens[first].begin, self.tokens[last].end) for first, last in self.silent)
        starts = [begin for begin, _ in silent]

        def is_silent(mutation):
            index = bisect.bisect_right(starts, mutation.begin) - 1
            return index >= 0 and mutation.end <= silent[index][1]

        unique = {(m.begin, m.end, m.replacement): m for m in found if not is_silent(m)}
        return sorted(unique.values(), key=lambda m: (m.begin, m.end, m.replacement))

    def _of(self, first, last):
        return self.text[self.tokens[first].begin : self.tokens[last].end]

    def _partners(self):
        partner, open_ones = {}, []
        for index, token in enumerate(self.tokens):
            if token.kind != "sign":
                continue
            if token.text in PAIRS:
                open_ones.append(index)
            elif token.text in PAIRS.values():
                partner[open_ones.pop()] = index
        return partner

    def _is_body(self, brace):
        return brace > 0 and self.tokens[brace - 1].text in BEFORE_BODY

    def _read_bodies(self):
        index = 0
        while index < len(self.tokens):
            if self.tokens[index].text == "{" and self._is_body(index):
                end = self.partner[index]
                self.functions.append((index, end, self._name_before(index)))
                self._read_statements(index + 1, end)
                index = end
            index += 1

    def _name_before(self, brace):
        """The qualified name before the parameters of the function whose body begins there."""
        first = brace
        while first > 0 and self.tokens[first - 1].text not in (";", "{", "}"):
            first -= 1
        match = re.search(r"([\w:~]+)\s*\(", self._of(first, brace))
        return match.group(1) if match else ""

    def _read_statements(self, index, end):
        tokens = self.tokens
        while index < end:
            text = tokens[index].text
            if text in HEADS:
                index += 1 + (tokens[index + 1].text == "constexpr")
                self.conditions.append((index, self.partner[index]))
                if text == "for" or text == "switch":
                    self.conditions.pop()  # no condition by itself
                index = self.partner[index] + 1
            elif text in ("case", "default"):
                while tokens[index].text != ":":
                    index += 1
                index += 1
            elif text == "Q_UNUSED":  # stands without a semicolon
                index = self.partner[index + 1] + 1
            elif text in ("else", "do", "{", "}"):
                index += 1
            else:
                index = self._read_statement(index) + 1

    def _read_statement(self, first):
        last = first
        while self.tokens[last].text != ";":
            if last in self.partner:
                if self._is_body(last) and self.tokens[last].text == "{":
                    self._read_statements(last + 1, self.partner[last])
                last = self.partner[last]
            last += 1
        self.statements.append((first, last))
        return last

    def _token_mutations(self):
        for index, token in enumerate(self.tokens):
            begin, end = token.begin, token.end
            if token.kind == "sign":
                is_binary = self.text[begin - 1] in " \n" and self.text[end] in " \n"
                if is_binary and token.text in BINARY:
                    yield Mutation(begin, end, BINARY[token.text], "operator")
                elif is_binary and token.text == "?":
                    yield Mutation(begin, end, "== false ?", "choice the other way round")
                elif token.text in STEPS:
                    yield Mutation(begin, end, STEPS[token.text], "operator")
                elif token.text == "!":
                    yield Mutation(begin, end, "", "negation left out")
            elif token.kind == "word" and token.text in WORDS:
                yield Mutation(begin, end, WORDS[token.text], "constant")
            elif token.kind == "number" and not self._is_template_argument(index):
                yield Mutation(begin, end, self._other_number(token.text), "constant")
            elif token.kind == "char":
                yield Mutation(begin, end, "'~'" if token.text != "'~'" else "'-'", "constant")
            elif token.kind == "string" and self.tokens[index - 1].text == "(":
                yield Mutation(begin, end, token.text[:-1] + '~"' if token.text[-2:] != ')"' else '"~"', "constant")

    def _is_template_argument(self, index):
        return self.text[self.tokens[index].end] == ">"

    @staticmethod
    def _other_number(text):
        if text in ("0", "1"):
            return str(1 - int(text))
        return f"({text} + 1)"

    def _condition_mutations(self):
        for first, last in self.conditions:
            inner = self.text[self.tokens[first].end : self.tokens[last].begin]
            if ";" in inner or re.match(r"(const |auto )", inner):
                continue  # declares something: its operators are changed, not the whole
            if re.fullmatch(r"![\w.>()-]+", inner):
                continue  # the negation is left out
            yield Mutation(self.tokens[first].begin, self.tokens[last].end, f"(!({inner}))", "condition negated")

    def _statement_mutations(self):
        for first, last in self.statements:
            begin, end = self.tokens[first].begin, self.tokens[last].end
            text, word = self.text[begin:end], self.tokens[first].text
            if word == "return" and last > first + 1 and "{" not in text:
                yield Mutation(begin, end, "return {};", "nothing returned")
            elif word == "return" and last == first + 1:
                yield Mutation(begin, end, ";", "statement left out")
            elif word not in KEPT and (LOCK.search(text) or word in VERBS or not DECLARATION.match(text)):
                yield Mutation(begin, end, ";", "statement left out")

    def _argument_mutations(self):
        for first, last, _ in self.functions:
            for index in range(first, last):
                is_call = self.tokens[index].text == "(" and self.tokens[index - 1].kind == "word"
                if is_call and self.tokens[index - 1].text not in NOT_CALLED:
                    yield from self._arguments_of(index)

    def _arguments_of(self, bracket):
        begin = bracket + 1
        index = begin
        while index <= self.partner[bracket]:
            if index == self.partner[bracket] or self.tokens[index].text == ",":
                if index > begin and (index > begin + 1 or self.tokens[begin].kind == "word"):
                    start, end = self.tokens[begin].begin, self.tokens[index - 1].end
                    text = self.text[start:end]
                    if "{" not in text and text not in WORDS and not EMPTY.fullmatch(text):
                        yield Mutation(start, end, "{}", "argument left empty")
                begin = index + 1
            index = self.partner[index] + 1 if index in self.partner and index != bracket else index + 1
