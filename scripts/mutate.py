#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Mutation testing: how many small faults put into the code do the tests catch?

One fault at a time goes into a C++ file of the chosen folder (a comparison
turned, a constant off by one, a condition negated, a statement removed, ...);
build/mutate is rebuilt and the tests run. A fault no test notices "survived":
a place where the tests are weaker than they look. The file gets its bytes back
afterwards, also when the run is interrupted.

    scripts/mutate.py src/korva [more folders | all] [--budget 40] [--seed 1]

A line carrying `// mutate: skip: <reason>` gets no faults; the reason is
required (code no test can reach, a change nothing can observe, ...).
"""
import argparse
import os
import queue
import random
import re
import signal
import subprocess
import sys
import threading
import time
from dataclasses import dataclass
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "mutate"
JOURNAL = BUILD / "originals"  # a copy of the file under a fault, should this process be killed
CONFIGURE = ["-DCMAKE_BUILD_TYPE=Debug", "-DVOCABRIX_SANITIZE=OFF", "-DVOCABRIX_TESTS=ON"]
STOP_SIGNALS = {signal.SIGINT, signal.SIGTERM, signal.SIGHUP}

# Comments, preprocessor lines (with continuations) and literals, found in one pass.
LEXEMES = re.compile(r"""
    (?P<blank> ^[ \t]*\#(?:[^\n]*\\\n)*[^\n]* | //[^\n]* | /\*.*?\*/ )
  | (?P<raw> (?:u8|[uUL])?R"(?P<delim>[^(\s]*)\(.*?\)(?P=delim)" )
  | (?P<text> (?<![\w'])(?:u8|[uUL])?(?P<q>["'])(?:\\.|(?!(?P=q))[^\\\n])*(?P=q) )
""", re.M | re.S | re.X)
SKIP_MARK = re.compile(r"//\s*mutate:\s*skip\b\W*(.*)")
FOREIGN = re.compile(r"\b(Q_OS_WIN\w*|_WIN32|_MSC_VER|Q_OS_MACOS|Q_OS_DARWIN|__APPLE__)\b")
NATIVE = re.compile(r"\b(Q_OS_LINUX|__linux__|Q_OS_UNIX|__unix__)\b")  # their #else: other systems

# Binary operators are spaced in this code (clang-format), unlike template
# brackets, ->, <<, >>, unary minus, ++ and rvalue references.
COMPARE = re.compile(r"(?<=\s)(==|!=|<=|>=|<|>)(?=\s)")
COMPARE_TO = {"<": ["<=", ">"], ">": [">=", "<"], "<=": ["<"], ">=": [">"],
              "==": ["!="], "!=": ["=="]}
LOGIC = re.compile(r"(?<=\s)(&&|\|\|)(?=\s)")
ARITH = re.compile(r"(?<=\s)(\+=|-=|\+|-)(?=\s)")
ARITH_TO = {"+": "-", "-": "+", "+=": "-=", "-=": "+="}
TEXTY = ('u"', '"', "u'", "'", "QString", "QLatin1", "QChar")
NUMBER = re.compile(r"(?<![\w.'])(0[xX][0-9A-Fa-f]+|\d[\d']*)(?=[uUlL]*(?![\w.']))")
BOOL = re.compile(r"\b(true|false)\b")
CONDITION = re.compile(r"\b(if|while)\s*\(")
DECLARED = re.compile(r"^(?:const\s+)?(?:auto|[\w:<>]+)(?:\s+|\s*[*&]+\s*)\w+\s*=[^=]")
CALL = re.compile(r"[\w>)]\(")
NOT_CALLS = {"if", "for", "while", "switch", "return", "sizeof", "catch", "alignof", "decltype"}
RETURN = re.compile(r"\breturn\s+")
EVIDENT_BOOL = re.compile(r"^!|\s(==|!=|<=|>=|<|>|&&|\|\|)\s")
SIMPLE = re.compile(r"^[\w:]+(?:(?:\.|->)\w+)*(?:\([^()]*\))?$")
DECLARATION = re.compile(r"^(?:[A-Za-z_][\w:]*(?:<.*>)?[\s*&]+)+[A-Za-z_]\w*\s*(?:[=({\[;,]|$)")
NOT_REMOVED = {"return", "break", "continue", "goto", "case", "default", "using", "typedef",
               "throw", "friend", "Q_UNUSED", "Q_ASSERT", "Q_ASSERT_X"}
REMOVED_ANYWAY = {"delete", "Q_EMIT"}  # statements that look like declarations
# The line before ends a statement, a block start, a label, or a braceless if/for/while.
STATEMENT_BEFORE = re.compile(r"(?:[;{}]|[^:]:|\belse"
                              r"|^(?:\}\s*)?(?:else\s+)?(?:if|for|while)\s*\(.*\))$")

# What a '{' opens, judged by the text before it.
LAMBDA = re.compile(r"\]\s*(?:\([^()]*\))?\s*(?:mutable\s*)?(->\s*[\w:<>]+\s*)?$")
CONTROL = re.compile(r"(?:else\b\s*)?(?:(?:if|for|while|switch|catch)\b|else$|do$|try$)")
FUNCTION = re.compile(r"\)\s*(?:const|override|final|noexcept|mutable|&|\s)*(?:->\s*[\w:<>]+\s*)?$")
BOOL_FUNCTION = re.compile(r"(?:^|\s)bool\s+(?:[\w:]+|operator\s*[^\s(]+)\s*\(")
FUNCTION_KINDS = ("bool", "func", "lambda")


@dataclass
class Mutant:
    path: Path  # relative to the project root, or absolute
    line: int  # 1-based
    op: str
    before: str
    after: str

    def where(self):
        return f"{self.path}:{self.line}"


@dataclass
class Line:
    orig: str  # as in the file
    code: str  # the same with comments blanked and literals filled with '_'
    prev: str  # the code of the last line before that had any
    kind: str  # what the line starts in: "bool"/"func"/"lambda" (function bodies), "other"
    returns: dict  # column of each 'return' -> the kind of function it leaves

    def at(self, start, end, new):
        return self.orig[:start] + new + self.orig[end:]


# --- Finding the code ---

def mask(text):
    """The text with comments and preprocessor lines blanked and the insides of
    literals filled with '_': same length, so positions carry over."""
    def hide(m):
        s = m.group()
        if m.group("blank"):
            return re.sub(r"[^\n]", " ", s)
        start, end = s.index(m.group("q") or '"') + 1, len(s) - 1
        return s[:start] + re.sub(r"[^\n]", "_", s[start:end]) + s[end:]
    return LEXEMES.sub(hide, text)


def foreign_lines(lines):
    """Indexes of lines in #if branches a Linux build never compiles."""
    stack, result = [], set()  # per open #if: is its branch foreign (None: cannot tell)?
    for k, line in enumerate(lines):
        directive = re.match(r"\s*#\s*(\w+)(.*)", line)
        if not directive:
            result |= {k} if any(stack) else set()
            continue
        word, rest = directive.groups()
        negated = word == "ifndef" or "!" in rest
        foreign = not negated if FOREIGN.search(rest) else negated if NATIVE.search(rest) else None
        if word in ("if", "ifdef", "ifndef"):
            stack.append(foreign)
        elif word == "elif" and stack:
            stack[-1] = foreign
        elif word == "else" and stack and stack[-1] is not None:
            stack[-1] = not stack[-1]
        elif word == "endif" and stack:
            stack.pop()
    return result


def classify(header):
    h = " ".join(header.split())
    if LAMBDA.search(h):
        return "bool" if re.search(r"->\s*bool\s*$", h) else "lambda"
    if CONTROL.match(h):
        return "inherit"  # a block inside the function around it
    if FUNCTION.search(h):
        return "bool" if BOOL_FUNCTION.search(h) else "func"
    return "other"  # namespace, class, enum, braced initializer


def scopes(code_lines):
    """Per line: the kind it starts in, and the kind around each 'return'."""
    stack, header, depth, starts, returns = [], [], 0, [], []

    def current():
        return next((k for k, _ in reversed(stack) if k != "inherit"), "other")

    for line in code_lines:
        starts.append(current())
        cols, found = {m.start() for m in RETURN.finditer(line)}, {}
        for i, c in enumerate(line):
            if i in cols:
                found[i] = current()
            if c == "{":
                stack.append((classify("".join(header)), depth))
                header, depth = [], 0
            elif c == "}":
                depth, header = (stack.pop()[1] if stack else 0), []
            elif c == ";" and depth == 0:
                header = []
            else:
                depth += (c == "(") - (c == ")")
                header.append(c)
        header.append(" ")
        returns.append(found)
    return starts, returns


def closing(code, open_at):
    """Index of the ')' closing the '(' at open_at on this line, or -1."""
    depth = 0
    for k in range(open_at, len(code)):
        depth += (code[k] == "(") - (code[k] == ")")
        if depth == 0:
            return k
    return -1


def balanced(code):
    return all(code.count(a) == code.count(b) for a, b in ("()", "[]"))


def arguments(code, open_at, close_at):
    """(start, end) of each argument between the parentheses, spaces trimmed."""
    spans, depth, angle, start = [], 0, 0, open_at + 1
    for k in range(open_at + 1, close_at + 1):
        c = code[k]
        depth += (c in "([{") - (c in ")]}" and k < close_at)
        if c == "<" and code[k - 1].isalnum() and code[k + 1] not in " <=":
            angle += 1  # a template's arguments: their commas do not count
        elif c == ">" and angle and code[k - 1] != " ":
            angle -= 1
        if (c == "," and depth == angle == 0) or k == close_at:
            text = code[start:k]
            spans.append((start + len(text) - len(text.lstrip()), start + len(text.rstrip())))
            start = k + 1
    return spans


# --- The operators: each yields the mutated texts of one line ---

def compare(ln):
    for m in COMPARE.finditer(ln.code):
        for new in COMPARE_TO[m.group(1)]:
            yield ln.at(m.start(), m.end(), new)


def constant(ln):
    for m in NUMBER.finditer(ln.code):
        digits = m.group(1).replace("'", "")
        hexa = digits[:2].lower() == "0x"
        value = int(digits, 16 if hexa else 10)
        for new in (value + 1, value - 1):
            text = "0x" + format(new, "X" if digits[2:].isupper() else "x") if hexa and new >= 0 \
                else str(new)
            yield ln.at(m.start(), m.end(), text)


def negate(ln):
    for m in CONDITION.finditer(ln.code):
        end = closing(ln.code, m.end() - 1)
        inner = ln.code[m.end():end].strip()
        if end < 0 or ";" in inner or DECLARED.match(inner):
            continue  # runs on, or declares (if (auto x = ...)), or has an init-statement
        if inner.startswith("!") and SIMPLE.match(inner[1:]):
            yield ln.at(m.end(), end, ln.orig[m.end() + 1:end])
        else:
            yield ln.at(m.end(), end, "!(" + ln.orig[m.end():end] + ")")
    for m in LOGIC.finditer(ln.code):
        yield ln.at(m.start(), m.end(), "||" if m.group() == "&&" else "&&")


def flip(ln):
    for m in BOOL.finditer(ln.code):
        yield ln.at(m.start(), m.end(), "false" if m.group() == "true" else "true")


def arith(ln):
    for m in ARITH.finditer(ln.code):
        left, right = ln.code[:m.start()].rstrip(), ln.code[m.end():].lstrip()
        joins_texts = left.endswith(('"', "'", '"_s', "'_s")) or right.startswith(TEXTY)
        if not (m.group().startswith("+") and joins_texts):
            yield ln.at(m.start(), m.end(), ARITH_TO[m.group()])


def negate_return(ln):
    for col, kind in ln.returns.items():
        start = RETURN.match(ln.code, col).end()
        end = ln.code.find(";", start)
        expr = ln.code[start:end]
        if end < 0 or not balanced(expr) or expr in ("true", "false"):
            continue
        if kind == "bool" or (kind == "lambda" and EVIDENT_BOOL.search(expr) and "?" not in expr):
            inner = ln.orig[start:end]
            yield ln.at(start, end, "!" + inner if SIMPLE.match(expr) else f"!({inner})")


def remove(ln):
    code = ln.code.strip()
    first = re.match(r"[\w:]*", code).group()
    declares = first not in REMOVED_ANYWAY and DECLARATION.match(code)
    if (ln.kind in FUNCTION_KINDS and code.endswith(";") and STATEMENT_BEFORE.search(ln.prev)
            and balanced(code) and "{" not in code and "}" not in code
            and first not in NOT_REMOVED and not declares):
        yield ln.orig[:len(ln.orig) - len(ln.orig.lstrip())] + ";"


def swap(ln):
    if ln.kind not in FUNCTION_KINDS:
        return  # parameter lists are not calls
    code = ln.code
    for m in CALL.finditer(code):
        end = closing(code, m.end() - 1)
        if re.search(r"\w*$", code[:m.start() + 1]).group() in NOT_CALLS or end < 0:
            continue
        spans = arguments(code, m.end() - 1, end)
        for (a0, a1), (b0, b1) in zip(spans, spans[1:]):
            a, b = code[a0:a1], code[b0:b1]
            if a and b and a != b and not {a[0], b[0]} & {"&"} and "this" not in (a, b) \
                    and ('"' in a) == ('"' in b):  # not what cannot compile swapped
                yield ln.orig[:a0] + ln.orig[b0:b1] + ln.orig[a1:b0] + ln.orig[a0:a1] + ln.orig[b1:]


OPERATORS = {"compare": compare, "constant": constant, "negate": negate, "bool": flip,
             "remove": remove, "swap": swap, "arith": arith, "return": negate_return}


def mutants_in(text, path, ops=tuple(OPERATORS)):
    """Every candidate fault in one C++ source text."""
    lines, code_lines = text.split("\n"), mask(text).split("\n")
    for k in foreign_lines(lines):
        code_lines[k] = " " * len(code_lines[k])
    starts, returns = scopes(code_lines)
    found, seen, prev = [], set(), ""
    for k, (orig, code) in enumerate(zip(lines, code_lines)):
        mark = SKIP_MARK.search(orig)
        if mark and not mark.group(1):
            print(f"mutate: {path}:{k + 1}: '// mutate: skip' needs a reason", file=sys.stderr)
        if code.strip() and not mark and "static_assert" not in code:
            ln = Line(orig, code, prev, starts[k], returns[k])
            for op in ops:
                for after in OPERATORS[op](ln):
                    if after != orig and (k, after) not in seen:
                        seen.add((k, after))
                        found.append(Mutant(path, k + 1, op, orig, after))
        prev = code.strip() or prev
    return found


def pick(candidates, budget, seed):
    """A reproducible sample: the lines in random order, one fault from each,
    then another round; lines full of constants do not crowd out the rest."""
    rng, by_line = random.Random(seed), {}
    for m in candidates:
        by_line.setdefault((str(m.path), m.line), []).append(m)
    rounds = list(by_line.values())
    rng.shuffle(rounds)
    for faults in rounds:
        rng.shuffle(faults)
    picked = []
    while len(picked) < min(budget, len(candidates)):
        picked += [faults.pop() for faults in rounds if faults][:budget - len(picked)]
    return sorted(picked, key=lambda m: (str(m.path), m.line))  # file by file: fewer rebuilds


def code_folders():
    """Every folder under src/ and tools/ that holds C++ files itself."""
    return sorted({str(p.parent.relative_to(ROOT)) for top in ("src", "tools")
                   for p in (ROOT / top).rglob("*") if p.suffix in (".cpp", ".h")})


def folder_mutants(folder, ops):
    return [m for path in sorted((ROOT / folder).rglob("*")) if path.suffix in (".cpp", ".h")
            for m in mutants_in(path.read_bytes().decode("utf-8"), path.relative_to(ROOT), ops)]


# --- Putting a fault in and taking it out again ---

class Fault:
    """Puts a mutant into its file; leaving (also through an exception or a
    signal) writes the original bytes back. The file's time stays 'now', so the
    next build recompiles it; restore_times() puts the old times back once the
    last build is done, and other build folders need not recompile."""
    touched = {}  # path -> (atime_ns, mtime_ns) before its first fault

    def __init__(self, mutant):
        self.path, self.mutant = (ROOT / mutant.path).resolve(), mutant
        self.copy = JOURNAL / str(self.path).replace("/", "%")

    def __enter__(self):
        self.original = self.path.read_bytes()
        info = self.path.stat()
        Fault.touched.setdefault(self.path, (info.st_atime_ns, info.st_mtime_ns))
        lines = self.original.decode("utf-8").split("\n")
        if lines[self.mutant.line - 1] != self.mutant.before:
            raise RuntimeError(f"{self.mutant.where()} changed while mutate ran")
        lines[self.mutant.line - 1] = self.mutant.after
        JOURNAL.mkdir(parents=True, exist_ok=True)
        self.copy.write_bytes(self.original)
        try:
            self.path.write_bytes("\n".join(lines).encode("utf-8"))
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *exc):
        blocked = signal.pthread_sigmask(signal.SIG_BLOCK, STOP_SIGNALS)  # no half-written file
        try:
            self.path.write_bytes(self.original)
            self.copy.unlink()
        finally:
            signal.pthread_sigmask(signal.SIG_SETMASK, blocked)

    @staticmethod
    def recover():
        """Puts back what a killed run left mutated."""
        for copy in sorted(JOURNAL.glob("*%*")):
            target = Path(copy.name.replace("%", "/"))
            target.write_bytes(copy.read_bytes())
            copy.unlink()
            print(f"mutate: restored {target}, left mutated by a killed run", flush=True)

    @staticmethod
    def restore_times():
        for path, times in Fault.touched.items():
            os.utime(path, ns=times)
        Fault.touched.clear()


# --- Building and testing ---

def run(cmd, on_line=None, give_up=None):
    """Runs cmd in a process group of its own; on_line sees each output line;
    give_up() returning True kills the group. Returns (exit code, lines, killed)."""
    proc = subprocess.Popen(cmd, cwd=BUILD if cmd[0] == "ctest" else ROOT, text=True,
                            env=dict(os.environ, QT_QPA_PLATFORM="offscreen"), errors="replace",
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                            start_new_session=True)
    lines, feed, killed = [], queue.Queue(), False

    def read():
        for line in proc.stdout:
            feed.put(line.rstrip("\n"))
        feed.put(None)

    reader = threading.Thread(target=read, daemon=True)
    reader.start()
    try:
        while True:
            try:
                line = feed.get(timeout=0.5)
            except queue.Empty:
                line = ""  # nothing new: time to ask give_up()
            if line is None:
                break
            if line:
                lines.append(line)
                if on_line:
                    on_line(line)
            if not killed and give_up and give_up():
                os.killpg(proc.pid, signal.SIGKILL)
                killed = True
        return proc.wait(), lines, killed
    finally:
        if proc.poll() is None:
            os.killpg(proc.pid, signal.SIGKILL)
            proc.wait()
        reader.join(timeout=5)
        proc.stdout.close()


# Files the build's own programs write: the example chapters. What a faulty
# vxedit wrote (a read-only file, say) would stop the correct one from writing
# them again, and every later fault would count as caught by the build; so
# they are made afresh by every build.
PROGRAM_OUTPUTS = "ex[0-9].zel"


# A build that says nothing for this long is running a program the fault made
# hang (the example chapters are made by running vxedit); compiling or linking
# one file says something well within it.
BUILD_SILENCE_LIMIT = 300
HUNG = "mutate: the build was stopped after {}s without a word"


def silence_watch(limit):
    """(on_line, give_up) for run(): give up once no line came for limit seconds."""
    last = [time.monotonic()]

    def heard(_):
        last[0] = time.monotonic()

    return heard, lambda: time.monotonic() - last[0] > limit


def build():
    for made in BUILD.glob(PROGRAM_OUTPUTS):
        made.unlink()
    code, lines, killed = run(["cmake", "--build", str(BUILD), "-j2"],
                              *silence_watch(BUILD_SILENCE_LIMIT))
    if killed:
        lines.append(HUNG.format(BUILD_SILENCE_LIMIT))
    return code == 0 and not killed, lines


COMPILER_ERROR = re.compile(r": (?:fatal )?error: |undefined reference|multiple definition")
BUILD_STEP = re.compile(r"^\[\s*\d+%\] (?!Building|Linking|Built|Automatic)(.*)")


class Tests:
    STARTED = re.compile(r"^\s*Start\s+\d+: (\S+)")
    DONE = re.compile(r"Test\s+#\d+: (\S+) \.*\s*(.*?)\s+([\d.]+) sec$")

    def __init__(self, jobs, regex):
        self.cmd = ["ctest", "-j", str(jobs), "--no-tests=error"] + (["-R", regex] if regex else [])
        self.limit = 600  # seconds one test may take; over it, it counts as failed

    def run(self, stop_on_failure=True):
        """(passed, {test: seconds}, what failed)."""
        running, times, failed = {}, {}, []

        def seen(line):
            if self.STARTED.search(line):
                running[self.STARTED.search(line).group(1)] = time.monotonic()
            elif self.DONE.search(line):
                name, status, secs = self.DONE.search(line).groups()
                running.pop(name, None)
                times[name] = float(secs)
                failed.extend([name] if status != "Passed" else [])

        def give_up():  # a failure is enough: tests still running need not finish
            over = [n for n, t in running.items() if time.monotonic() - t > self.limit]
            failed.extend(f"{n} (timeout)" for n in over)
            return bool(failed)

        cmd = self.cmd + (["--stop-on-failure"] if stop_on_failure else [])
        code, lines, killed = run(cmd, seen, give_up if stop_on_failure else None)
        return code == 0 and not killed, times, failed or lines[-3:]


# --- The run ---

def report(folder, mutants, results, candidates, seed):
    count = {r: [x[0] for x in results].count(r) for r in ("not compilable", "caught", "survived")}
    judged = count["caught"] + count["survived"]
    share = f"{100 * count['caught'] / judged:.0f}% ({count['caught']} of {judged})" \
        if judged else "-"
    summary = (f"{folder} (seed {seed}): {len(mutants)} faults tried of {candidates} candidates; "
               f"not compilable {count['not compilable']}, caught {count['caught']}, "
               f"survived {count['survived']}, share caught {share}")
    out = ["== " + summary]
    survivors = [m for m, r in zip(mutants, results) if r[0] == "survived"]
    out += ["", "Survived (no test noticed):"] if survivors else []
    for m in survivors:
        out += [f"  {m.where()}  [{m.op}]", f"    - {m.before.strip()}", f"    + {m.after.strip()}"]
    out += ["", "Every fault tried:"]
    out += [f"  {r[0]:<15} {m.where():<40} {m.op:<8} {r[1]}" for m, r in zip(mutants, results)]
    path = BUILD / f"report-{folder.replace('/', '-')}.txt"
    path.write_text("\n".join(out) + "\n")
    print("\n".join(out) + f"\n(also in {path.relative_to(ROOT)})\n", flush=True)
    return summary


def try_mutant(mutant, tests):
    with Fault(mutant):
        built, lines = build()
        if not built and any(COMPILER_ERROR.search(x) for x in lines):
            return "not compilable", ""
        if not built:  # compiled, but a step that runs the programs (example chapters) failed
            steps = [m.group(1) for m in map(BUILD_STEP.match, lines) if m]
            hung = ", which hung" if lines and lines[-1].startswith(HUNG.format("")[:30]) else ""
            return "caught", f"by the build ({steps[-1] if steps else 'see its output'}{hung})"
        passed, _, failed = tests.run()
    return ("survived", "") if passed else ("caught", "by " + ", ".join(failed))


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("folders", nargs="*", help="e.g. src/korva; 'all' for every code folder")
    parser.add_argument("--budget", type=int, default=40, help="faults tried per folder (40)")
    parser.add_argument("--seed", default="1", help="which faults are picked (1)")
    parser.add_argument("--operators", default=",".join(OPERATORS),
                        help=",".join(OPERATORS) + " (all)")
    parser.add_argument("--jobs", type=int, default=2, help="tests ctest runs at once (2)")
    parser.add_argument("--tests", default="", help="regex of the ctest tests to run (all)")
    parser.add_argument("--list", action="store_true", help="list the candidates, run nothing")
    args = parser.parse_args()
    ops = args.operators.split(",")
    folders = code_folders() if args.folders == ["all"] else [f.rstrip("/") for f in args.folders]
    unknown = [o for o in ops if o not in OPERATORS]
    unknown += [f for f in folders if not (ROOT / f).is_dir()]
    if unknown or not folders:
        what = f"unknown: {' '.join(unknown)}" if unknown else "which folder? (e.g. src/korva)"
        sys.exit(f"mutate: {what}\n  folders: all {' '.join(code_folders())}\n"
                 f"  operators: {' '.join(OPERATORS)}")

    Fault.recover()  # before anything reads the sources
    plans = []
    for folder in folders:
        candidates = folder_mutants(folder, ops)
        picked = pick(candidates, args.budget, f"{args.seed}/{folder}")
        plans.append((folder, picked, len(candidates)))
        for m in candidates if args.list else []:
            shown = "removes " + m.before.strip() if m.op == "remove" else m.after.strip()
            print(f"{'*' if m in picked else ' '} {m.where()} [{m.op}] {shown}")
        if args.list:
            print(f"{folder}: {len(candidates)} candidates; * the {len(picked)} picked")
    if args.list:
        return

    signal.signal(signal.SIGINT, signal.default_int_handler)  # also when started in the background
    for s in STOP_SIGNALS - {signal.SIGINT}:
        signal.signal(s, lambda *_: sys.exit("mutate: stopped; every source file is as it was"))
    BUILD.mkdir(parents=True, exist_ok=True)
    print("mutate: configuring and building build/mutate (Debug, no sanitizers)", flush=True)
    code, lines, _ = run(["cmake", "-S", str(ROOT), "-B", str(BUILD)] + CONFIGURE)
    built, lines = build() if code == 0 else (False, lines)
    if not built:
        print("\n".join(lines[-30:]))
        sys.exit("mutate: the code does not build as it is; fix that first")
    tests = Tests(args.jobs, args.tests)
    passed, times, failed = tests.run(stop_on_failure=False)
    if not passed:
        sys.exit(f"mutate: tests fail with no fault put in ({', '.join(failed)}); fix them first")
    tests.limit = 3 * max(times.values()) + 10
    print(f"mutate: {len(times)} tests pass, the slowest in {max(times.values()):.1f}s; "
          f"one taking over {tests.limit:.0f}s counts as catching the fault", flush=True)

    began, summaries = time.monotonic(), []
    try:
        for folder, picked, candidates in plans:
            results = []
            for k, m in enumerate(picked, 1):
                t0 = time.monotonic()
                results.append(try_mutant(m, tests))
                spent, total = time.monotonic() - t0, int(time.monotonic() - began)
                print(f"[{k:>3}/{len(picked)}] {m.where()} {m.op}: {' '.join(results[-1])}"
                      f"  ({spent:.0f}s; {total // 60}m{total % 60:02d}s in all)", flush=True)
            summaries.append(report(folder, picked, results, candidates, args.seed))
    except KeyboardInterrupt:
        sys.exit("mutate: interrupted; every source file is as it was")
    print("\n".join(summaries if len(summaries) > 1 else []), flush=True)
    print("mutate: rebuilding build/mutate from the restored sources", flush=True)
    if build()[0]:
        Fault.restore_times()  # with their old times, other build folders need not recompile
    else:
        print("mutate: the last build failed; the sources are restored, with new times", flush=True)


if __name__ == "__main__":
    main()
