#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks of scripts/mutate.py's fault operators on sample C++ lines, and that
a fault is always taken out again. Needs only python3:

    python3 scripts/test_mutate.py
"""
import contextlib
import io
import sys
import tempfile
import time
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parent))
import mutate  # noqa: E402


def in_function(*body):
    """Lines inside a function body, as most faults need."""
    return "void f()\n{\n" + "".join(f"    {line}\n" for line in body) + "}\n"


def faults(source, op):
    return sorted(m.after.strip() for m in mutate.mutants_in(source, "x.cpp", [op]))


class Operators(unittest.TestCase):
    def check(self, op, rows):
        for name, source, expected in rows:
            with self.subTest(name):
                self.assertEqual(faults(source, op), sorted(expected))

    def test_compare(self):
        self.check("compare", [
            ("less", "bool a = x < y;", ["bool a = x <= y;", "bool a = x > y;"]),
            ("greater or equal", "bool a = x >= y;", ["bool a = x > y;"]),
            ("equal", "bool a = x == y;", ["bool a = x != y;"]),
            ("not equal at a line start", "    != y;", ["== y;"]),
            ("arrow, shifts and streams", "a->b = c >> 2; out << x << (y << 3);", []),
            ("templates", "QList<QPointer<QWidget>> l = static_cast<int>(x);", []),
            ("operator definition", "bool operator<(const A &o) const;", []),
            ("string and char", 'auto s = u"a < b"_s + QChar(\'<\');', []),
            ("comments", "x; // a < b\n/* c\n > d */", []),
            ("include and define", "#include <a>\n#define LESS(a, b) a < b\n", []),
        ])

    def test_constant(self):
        self.check("constant", [
            ("decimal", "x = 10;", ["x = 11;", "x = 9;"]),
            ("zero", "x = 0;", ["x = 1;", "x = -1;"]),
            ("hex keeps its case", "x = 0xFF;", ["x = 0x100;", "x = 0xFE;"]),
            ("suffix kept", "x = 7u;", ["x = 8u;", "x = 6u;"]),
            ("digit separators", "x = 1'000;", ["x = 1001;", "x = 999;"]),
            ("not floats or names", "double d = 1.5 + 2e3; qint16 v; x.at(y2);", []),
            ("not in strings", 'x = u"12"_s;', []),
            ("not in static_assert", "static_assert(sizeof(int) == 4);", []),
        ])

    def test_negate(self):
        self.check("negate", [
            ("if", in_function("if (ok)", "    g();"), ["if (!(ok))"]),
            ("while", in_function("while (i < n) {", "}"), ["while (!(i < n)) {"]),
            ("a negation is taken away", in_function("if (!file.open())", "    g();"),
             ["if (file.open())"]),
            ("and, or", "bool b = x && y || z;",
             ["bool b = x || y || z;", "bool b = x && y && z;"]),
            ("continued line", "        && y)", ["|| y)"]),
            ("not a declaring if", in_function("if (auto *w = find())", "    g();"), []),
            ("not an init-statement", in_function("if (int a = 1; a)", "    g();"), []),
            ("not rvalue references", "void f(QString &&s);", []),
        ])

    def test_bool(self):
        self.check("bool", [
            ("true", "bool m_ok = true;", ["bool m_ok = false;"]),
            ("false", "return false;", ["return true;"]),
            ("not in words or strings", 'bool trueish = u"true"_s.isEmpty();', []),
        ])

    def test_arith(self):
        self.check("arith", [
            ("plus", "x = a + b;", ["x = a - b;"]),
            ("minus", "x = a - 1;", ["x = a + 1;"]),
            ("compound", "x += 2; y -= 3;", ["x += 2; y += 3;", "x -= 2; y -= 3;"]),
            ("not unary, increments or arrows", "x = -1; ++i; i--; p->q;", []),
            ("not joined texts", 'QString s = u"a"_s + name + u"b"_s;', []),
            ("not a continued text", '        + u"b"_s;', []),
        ])

    def test_remove(self):
        self.check("remove", [
            ("call and assignment", in_function("foo(x);", "x = y;", "delete p;"), [";", ";", ";"]),
            ("not declarations", in_function("int a = 0;", "const QString *s = t();", "QString e;",
                                             "std::vector<int> v(3);"), []),
            ("not control flow", in_function("return;", "break;", "continue;"), []),
            ("not a continued statement", in_function("x = foo(a,", "        b);"), []),
            ("braceless if body", in_function("if (a)", "    foo();"), [";"]),
            ("not at namespace level", "Foo();\nvoid g(int a);\n", []),
            ("not class members", "class A\n{\n    A();\n    void f(int a);\n};\n", []),
        ])
        removed = mutate.mutants_in(in_function("foo(x);"), "x.cpp", ["remove"])[0]
        self.assertEqual((removed.line, removed.before, removed.after), (3, "    foo(x);", "    ;"))

    def test_swap(self):
        self.check("swap", [
            ("two arguments", in_function("foo(a, b);"), ["foo(b, a);"]),
            ("three arguments", in_function("foo(a, g(x, y), c);"),
             ["foo(a, c, g(x, y));", "foo(a, g(y, x), c);", "foo(g(x, y), a, c);"]),
            ("template commas do not split", in_function("foo(QPair<int, int>(1, 2), z);"),
             ["foo(QPair<int, int>(2, 1), z);", "foo(z, QPair<int, int>(1, 2));"]),
            ("not alike, texts or members", in_function("foo(a, a);", 'bar(u"x"_s, b);',
                                                     "connect(this, &A::b);"), []),
            ("not parameter lists", "void f(int a, int b)\n{\n}\n", []),
            ("not a lambda's parameters", in_function("auto l = [](int a, int b) { };"), []),
        ])

    def test_return(self):
        self.check("return", [
            ("bool function", "bool f()\n{\n    return m_ok;\n}\n", ["return !m_ok;"]),
            ("bool expression", "bool f()\n{\n    return a.size() > 2;\n}\n",
             ["return !(a.size() > 2);"]),
            ("inline member", "class A\n{\n    bool ok() const { return m_ok; }\n};\n",
             ["bool ok() const { return !m_ok; }"]),
            ("evident lambda", in_function("auto l = [](int a) {", "    return a < 2;", "};"),
             ["return !(a < 2);"]),
            ("not a literal", "bool f()\n{\n    return true;\n}\n", []),
            ("not other types", "int f()\n{\n    return m_ok;\n}\n", []),
            ("not in a lambda of its own",
             "bool f()\n{\n    auto g = [] {\n        return 3;\n    };\n}\n", []),
        ])


class Skipping(unittest.TestCase):
    def test_skipped_lines(self):
        rows = [
            ("marker", "x = a < b; // mutate: skip: only timing differs"),
            ("foreign platform", "#ifdef Q_OS_WIN\nx = a < b;\n#endif"),
            ("not Linux", "#if defined(Q_OS_WIN)\nx = a < b;\n"
                          "#elif defined(Q_OS_MACOS)\ny = c < d;\n#endif"),
            ("Linux's other branch", "#ifdef Q_OS_LINUX\n#else\nx = a < b;\n#endif"),
            ("Linux negated", "#if !defined(Q_OS_LINUX)\nx = a < b;\n#endif"),
            ("Unix's other branch", "#ifdef Q_OS_UNIX\n#else\nx = a < b;\n#endif"),
            ("raw string", 'auto s = R"(a < b)";'),
            ("continued define", "#define A(x) \\\n    x < 2"),
        ]
        for name, source in rows:
            with self.subTest(name):
                self.assertEqual(mutate.mutants_in(source, "x.cpp", ["compare"]), [])

    def test_other_platform_branch_kept(self):
        for source in ("#ifdef Q_OS_WIN\nx = 1;\n#else\nx = a < b;\n#endif\n",
                       "#ifdef Q_OS_LINUX\nx = a < b;\n#else\nx = 1;\n#endif\n",
                       "#ifdef Q_OS_UNIX\nx = a < b;\n#else\nx = 1;\n#endif\n"):
            self.assertEqual(faults(source, "compare"), ["x = a <= b;", "x = a > b;"])

    def test_sample_is_reproducible_and_spread(self):
        candidates = mutate.mutants_in(in_function(*[f"x{i} = a + {i} < b;" for i in range(20)]),
                                       "x.cpp")
        first = mutate.pick(candidates, 10, "1/src")
        self.assertEqual(first, mutate.pick(candidates, 10, "1/src"))
        self.assertNotEqual(first, mutate.pick(candidates, 10, "2/src"))
        self.assertEqual(len({m.line for m in first}), 10)
        self.assertEqual(len(mutate.pick(candidates, 10_000, "1")), len(candidates))


class BuildFailures(unittest.TestCase):
    def test_compile_errors_told_from_failing_steps(self):
        rows = [
            ("compiler", "src/korva/a.cpp:3:5: error: 'x' was not declared in this scope", True),
            ("linker", "a.cpp:(.text+0x1f): undefined reference to `f()'", True),
            ("program run by the build", "vxedit: ex1.zel: entry 7 holds a text that cannot be "
                                         "stored; nothing was written", False),
            ("make", "gmake[2]: *** [build.make:77: ex1.zel] Error 1", False),
        ]
        for name, line, compiler in rows:
            with self.subTest(name):
                self.assertEqual(bool(mutate.COMPILER_ERROR.search(line)), compiler)
        step = mutate.BUILD_STEP.match("[ 85%] Making example chapter ex1.zel")
        self.assertEqual(step.group(1), "Making example chapter ex1.zel")
        self.assertIsNone(mutate.BUILD_STEP.match("[ 83%] Linking CXX executable ../tst_dialogs"))


    def test_a_silent_build_is_stopped(self):
        began = time.monotonic()
        code, lines, killed = mutate.run(["sh", "-c", "echo making; sleep 30"], *mutate.silence_watch(1))
        self.assertTrue(killed)
        self.assertEqual(lines, ["making"])
        self.assertLess(time.monotonic() - began, 10)
        _, _, killed = mutate.run(["sh", "-c", "for i in 1 2 3; do echo $i; sleep 0.6; done"],
                                  *mutate.silence_watch(2))
        self.assertFalse(killed)  # lines often enough


class Restoring(unittest.TestCase):
    def test_what_a_fault_wrote_is_made_afresh(self):
        with tempfile.TemporaryDirectory() as tmp:
            build, run = mutate.BUILD, mutate.run
            try:
                mutate.BUILD = Path(tmp)
                left = Path(tmp) / "ex1.zel"
                left.write_bytes(b"written by a faulty vxedit")
                left.chmod(0o440)
                (Path(tmp) / "keep.txt").write_text("x")
                seen = []
                mutate.run = lambda cmd, *watch: (seen.append(left.exists()) or 0, [], False)
                self.assertEqual(mutate.build(), (True, []))
                self.assertEqual(seen, [False])
                self.assertTrue((Path(tmp) / "keep.txt").exists())
            finally:
                mutate.BUILD, mutate.run = build, run

    def test_file_back_byte_for_byte(self):
        with tempfile.TemporaryDirectory() as tmp:
            mutate.JOURNAL = Path(tmp) / "journal"
            path = Path(tmp) / "a.cpp"
            original = "int f()\n{\n    return 1 < 2; // ü\n}\n".encode()
            path.write_bytes(original)
            fault = mutate.mutants_in(original.decode(), path, ["compare"])[0]
            with self.assertRaises(KeyboardInterrupt):
                with mutate.Fault(fault):
                    self.assertIn(b"1 <= 2", path.read_bytes())
                    self.assertEqual(len(list(mutate.JOURNAL.glob("*%a.cpp"))), 1)
                    raise KeyboardInterrupt
            self.assertEqual(path.read_bytes(), original)
            self.assertEqual(list(mutate.JOURNAL.glob("*%a.cpp")), [])

    def test_killed_run_recovered(self):
        with tempfile.TemporaryDirectory() as tmp:
            mutate.JOURNAL = Path(tmp) / "journal"
            path = Path(tmp) / "a.cpp"
            path.write_bytes(b"x = 1;\n")
            fault = mutate.mutants_in("x = 1;\n", path, ["constant"])[0]
            mutate.Fault(fault).__enter__()  # as if the process died here
            self.assertNotEqual(path.read_bytes(), b"x = 1;\n")
            with contextlib.redirect_stdout(io.StringIO()) as said:
                mutate.Fault.recover()
            self.assertIn("restored", said.getvalue())
            self.assertEqual(path.read_bytes(), b"x = 1;\n")


if __name__ == "__main__":
    unittest.main()
